// Case-blind order and equality of single-byte text.
// Not a collation: nothing here knows a language or an encoding.
#include "util/ascii.h"

#include <algorithm>
#include <cstddef>

namespace kelm {

namespace {

int folded(char c) noexcept { return static_cast<unsigned char>(to_lower(c)); }

/// The byte at `position` as a C string has it: zero at the end.
int folded_at(std::string_view text, std::size_t position) noexcept {
    return position < text.size() ? folded(text[position]) : 0;
}

} // namespace

int compare_no_case(std::string_view a, std::string_view b) noexcept {
    for (std::size_t i = 0;; ++i) {
        const int left = folded_at(a, i);
        const int right = folded_at(b, i);
        if (left != right || left == 0) return left - right;
    }
}

bool equal_no_case(std::string_view a, std::string_view b) noexcept { return compare_no_case(a, b) == 0; }

bool less_no_case(std::string_view a, std::string_view b) noexcept { return compare_no_case(a, b) < 0; }

bool same_bytes_no_case(std::string_view a, std::string_view b) noexcept {
    return std::ranges::equal(a, b, {}, to_lower, to_lower);
}

} // namespace kelm
