// The forms of the fields of messages: each archive has the same verbs, so that a message names its fields once.
// The fields themselves, and their order, are told by the messages.
#pragma once

#include "message/value_record.h"

#include <kelm/meta_model.h>
#include <kelm/object.h>

#include <string>

namespace kelm {

/// Little-endian fields, without names.
class binary_writer {
public:
    static constexpr bool reads = false;

    explicit binary_writer(write_context& to) : to_(to) {}

    void number(const char* name, u32 value);
    /// A number that a document has as an attribute.
    void attribute(const char* name, u32 value) { number(name, value); }
    void flag(const char* name, bool value);
    void text(const char* name, const std::string& value);
    /// The id as a number; 0 for null.
    void object_id(const char* name, kelm::object* value);
    void meta_type(const char* name, meta_object* value);
    void value(const value_custody& value, bool owned, const value_place&) {
        write_message_value(value.get(), owned, to_);
    }
    /// Fields that a document puts into an element of their own; left out there when not `wanted`.
    template <class Fields>
    void inside(const char*, bool /*wanted*/, Fields&& fields) {
        fields();
    }
    /// Fields that older streams lack.
    template <class Fields>
    void since(int version, int minor_version, Fields&& fields) {
        kelm::model* const in = to_.about ? to_.about->model() : nullptr;
        if (!in || version_of(*in).stores(version, minor_version)) fields();
    }

    bool for_replay() const { return to_.for_replay; }
    bool knows(const abstract_property* value) const { return to_.positions.contains(value); }

private:
    write_context& to_;
};

/// Reads what binary_writer wrote.  At the end of the stream fields stay as they are.
class binary_reader {
public:
    static constexpr bool reads = true;

    binary_reader(read_context& from, message& self) : from_(from), self_(self) {}

    void number(const char* name, u32& value);
    void attribute(const char* name, u32& value) { number(name, value); }
    void flag(const char* name, bool& value);
    void text(const char* name, std::string& value);
    /// Null for an id that nobody has.
    void object_id(const char* name, kelm::object*& value);
    void meta_type(const char* name, meta_object*& value);
    void value(value_custody& value, bool /*owned*/, const value_place& where) {
        read_message_value(value, self_, where, from_);
    }
    template <class Fields>
    void inside(const char*, bool /*wanted*/, Fields&& fields) {
        fields();
    }
    template <class Fields>
    void since(int version, int minor_version, Fields&& fields) {
        if (from_.version.is_at_least(version, minor_version)) fields();
    }

    static constexpr bool for_replay() { return false; }
    /// \returns the observer side of an object; null for 0, and for an id that nobody has
    kelm::observer* observer(u32 id) const;
    /// The messages read before this one, the newest last.
    const std::vector<message*>& earlier() const { return from_.earlier; }

private:
    read_context& from_;
    message& self_;
};

} // namespace kelm
