// Quoting and comparing names by SQLite's own rules.
// Control characters and broken text are dealt with where names are shown.
#include "schema/identifiers.h"

#include "schema/characters.h"

#include <sqlite3.h>

#include <algorithm>

namespace schema {

namespace {

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

std::string unquoted(std::string_view sql) {
    const char quote = sql.empty() ? '\0' : sql.front();
    if (quote != '"' && quote != '`' && quote != '[') return std::string(sql);
    std::string name;
    for (std::size_t at = 1; at + 1 < sql.size(); ++at) {
        name += sql[at];
        if (sql[at] == quote && quote != '[') ++at; // a doubled quote stands for itself
    }
    return name;
}

bool less_name::operator()(const std::string& a, const std::string& b) const {
    return sqlite3_stricmp(a.c_str(), b.c_str()) < 0;
}

bool same_name(const std::string& a, const std::string& b) {
    return sqlite3_stricmp(a.c_str(), b.c_str()) == 0;
}

} // namespace schema
