// What a character is to SQLite, in names and around them.
// Plain bytes: the user's locale changes nothing.
#pragma once

#include <string_view>

namespace schema {

inline bool is_space(char c) { return std::string_view(" \t\n\f\r").find(c) != std::string_view::npos; }
inline bool is_digit(char c) { return c >= '0' && c <= '9'; }
inline bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
/// What may stand in a name without quotes; anything beyond ASCII may.
inline bool is_word(char c) {
    return is_letter(c) || is_digit(c) || c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

} // namespace schema
