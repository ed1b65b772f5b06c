// The command `show`: what a database contains, or a file that was saved.
// Its arguments are taken apart in show_command.cpp.
#pragma once

#include "hooks/rules.h"
#include "printing/listing.h"

#include <ostream>
#include <string>

namespace schema {

/// Reads a schema into a model and prints from there what is wanted of it.
/// \throws database_error or file_error when it cannot be read; nothing has been printed then
void show(const std::string& path, const selection& wanted, bool as_json, rules& shared, std::ostream& out);

} // namespace schema
