// Names as SQL writes them, and as SQLite compares them.
// No look-up: see reader.cpp.
#pragma once

#include <string>
#include <string_view>

namespace schema {

/// \returns the name, in double quotes unless it is made of plain letters, digits and underscores and no keyword
std::string identifier(const std::string& name);
/// \returns the name that a piece of SQL means, without the quotes it may have
std::string unquoted(std::string_view sql);

/// Orders names as SQLite tells them apart: the case of plain letters does not count.
struct less_name {
    bool operator()(const std::string& a, const std::string& b) const;
};
bool same_name(const std::string& a, const std::string& b);

} // namespace schema
