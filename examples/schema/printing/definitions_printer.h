// What an edited schema defines for its tables to use, as text: domains and properties of users.
// As JSON they are written by definitions_json.h.
#pragma once

#include <kelm/object.h>

#include <ostream>

namespace schema {

/// Prints a block of the domains and one of the user-defined properties, a line each; nothing where there are none.
/// \param root  the model's object side
void print_definitions(std::ostream& out, const kelm::object& root);

} // namespace schema
