// Numbers as applications give them for ids and classes.
// Other values are told apart by framework/values.h.
#pragma once

#include "framework/values.h"

#include <optional>

namespace kelm {

/// \returns the number in an unsigned, int or long box; nothing for null and for any other kind
inline std::optional<u32> whole_number(const abstract_property* value) {
    if (const auto* const number = exact_cast<property<unsigned>>(value)) return number->value;
    if (const auto* const number = exact_cast<property<int>>(value)) return static_cast<u32>(number->value);
    if (const auto* const number = exact_cast<property<long>>(value)) return static_cast<u32>(number->value);
    return std::nullopt;
}

} // namespace kelm
