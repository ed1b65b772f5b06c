// The command `edit`: a script of edits, on a schema in memory.
// Its arguments are taken apart in edit_command.cpp.
#pragma once

#include "hooks/rules.h"
#include "log/signature.h"

#include <ostream>
#include <string>

namespace schema {

struct edit_request {
    std::string source; ///< a database or what was saved
    std::string script; ///< a file's name; "-" for standard input
    std::string target; ///< the file to save in; empty for the source itself, unless that is a database
    signature by;       ///< of the edits
};

/// Reads a schema into a model, runs the lines of a script on it, and saves it when all went well.  A database stays
/// as it is.
/// \param shared  of the hooks that the types were given
/// \throws std::runtime_error for the first line that is wrong, with its number: nothing is saved then
void edit(const edit_request& wanted, rules& shared, std::ostream& out);

} // namespace schema
