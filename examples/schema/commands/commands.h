// The commands as the command line has them: each adds its arguments, and does its work when it is given.
// The work itself is in files that know no command line.
#pragma once

#include "hooks/rules.h"
#include "log/signature.h"

#include <CLI/CLI.hpp>

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

/// Adds --author and --time, which fill `by`.
void add_signature_options(CLI::App& command, signature& by);
/// Adds --on-referenced-drop, which fills `shared`.
void add_drop_option(CLI::App& command, rules& shared);

} // namespace schema
