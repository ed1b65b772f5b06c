// Classification, case folding and case-blind order of single-byte text.
// Not the C library's <cctype>: no locale is looked at, and every char value is allowed.
#pragma once

#include <string_view>

namespace kelm {

/// True for the characters that C calls white space: 9 to 13 (tab, line feed, vertical tab, form feed,
/// carriage return) and the blank.
[[nodiscard]] inline constexpr bool is_space(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// True for '0' to '9'.
[[nodiscard]] inline constexpr bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }

/// True for 'A' to 'Z' and 'a' to 'z'; bytes from 0x80 up are no letters.
[[nodiscard]] inline constexpr bool is_alpha(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// True for letters and digits.
[[nodiscard]] inline constexpr bool is_alnum(char c) noexcept { return is_alpha(c) || is_digit(c); }

/// 'A' to 'Z' for 'a' to 'z'; every other character as it is.
[[nodiscard]] inline constexpr char to_upper(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// 'a' to 'z' for 'A' to 'Z'; every other character as it is.
[[nodiscard]] inline constexpr char to_lower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Orders two texts as C strings, blind to the case of the 26 letters.
///
/// Each text ends at its first zero byte, or else at its size. Letters count as lower case, so that '_'
/// comes before every letter; bytes compare as unsigned values.
///
/// \returns below 0, 0 or above 0, as `a` comes before, equals or comes after `b`
[[nodiscard]] int compare_no_case(std::string_view a, std::string_view b) noexcept;

/// True when `compare_no_case` finds no difference; so what stands behind a zero byte does not count.
[[nodiscard]] bool equal_no_case(std::string_view a, std::string_view b) noexcept;

/// True when `compare_no_case` puts `a` before `b`; a strict weak order.
[[nodiscard]] bool less_no_case(std::string_view a, std::string_view b) noexcept;

/// True when both texts have the same length and, blind to case, the same bytes; a zero byte is a byte like
/// any other.
[[nodiscard]] bool same_bytes_no_case(std::string_view a, std::string_view b) noexcept;

} // namespace kelm
