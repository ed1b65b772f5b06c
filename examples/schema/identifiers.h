// Names as SQL writes them, and as SQLite compares them.
// No look-up: see reader.cpp.
#pragma once

#include <string>

namespace schema {

/// \returns the name, in double quotes unless it is made of plain letters, digits and underscores and no keyword
std::string identifier(const std::string& name);

/// Orders names as SQLite tells them apart: the case of plain letters does not count.
struct less_name {
    bool operator()(const std::string& a, const std::string& b) const;
};
bool same_name(const std::string& a, const std::string& b);

} // namespace schema
