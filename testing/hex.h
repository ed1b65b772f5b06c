// Bytes as people compare them.
// Nothing else.
#pragma once

#include <string>
#include <string_view>

namespace kelm::testing {

/// \returns bytes as hexadecimal digits, two and a blank for each
inline std::string hex(std::string_view bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string out;
    for (const char each : bytes) {
        const auto value = static_cast<unsigned char>(each);
        out += digits[value >> 4U];
        out += digits[value & 15U];
        out += ' ';
    }
    return out;
}

} // namespace kelm::testing
