// The way from a database into a model.
// Nothing is shown here: see tree_printer.h and json_printer.h.
#pragma once

#include "reading/sqlite_database.h"

#include <kelm/model.h>

namespace schema {

/// Reads the schema of `from` into `into`, an empty model, in one transaction.  Tables and views come in the order
/// of their names, all that they contain in the order of its declaration.
/// \throws database_error when the database cannot be read; the model is then as before
void read_schema(const database& from, kelm::model& into);

} // namespace schema
