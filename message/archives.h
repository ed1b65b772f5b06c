// The forms of the fields of messages: to the verbs of all records they add objects, types and shared values.
// The fields themselves, and their order, are told by the messages.
#pragma once

#include "framework/field_archives.h"
#include "message/value_record.h"

#include <kelm/meta_model.h>
#include <kelm/object.h>

#include <string>

namespace kelm {

/// Writes a message's fields, over the form of fields `Form`.
template <class Form>
class message_writer : public Form {
public:
    message_writer(const Form& form, write_context& to) : Form(form), to_(to) {}

    /// The id as a number; 0 for null.
    void object_id(const char* name, const kelm::object* value) {
        this->number(name, value ? value->id() : 0);
    }
    void meta_type(const char* name, const meta_object* value) {
        this->number(name, value ? value->id() : 0);
    }
    void value(const value_custody& value, bool owned, const value_place& where) {
        write_message_value(value.get(), owned, where.property_id, *this, to_.positions);
    }
    /// Fields that a document puts into an element of their own; left out there when not `wanted`.
    template <class Fields>
    void inside(const char* name, bool wanted, Fields&& fields) {
        if (Form::is_document && !wanted) return;
        message_writer inner{Form::inner(name), to_};
        fields(inner);
    }
    /// Fields that older streams lack.
    template <class Fields>
    void since(int version, int minor_version, Fields&& fields) {
        kelm::model* const log_of = to_.positions.model;
        kelm::model* const in = log_of || !to_.about ? log_of : to_.about->model();
        if (Form::is_document || !in || version_of(*in).stores(version, minor_version)) fields();
    }

    bool for_replay() const { return to_.for_replay; }
    /// \returns where an object's vector has the element today; npos32 when it has not, or the log itself knows
    u32 present_position(kelm::object* holder, u32 id, const abstract_property* value) const {
        if (to_.positions.contains(value)) return npos32;
        return own_element_position(holder, id, value, to_.positions.elements);
    }

private:
    write_context& to_;
};

/// Reads what message_writer wrote.  What is missing leaves its field as it is.
template <class Form>
class message_reader : public Form {
public:
    message_reader(const Form& form, read_context& from, message& self)
        : Form(form), from_(from), self_(self) {}

    /// Null for an id that nobody has.
    void object_id(const char* name, kelm::object*& value) {
        if (const auto id = id_of(name)) value = from_.object(*id);
    }
    void meta_type(const char* name, meta_object*& value) {
        if (const auto id = id_of(name)) value = from_.meta_type(*id);
    }
    void value(value_custody& value, bool /*owned*/, const value_place& where) {
        read_message_value(value, self_, where, *this, from_);
    }
    template <class Fields>
    void inside(const char* name, bool /*wanted*/, Fields&& fields) {
        message_reader inner{Form::inner(name), from_, self_};
        fields(inner);
    }
    template <class Fields>
    void since(int version, int minor_version, Fields&& fields) {
        if (Form::is_document || from_.version.is_at_least(version, minor_version)) fields();
    }

    static constexpr bool for_replay() { return false; }
    /// \returns the observer side of an object; null for 0, and for an id that nobody has
    kelm::observer* observer(u32 id) const { return message_cast<kelm::observer>(from_.object(id)); }
    /// \returns the newest begin of a transaction of that id among the messages read before; null when there is none
    message* newest_begin(u32 id) const { return find_newest_begin(id, from_); }

private:
    std::optional<u32> id_of(const char* name) {
        u32 id = 0;
        this->number(name, id);
        return this->good() ? std::optional{id} : std::nullopt;
    }

    read_context& from_;
    message& self_;
};

} // namespace kelm
