// From a database file to a model of its schema, and the empty model to begin with.
// What is read, and how, is the business of reader.h.
#pragma once

#include <kelm/model.h>

#include <string>

namespace schema {

/// Makes an empty model.
/// \returns borrowed: it lives until it is deleted, or the library shut down
kelm::model& new_model();

/// Makes a model and reads the schema of the database at `path` into it.
/// \returns the model, borrowed as above; its history begins behind the reading
/// \throws database_error or file_error when it cannot be read
kelm::model& load_database(const std::string& path);

} // namespace schema
