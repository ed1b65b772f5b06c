// The bodies of property<T>, over the rules of each kind.
// Included only where kinds are instantiated: everyone else sees <kelm/property.h>.
#pragma once

#include <kelm/property.h>

#include <typeinfo>

namespace kelm {

/// What tells one kind of box from another.  A kind specialises it with
///
///     static bool same(value, value)               for two boxes of the kind
///     static bool same_elsewhere(value, box)       for a box of another kind
///     static void text(value, std::string& out)
///     static void parse(value&, const std::string& text)
///     static void write(value, std::ostream& out)
///     static void read(property<T>& box, std::istream& in, references, holder)
///
/// and, where a document has not the text form,
///
///     static void write_xml(value, void* element, u32 id)
///     static void read_xml(property<T>& box, void* element, u32 id, references, holder)
template <class T>
struct value_rules;

template <class T>
owned<abstract_property*> property<T>::clone() const {
    return new property(*this);
}

template <class T>
bool property<T>::equals(const abstract_property* other) const {
    if (!other) return false;
    if (typeid(*other) != typeid(property)) return value_rules<T>::same_elsewhere(value, *other);
    return value_rules<T>::same(value, static_cast<const property*>(other)->value);
}

template <class T>
std::string property<T>::to_string() const {
    std::string out;
    value_rules<T>::text(value, out);
    return out;
}

template <class T>
void property<T>::to_string(std::string& out) const {
    value_rules<T>::text(value, out);
}

template <class T>
void property<T>::from_string(const std::string& text) {
    value_rules<T>::parse(value, text);
}

template <class T>
concept has_document_form_of_its_own = requires(const stored_value<T>& value, void* element) {
    value_rules<T>::write_xml(value, element, u32{});
};

template <class T>
void property<T>::write_xml(void* element, u32 id) const {
    if constexpr (has_document_form_of_its_own<T>)
        value_rules<T>::write_xml(value, element, id);
    else
        abstract_property::write_xml(element, id);
}

template <class T>
void property<T>::read_xml(void* element, u32 id, std::vector<reference_record>& references, object* holder) {
    if constexpr (has_document_form_of_its_own<T>)
        value_rules<T>::read_xml(*this, element, id, references, holder);
    else
        abstract_property::read_xml(element, id, references, holder);
}

template <class T>
void property<T>::write(std::ostream& out) const {
    value_rules<T>::write(value, out);
}

template <class T>
void property<T>::read(std::istream& in, std::vector<reference_record>& references, object* holder) {
    value_rules<T>::read(*this, in, references, holder);
}

} // namespace kelm
