// Boxes for one typed value each: what properties, vector elements and meta attributes hold.
// Where values live and who is told of a change is the business of object.h.
#pragma once

#include <kelm/export.h>
#include <kelm/guid.h>
#include <kelm/io_references.h>
#include <kelm/types.h>

#include <iosfwd>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace kelm {

/// Codes of the built-in kinds of value; the same numbers are the class of a meta property.
namespace data_type {
inline constexpr u32 none = 0;             ///< no kind: what is not registered
inline constexpr u32 vector = 1;           ///< vector_property
inline constexpr u32 boolean = 2;          ///< property<bool>
inline constexpr u32 short_integer = 3;    ///< property<short>, 16 bits
inline constexpr u32 integer = 4;          ///< property<int>, 32 bits
inline constexpr u32 long_integer = 5;     ///< property<long>, 32 bits
inline constexpr u32 string = 6;           ///< property<std::string>, 8-bit characters
inline constexpr u32 real = 7;             ///< property<double>
inline constexpr u32 object_reference = 8; ///< property<object*>
inline constexpr u32 long_long = 1001;     ///< property<long long>, 64 bits
inline constexpr u32 model_id = 1002;      ///< property<GUID>
inline constexpr u32 id_map = 1003;        ///< property<id_multimap>
} // namespace data_type

/// A box for one value.  Whoever holds the pointer owns the box, unless an interface says borrowed.
/// An application adds kinds of its own by deriving and registering (framework::register_data_type).
/// Operations throw nothing of their own, but std::bad_alloc.
class KELM_EXPORT abstract_property {
public:
    virtual ~abstract_property() = default;

    /// \returns a new box of the same kind and value; the caller owns it
    virtual owned<abstract_property*> clone() const = 0;
    /// \param other  borrowed
    /// \returns whether `other` holds the same value; false for null and for another kind.  Numbers with a fraction
    ///          need not be equal to the last digit, and no null reference equals anything
    virtual bool equals(const abstract_property* other) const = 0;
    /// Takes over the elements of another vector; does nothing in every other kind.
    ///
    /// \param other  borrowed; null does nothing
    virtual void merge(abstract_property* other);
    /// \returns the text form
    virtual std::string to_string() const = 0;
    /// Replaces `out` by the text form.
    virtual void to_string(std::string& out) const = 0;
    /// Sets the value from text; bad text reads as far as it goes, and never throws.
    virtual void from_string(const std::string& text) = 0;
    /// Fills an element of a document: with the text form, or with nothing where that is empty.
    ///
    /// \param element  a `xercesc::DOMElement*` as void* (xml_helpers.h)
    /// \param id       of the property that the value is of: the application may have texts of it escaped (qdxml.h)
    virtual void write_xml(void* element, u32 id) const;
    /// Reads what write_xml() wrote; an element without text leaves the value as it is.
    ///
    /// \param element             as for write_xml()
    /// \param id                  as for write_xml()
    /// \param references, holder  as for read()
    virtual void read_xml(void* element, u32 id, std::vector<reference_record>& references, object* holder);
    /// Appends the binary form: little-endian, in the width of the kind, without a type code.
    virtual void write(std::ostream& out) const = 0;
    /// Reads what write() wrote.  A failure shows in the state of `in`.
    ///
    /// \param in          borrowed, like all that is handed over
    /// \param references  receives a record for each object reference read, also for null ones
    /// \param holder      borrowed: the object that the value will belong to; may be null
    virtual void read(std::istream& in, std::vector<reference_record>& references, object* holder) = 0;

    /// Boxes come from free lists by size: a clone of a scalar is one pop from a list.
    static void* operator new(std::size_t size);
    /// Gives the memory back to the list of its size.
    static void operator delete(void* memory, std::size_t size) noexcept;

protected:
    abstract_property() = default;
    abstract_property(const abstract_property&) = default;
    abstract_property& operator=(const abstract_property&) = default;
};

/// Ordered pairs of ids, the value of the kind "Id Map".
using id_multimap = std::multimap<u32, u32>;

/// What a box of kind T stores: T itself, but 32 bits for "Long", whose width is part of the stream format.
template <class T>
using stored_value = std::conditional_t<std::is_same_v<T, long>, std::int32_t, T>;

/// The box for one value of type T.
///
/// Kinds: bool, short, int, long, unsigned, long long, double, std::string, object*, GUID, id_multimap.
/// `property<object*>` borrows its target; a copy in a user's hands may outlive it.
///
/// Text forms: "True" and "False"; decimal numbers, those with a fraction in six digits; the text itself; the
/// name of the target, which from_string() does not read: it takes the id of an object of the first open
/// model, as a number; the 38 characters of a GUID.  Of an id_multimap neither text nor stream keep the
/// pairs.  `property<unsigned>` is written and shown as an int.
template <class T>
class KELM_EXPORT property final : public abstract_property {
public:
    property() = default;
    /// Holds `initial`.
    explicit property(stored_value<T> initial) : value(std::move(initial)) {}

    owned<abstract_property*> clone() const override;
    bool equals(const abstract_property* other) const override;
    std::string to_string() const override;
    void to_string(std::string& out) const override;
    void from_string(const std::string& text) override;
    void write_xml(void* element, u32 id) const override;
    void read_xml(void* element, u32 id, std::vector<reference_record>& references, object* holder) override;
    void write(std::ostream& out) const override;
    void read(std::istream& in, std::vector<reference_record>& references, object* holder) override;

    stored_value<T> value{}; ///< zero, false, empty or null at first
};

extern template class property<bool>;
extern template class property<short>;
extern template class property<int>;
extern template class property<long>;
extern template class property<unsigned>;
extern template class property<long long>;
extern template class property<double>;
extern template class property<std::string>;
extern template class property<object*>;
extern template class property<GUID>;
extern template class property<id_multimap>;

/// An ordered list of values, each of any kind.  It owns its elements.
class KELM_EXPORT vector_property final : public abstract_property {
public:
    vector_property() = default;
    ~vector_property() override;
    vector_property(const vector_property&) = delete;
    vector_property& operator=(const vector_property&) = delete;

    owned<abstract_property*> clone() const override;
    bool equals(const abstract_property* other) const override;
    /// Moves each element of `other`, a vector, to the end of this list; one that is here already changes
    /// its place.  `other` is left empty.  Nothing happens for another kind, for null, and for this very box.
    void merge(abstract_property* other) override;
    /// \returns the text forms of the elements, with ", " between them
    std::string to_string() const override;
    /// Replaces `out` by the same.
    void to_string(std::string& out) const override;
    /// Reads "[text|code][text|code]": the text of an element, then the code of its kind.
    /// What is of another shape, or of an unknown code, is left out.
    /// The former elements leave the list undeleted: pointers to them stay good, and are the caller's.
    void from_string(const std::string& text) override;
    /// An element "elem" for each value, with its "datatype" and its "value".
    void write_xml(void* element, u32 id) const override;
    /// Leaves out an "elem" whose data type is unknown, or that has no "value".
    void read_xml(void* element, u32 id, std::vector<reference_record>& references, object* holder) override;
    void write(std::ostream& out) const override;
    void read(std::istream& in, std::vector<reference_record>& references, object* holder) override;

    std::vector<abstract_property*> elements; ///< owned; null entries are tolerated by clone and destructor
};

/// A meta attribute's id with a value and a mark.  Owns the value, which its destructor frees.
struct KELM_EXPORT attribute_value_pair {
    attribute_value_pair() = default;
    /// Takes `v` over, which may be null.
    attribute_value_pair(u32 id, owned<abstract_property*> v, bool f) : attribute_id(id), value(v), flag(f) {}
    attribute_value_pair(const attribute_value_pair&) = delete;
    /// Copies the pointer as it stands: whoever assigns sets one of the two to null.
    attribute_value_pair& operator=(const attribute_value_pair& other);
    ~attribute_value_pair();

    u32 attribute_id = 0;               ///< one of kelm::attribute_id, or an application's own
    abstract_property* value = nullptr; ///< owned; may be null
    bool flag = false;                  ///< the mark
};

} // namespace kelm
