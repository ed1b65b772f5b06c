// What is said to arguments that cannot be meant.
// What is wrong with files and edits is said where it is found.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace schema {

/// \returns one sentence for what the parser has complained of
std::string wrong_use(const CLI::App& app, const CLI::ParseError& error);

} // namespace schema
