// The whole command line: the program's own options, and all commands.
// What a command does is in a file of its name.
#pragma once

#include "hooks/rules.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>
#include <vector>

namespace schema {

/// \param shared  borrowed: of the hooks that the types were given
std::unique_ptr<CLI::App> command_line(rules& shared);

/// Does what the arguments say.
/// \param arguments  without the name of the program
/// \throws std::runtime_error with one sentence for whatever is wrong, with them or with files
void run(CLI::App& app, std::vector<std::string> arguments);

} // namespace schema
