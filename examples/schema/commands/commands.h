// The commands as the command line has them: each adds its arguments, and does its work when it is given.
// The work itself is in files that know no command line.
#pragma once

#include "hooks/rules.h"
#include "log/signature.h"

#include <CLI/CLI.hpp>

#include <cstddef>
#include <initializer_list>
#include <string>

namespace schema {

// Each adds a subcommand.  Its callback prints on std::cout, and throws std::runtime_error with one sentence.
// `shared` is borrowed: of the hooks that the types were given.
void add_show_command(CLI::App& app, rules& shared);
void add_import_command(CLI::App& app, rules& shared);
void add_edit_command(CLI::App& app, rules& shared);
void add_undo_command(CLI::App& app, rules& shared);
void add_log_command(CLI::App& app, rules& shared);
void add_replay_command(CLI::App& app, rules& shared);
void add_convert_command(CLI::App& app, rules& shared);
void add_changes_command(CLI::App& app, rules& shared);
void add_copy_command(CLI::App& app, rules& shared);
void add_paste_command(CLI::App& app, rules& shared);

// What several of them have.

/// Adds an argument that names a file: the completion of a shell offers files for it.
/// \param name  as CLI::App::add_option takes it
/// \param into  borrowed; filled when the argument is given
CLI::Option& add_file(CLI::App& command, const std::string& name, std::string& into,
                      const std::string& description);
/// Adds an argument that is a number from 1 on.
CLI::Option& add_count(CLI::App& command, const std::string& name, std::size_t& into,
                       const std::string& description);
/// Adds --author and --time, which fill `by`.
void add_signature_options(CLI::App& command, signature& by);
/// Adds --on-referenced-drop, which fills `shared`.
void add_drop_option(CLI::App& command, rules& shared);

} // namespace schema
