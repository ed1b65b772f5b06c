// Places of elements by what makes them equal.
// Kinds that are equal by a rule of their own are searched for, as without an index.
#include "message/element_index.h"

#include "framework/values.h"

#include <kelm/object.h>

#include <algorithm>
#include <iterator>

namespace kelm {

namespace {

template <class T>
bool append_number(const abstract_property& value, char kind, std::string& key) {
    const auto* const box = exact_cast<property<T>>(&value);
    if (box) key = kind + std::to_string(box->value);
    return box != nullptr;
}

/// \returns a text that two values share exactly when they are equal; empty for a kind that has none.
/// The three 32-bit kinds equal each other.
std::string key_of(const abstract_property& value) {
    std::string key;
    if (const auto* const text = exact_cast<property<std::string>>(&value)) return 's' + text->value;
    if (const auto* const reference = exact_cast<property<object*>>(&value))
        return reference->value ? 'o' + std::to_string(reference->value->id()) : key;
    if (const auto* const number = exact_cast<property<unsigned>>(&value))
        return 'i' + std::to_string(static_cast<int>(number->value));
    static_cast<void>(append_number<int>(value, 'i', key) || append_number<long>(value, 'i', key) ||
                      append_number<bool>(value, 'b', key) || append_number<short>(value, 'h', key) ||
                      append_number<long long>(value, 'l', key));
    return key;
}

} // namespace

u32 element_index::position(const vector_property& list, const abstract_property& value) {
    const std::string key = key_of(value);
    if (key.empty()) return element_position(list, value);
    const auto [known, is_new] = lists_.try_emplace(&list);
    first_places& places = known->second;
    for (std::size_t i = 0; is_new && i != list.elements.size(); ++i)
        if (list.elements[i]) places.try_emplace(key_of(*list.elements[i]), static_cast<u32>(i));
    const auto found = places.find(key);
    return found == places.end() ? npos32 : found->second;
}

u32 element_position(const vector_property& list, const abstract_property& value) {
    const auto at =
        std::ranges::find_if(list.elements, [&value](const auto* each) { return value.equals(each); });
    return at == list.elements.end() ? npos32 : static_cast<u32>(std::distance(list.elements.begin(), at));
}

} // namespace kelm
