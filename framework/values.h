// Values in the two kinds of smart pointer: owned by one, and shared with a reader.
// The boxes themselves are in <kelm/property.h>.
#pragma once

#include "util/free_list.h"

#include <kelm/property.h>

#include <boost/smart_ptr/make_shared_object.hpp>

#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>

namespace kelm {

/// \returns `value` as a box of exactly that kind; null for another, and for null.  Kinds of the library are final and
///          have one description each, so that comparing its address is enough: this stands in the hottest paths.
template <class Kind>
[[nodiscard]] inline const Kind* exact_cast(const abstract_property* value) {
    static_assert(std::is_final_v<Kind>);
    return value && &typeid(*value) == &typeid(Kind) ? static_cast<const Kind*>(value) : nullptr;
}

/// \returns the same of a value that may be changed
template <class Kind>
[[nodiscard]] inline Kind* exact_cast(abstract_property* value) {
    return const_cast<Kind*>(exact_cast<Kind>(static_cast<const abstract_property*>(value)));
}

/// \returns an empty text for null
[[nodiscard]] inline std::string text_or_empty(const abstract_property* value) {
    return value ? value->to_string() : std::string{};
}

/// \returns a copy of `value`; null for null
[[nodiscard]] inline std::unique_ptr<abstract_property> clone(const abstract_property* value) {
    return std::unique_ptr<abstract_property>{value ? value->clone() : nullptr};
}

/// Deletes a value.  A type of its own, and empty, so that it takes no room in a control block.
struct value_deleter {
    void operator()(const abstract_property* value) const noexcept { delete value; }
};

/// Hands `value` to a reader; the count comes from the free lists.  Empty for null.
[[nodiscard]] inline value_ptr share(std::unique_ptr<abstract_property> value) {
    if (!value) return {};
    // When there is no memory for the count, the pointer's constructor frees the value.
    return value_ptr{value.release(), value_deleter{}, pool_allocator<abstract_property*>{}};
}

/// \returns a copy of a scalar of the library's kinds for a reader, in one block with its count; empty for null and for
///          any other kind.  Runs no code of an application.
[[nodiscard]] inline value_ptr shared_scalar(const abstract_property* value) {
    const auto copy = [](const auto& box) -> value_ptr {
        using kind = std::remove_cvref_t<decltype(box)>;
        return boost::allocate_shared<kind>(pool_allocator<kind>{}, box.value);
    };
    if (const auto* const text = exact_cast<property<std::string>>(value)) return copy(*text);
    if (const auto* const number = exact_cast<property<int>>(value)) return copy(*number);
    if (const auto* const flag = exact_cast<property<bool>>(value)) return copy(*flag);
    if (const auto* const real = exact_cast<property<double>>(value)) return copy(*real);
    if (const auto* const reference = exact_cast<property<object*>>(value)) return copy(*reference);
    return {};
}

/// \returns a copy of `value` for a reader; empty for null
[[nodiscard]] inline value_ptr shared_clone(const abstract_property* value) { return share(clone(value)); }

} // namespace kelm
