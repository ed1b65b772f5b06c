// The forms of fields: each archive has the same verbs, so that a record names its fields once.
// Which fields a record has, and in which order, is told by the record.
#pragma once

#include "util/bytes.h"
#include "util/document_state.h"

#include <kelm/guid.h>
#include <kelm/property.h>
#include <kelm/types.h>

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kelm {

// The verbs, with the names that documents use; streams have none:
//
//     number, flag, text     a field; in a document an element of its own
//     name                   a text that a document has escaped
//     attribute, identity    a field that a document has as an attribute
//     content                what an item of a list is as a whole
//     numbers                two fields; a document has the second inside the first's element
//     present                whether fields follow; a document tells it by the first of them
//     stored_value           a value with the code of its kind
//     inner                  fields that a document puts into an element of their own
//     open                   a list: in a stream a count and its items; in a document an element with one for each item,
//                            left out when there are none
//
// A reader leaves a field as it is where it finds none.

/// Where the values that a reader meets put what waits until all objects are there.
struct value_sink {
    std::vector<reference_record>* references = nullptr;
    object* holder = nullptr; ///< the object that values will belong to; may be null
};

/// Little-endian fields, without names.
class binary_out {
public:
    static constexpr bool reads = false;
    static constexpr bool is_document = false;

    /// The items of one list; their number was written when it was opened.
    class list {
    public:
        explicit list(const binary_out& items) : out_(items.out_) {}
        binary_out next() { return binary_out{*out_}; }
        binary_out begin_item() { return next(); }
        void end_item(const binary_out&) {}

    private:
        std::ostream* out_;
    };

    explicit binary_out(std::ostream& out) : out_(&out) {}

    [[nodiscard]] std::ostream* stream() const { return out_; }
    [[nodiscard]] void* element() const { return nullptr; }
    [[nodiscard]] binary_out inner(const char*) const { return *this; }

    [[nodiscard]] bool good() const { return !out_->fail(); }
    /// The record cannot be written.
    void fail();
    void number(const char*, u32 value) { put_u32(*out_, value); }
    void attribute(const char* name, u32 value) { number(name, value); }
    void content(u32 value) { number(nullptr, value); }
    void numbers(const char* name, u32 value, const char* inner_name, u32 inner_value) {
        number(name, value);
        number(inner_name, inner_value);
    }
    void flag(const char* name, bool value);
    void present(const char* name, bool value) { flag(name, value); }
    void text(const char* name, const std::string& value);
    void name(const char* name, const std::string& value) { text(name, value); }
    void identity(const char* name, const GUID& value);
    void stored_value(const abstract_property* value, u32 id, const value_sink& = {});
    list open(const char* /*list*/, const char* /*item*/, std::size_t count) {
        number(nullptr, static_cast<u32>(count));
        return list{*this};
    }

private:
    std::ostream* out_;
};

/// Reads what binary_out wrote.
class binary_in {
public:
    static constexpr bool reads = true;
    static constexpr bool is_document = false;

    class list {
    public:
        list(const binary_in& items, u32 count) : in_(items.in_), left_(count) {}
        /// \returns nothing behind the last item, and in a stream that has failed
        std::optional<binary_in> next() {
            const binary_in items{*in_};
            if (left_ == 0 || !items.good()) return std::nullopt;
            --left_;
            return items;
        }

    private:
        std::istream* in_;
        u32 left_;
    };

    explicit binary_in(std::istream& in) : in_(&in) {}

    [[nodiscard]] std::istream* stream() const { return in_; }
    [[nodiscard]] void* element() const { return nullptr; }
    [[nodiscard]] binary_in inner(const char*) const { return *this; }
    [[nodiscard]] bool is_there() const { return true; }

    [[nodiscard]] bool good() const { return !in_->fail(); }
    /// The record cannot be read.
    void fail();
    void number(const char*, u32& value) {
        const u32 read = get_u32(*in_);
        if (*in_) value = read;
    }
    void attribute(const char* name, u32& value) { number(name, value); }
    void content(u32& value) { number(nullptr, value); }
    void numbers(const char* name, u32& value, const char* inner_name, u32& inner_value) {
        number(name, value);
        number(inner_name, inner_value);
    }
    void flag(const char* name, bool& value);
    [[nodiscard]] bool present(const char* name) {
        bool value = false;
        flag(name, value);
        return value;
    }
    void text(const char* name, std::string& value);
    void name(const char* name, std::string& value) { text(name, value); }
    void identity(const char* name, GUID& value);
    void stored_value(std::unique_ptr<abstract_property>& value, u32 id, const value_sink& sink);
    list open(const char*, const char*, std::size_t = 0) { return {*this, get_u32(*in_)}; }

private:
    std::istream* in_;
};

/// Elements and attributes.  Numbers are decimal; npos32 is "-1".
class document_out {
public:
    static constexpr bool reads = false;
    static constexpr bool is_document = true;

    class list {
    public:
        /// \param container  null for a list without items
        list(void* container, const char* item) : container_(container), item_(item) {}
        document_out next() const { return document_out{container_}.inner(item_); }
        /// An item that joins the list when it is complete: an element is put below another for the less, the fewer
        /// stand above.
        document_out begin_item() const;
        void end_item(const document_out& item) const;

    private:
        void* container_;
        const char* item_;
    };

    explicit document_out(void* element) : element_(element) {}

    [[nodiscard]] std::ostream* stream() const { return nullptr; }
    [[nodiscard]] void* element() const { return element_; }
    [[nodiscard]] bool good() const { return !document_pass::has_failed(); }
    void fail() { document_pass::fail(); }
    /// Adds an element for fields of their own.
    [[nodiscard]] document_out inner(const char* name) const;
    void number(const char* name, u32 value) { inner(name).content(value); }
    void attribute(const char* name, u32 value);
    void content(u32 value);
    void numbers(const char* name, u32 value, const char* inner_name, u32 inner_value);
    void flag(const char* name, bool value) { number(name, value ? 1 : 0); }
    void present(const char*, bool) const {}
    void text(const char* name, const std::string& value);
    void name(const char* name, const std::string& value);
    void identity(const char* name, const GUID& value);
    void stored_value(const abstract_property* value, u32 id, const value_sink& = {});
    list open(const char* list_name, const char* item, std::size_t count) const {
        return {count == 0 ? nullptr : inner(list_name).element(), item};
    }

private:
    void* element_;
};

/// Reads what document_out wrote.
class document_in {
public:
    static constexpr bool reads = true;
    static constexpr bool is_document = true;

    class list {
    public:
        /// \param container  null for a list without items
        list(void* container, const char* item);
        explicit list(std::vector<void*> items) : items_(std::move(items)) {}
        std::optional<document_in> next() {
            if (next_ == items_.size() || document_pass::has_failed()) return std::nullopt;
            return document_in{items_[next_++]};
        }
        [[nodiscard]] std::size_t size() const { return items_.size(); }

    private:
        std::vector<void*> items_;
        std::size_t next_ = 0;
    };

    explicit document_in(void* element) : element_(element) {}

    [[nodiscard]] std::istream* stream() const { return nullptr; }
    [[nodiscard]] void* element() const { return element_; }
    [[nodiscard]] bool good() const { return !document_pass::has_failed(); }
    void fail() { document_pass::fail(); }
    /// \returns the first element of that name; in one that is not there nothing is found
    [[nodiscard]] document_in inner(const char* name) const;
    [[nodiscard]] bool is_there() const { return element_ != nullptr; }
    void number(const char* name, u32& value) const { inner(name).content(value); }
    void attribute(const char* name, u32& value) const;
    void content(u32& value) const;
    void numbers(const char* name, u32& value, const char* inner_name, u32& inner_value) const;
    void flag(const char* name, bool& value) const;
    [[nodiscard]] bool present(const char* name) const { return inner(name).element() != nullptr; }
    void text(const char* name, std::string& value) const;
    void name(const char* name, std::string& value) const;
    void identity(const char* name, GUID& value) const;
    void stored_value(std::unique_ptr<abstract_property>& value, u32 id, const value_sink& sink) const;
    list open(const char* list_name, const char* item, std::size_t = 0) const {
        return {inner(list_name).element(), item};
    }

private:
    void* element_;
};

/// A list of records, in its order.
/// \param fields  (archive, item): the fields of one
template <class Archive, class Items, class Fields>
void record_list(Archive& archive, const char* list, const char* item, Items& items, Fields&& fields) {
    auto records = archive.open(list, item, items.size());
    if constexpr (Archive::reads) {
        typename Items::value_type one{};
        while (auto record = records.next()) {
            fields(*record, one);
            if (record->good()) items.push_back(std::move(one));
        }
    } else {
        for (const auto& one : items) {
            auto record = records.next();
            fields(record, one);
        }
    }
}

/// A list of ids, in its order.  An item of a document without a number repeats the one before.
template <class Archive, class Ids>
void id_list(Archive& archive, const char* list, const char* item, Ids& ids) {
    record_list(archive, list, item, ids, [](auto& each, auto& id) { each.content(id); });
}

} // namespace kelm
