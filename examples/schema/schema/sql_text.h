// A look into the text of CREATE statements, for what SQLite tells in no other way.
// No parser: it knows words, quotes, comments and brackets.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace schema {

/// \returns the text without comments, each run of white space as one blank
std::string one_line(std::string_view sql);

/// \returns what follows the name in a CREATE statement, as one line
std::string after_name(std::string_view create);

/// \returns whether the name stands in the text, with or without quotes, as SQLite compares names
bool mentions(std::string_view sql, const std::string& name);

/// The terms of a CREATE INDEX statement, without ASC and DESC, and the condition of a partial index.
struct index_text {
    std::vector<std::string> terms;
    std::string condition;
};
index_text read_index(std::string_view create);

} // namespace schema
