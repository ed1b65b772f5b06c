// The command `edit`: a script of edits, on a schema in memory.
// Its arguments are taken apart in main.cpp.
#pragma once

#include "rules.h"

#include <ostream>
#include <string>

namespace schema {

/// Reads the schema of the database at `source` into a model and runs the lines of a script on it.  The database
/// stays as it is.
/// \param script  a file's name; "-" for standard input
/// \param shared  of the hooks that the types were given
/// \throws std::runtime_error for the first line that is wrong, with its number; the lines before it are done
void edit(const std::string& source, const std::string& script, rules& shared, std::ostream& out);

} // namespace schema
