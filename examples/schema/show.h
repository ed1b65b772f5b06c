// The command `show`: what a database contains.
// Its arguments are taken apart in main.cpp.
#pragma once

#include "listing.h"

#include <ostream>
#include <string>

namespace schema {

/// Reads the schema of the database at `path` into a model and prints from there what is wanted of
/// it.
/// \throws database_error when it cannot be read; nothing has been printed then
void show(const std::string& path, const selection& wanted, bool as_json, std::ostream& out);

} // namespace schema
