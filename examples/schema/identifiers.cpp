// Quoting and comparing names by SQLite's own rules.
// Control characters and broken text are dealt with where names are shown.
#include "identifiers.h"

#include <sqlite3.h>

#include <algorithm>

namespace schema {

namespace {

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_plain(const std::string& name) {
    return !name.empty() && is_letter(name.front()) &&
           std::all_of(name.begin(), name.end(), [](char c) { return is_letter(c) || is_digit(c); }) &&
           sqlite3_keyword_check(name.data(), static_cast<int>(name.size())) == 0;
}

} // namespace

std::string identifier(const std::string& name) {
    if (is_plain(name)) return name;
    std::string quoted = "\"";
    for (const char c : name) {
        if (c == '"') quoted += c;
        quoted += c;
    }
    return quoted + '"';
}

bool less_name::operator()(const std::string& a, const std::string& b) const {
    return sqlite3_stricmp(a.c_str(), b.c_str()) < 0;
}

bool same_name(const std::string& a, const std::string& b) {
    return sqlite3_stricmp(a.c_str(), b.c_str()) == 0;
}

} // namespace schema
