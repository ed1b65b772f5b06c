// What an edited schema defines for its tables to use, as JSON: domains and properties of users.
// As text they are printed by definitions_printer.h.
#pragma once

#include "printing/json_writer.h"

#include <kelm/object.h>

namespace schema {

// Members of the object that is being written; none where there is nothing, as in all that a database tells.

/// Writes "domains" and "properties".
/// \param root  the model's object side
void write_definitions(json_writer& json, const kelm::object& root);
/// Writes "domain", the name of the one that a column uses.
void write_domain(json_writer& json, const kelm::object& column);
/// Writes "properties", with a member for each one that is set on a table or a column.
void write_user_values(json_writer& json, const kelm::object& what);

} // namespace schema
