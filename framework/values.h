// Values in the two kinds of smart pointer: owned by one, and shared with a reader.
// The boxes themselves are in <kelm/property.h>.
#pragma once

#include "util/free_list.h"

#include <kelm/property.h>

#include <memory>
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

/// \returns a copy of `value` for a reader; empty for null
[[nodiscard]] inline value_ptr shared_clone(const abstract_property* value) { return share(clone(value)); }

} // namespace kelm
