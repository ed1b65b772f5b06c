// Numbers to text and back, on std::to_chars and a private C locale.
// Not the place for ids, GUIDs or dates: those have forms of their own.
#include "util/text.h"

#include "util/ascii.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <clocale>
#include <cstddef>
#include <cstdlib>
#include <limits>

namespace kelm {

namespace {

std::string_view without_leading_space(std::string_view text) noexcept {
    std::size_t count = 0;
    while (count < text.size() && is_space(text[count])) ++count;
    return text.substr(count);
}

/// The value of the digits that `text` starts with, at most `limit`.
unsigned long long leading_digits(std::string_view text, unsigned long long limit) noexcept {
    unsigned long long number = 0;
    for (const char c : text) {
        if (!is_digit(c)) break;
        const auto digit = static_cast<unsigned long long>(c - '0');
        if (number > (limit - digit) / 10) return limit;
        number = number * 10 + digit;
    }
    return number;
}

/// The C locale as an object, so that reading needs no change of the process's locale.
locale_t c_locale() {
    static const locale_t made = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return made;
}

} // namespace

std::string text_of(long long number) {
    std::array<char, 24> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    return {buffer.data(), end};
}

std::string format_double(double number) {
    std::array<char, 32> buffer;
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 6)
            .ptr;
    return {buffer.data(), end};
}

long long parse_long(std::string_view text) noexcept {
    constexpr auto highest = std::numeric_limits<long long>::max();
    text = without_leading_space(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);

    // The lowest number has no positive twin: the digits are read unsigned and negated there.
    const auto limit = static_cast<unsigned long long>(highest) + (negative ? 1U : 0U);
    const unsigned long long size = leading_digits(text, limit);
    return static_cast<long long>(negative ? 0 - size : size);
}

int parse_int(std::string_view text) noexcept {
    return static_cast<int>(static_cast<unsigned int>(parse_long(text)));
}

unsigned long long parse_unsigned(std::string_view text) noexcept {
    return leading_digits(without_leading_space(text), std::numeric_limits<unsigned long long>::max());
}

double parse_double(std::string_view text) {
    // strtod wants a terminator, which a view does not promise. It also leaves a trace in errno, which a
    // reader that reports no errors should not.
    const std::string terminated(text);
    const int before = errno;
    const double number = ::strtod_l(terminated.c_str(), nullptr, c_locale());
    errno = before;
    return number;
}

} // namespace kelm
