// The command `log`: the edits that a file remembers.
// As a script that another file can follow they are written by replay_log.h.
#pragma once

#include "log/transactions.h"

#include <ostream>
#include <string>
#include <vector>

namespace schema {

/// Prints a line a transaction, and with `messages` one a change below it.
void print_log(std::ostream& out, const std::vector<transaction>& shown, bool messages);

/// The same for programs, with all changes.
/// \param file  the name of the file
void print_log_as_json(std::ostream& out, const std::string& file, const std::vector<transaction>& shown);

} // namespace schema
