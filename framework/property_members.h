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
void property<T>::write(std::ostream& out) const {
    value_rules<T>::write(value, out);
}

template <class T>
void property<T>::read(std::istream& in, std::vector<reference_record>& references, object* holder) {
    value_rules<T>::read(*this, in, references, holder);
}

} // namespace kelm
