// Numbers to text and back, the same in every locale.
// Not a validator: reading reports no errors, bad text counts as far as it makes sense and else as 0.
#pragma once

#include <string>
#include <string_view>

namespace kelm {

/// Decimal text, with a '-' where it is negative.
[[nodiscard]] std::string text_of(long long number);

/// The text that "%g" gives in the C locale: at most six significant digits, no trailing zeros, an exponent
/// where it is below -4 or above 5; "inf", "nan" and, with the sign bit set, "-inf", "-nan".
[[nodiscard]] std::string format_double(double number);

/// Reads a decimal number: leading white space (`is_space`), one optional sign, digits; the first other
/// character ends it.
///
/// \returns the number; 0 without a digit; the nearest limit of 64 bits for a number beyond it
[[nodiscard]] long long parse_long(std::string_view text) noexcept;

/// Reads as `parse_long` does and takes the low 32 bits, as the C library's `atoi` does on this platform:
/// "2147483648" is -2147483648 and "4294967295" is -1. A number beyond 64 bits is held at the limit first, so
/// it gives -1 above and 0 below.
[[nodiscard]] int parse_int(std::string_view text) noexcept;

/// Reads a decimal number without a sign: leading white space (`is_space`), digits; the first other character
/// ends it.
///
/// \returns the number; 0 without a digit, so also for "-1" and "+1"; the highest 64-bit number for one
///          beyond it
[[nodiscard]] unsigned long long parse_unsigned(std::string_view text) noexcept;

/// Reads a floating point number as `atof` does in the C locale: leading white space, one optional sign, then
/// a decimal or hexadecimal number, "inf", "infinity" or "nan" in any case; what follows is ignored.
///
/// \returns the nearest double; 0 when there is no number; an infinity for a number too large
/// \throws  std::bad_alloc
[[nodiscard]] double parse_double(std::string_view text);

} // namespace kelm
