// From a database file to a model of its schema, as every command begins.
// What is read, and how, is the business of reader.h.
#pragma once

#include <kelm/model.h>

#include <string>

namespace schema {

/// Makes a model and reads the schema of the database at `path` into it.
/// \returns the model, borrowed: it lives until the library is shut down
/// \throws database_error when it cannot be read
kelm::model& load_database(const std::string& path);

} // namespace schema
