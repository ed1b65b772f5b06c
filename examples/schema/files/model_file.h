// A schema from a file of any kind, and into one.
// Each kind is read and written by a file of its own.
#pragma once

#include "hooks/rules.h"

#include <kelm/model.h>

#include <string>

namespace schema {

/// Reads a database, a stream or a document into a new model.  What was saved comes with its history.
/// \returns the model, borrowed: it lives until it is deleted, or the library shut down
/// \throws file_error or database_error when it cannot be read
kelm::model& load_schema(const std::string& path, rules& shared);

/// The same for what was saved.
/// \throws file_error for a database as well
kelm::model& load_saved(const std::string& path, rules& shared);

/// Writes the model with its history, as the name of the file says.  What was undone is not part of it.
/// \throws file_error when it cannot be written; the file, or that there is none, is as before
void save_schema(kelm::model& model, const std::string& path, rules& shared);

} // namespace schema
