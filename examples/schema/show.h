// The command `show`: what a database contains.
// Its arguments are taken apart in main.cpp.
#pragma once

#include <ostream>
#include <string>

namespace schema {

/// Reads the schema of the database at `path` into a model and prints it from there.
/// \throws database_error when it cannot be read; nothing has been printed then
void show(const std::string& path, bool as_json, std::ostream& out);

} // namespace schema
