// Schemas in XML documents.
// Their elements are the library's business, the tree is kept by xml_document.h.
#pragma once

#include "hooks/rules.h"

#include <kelm/model.h>

#include <string>

namespace schema {

/// Reads a model with its history.
/// \returns borrowed: it lives until it is deleted, or the library shut down
/// \throws file_error when the file is no document of a version that is known
kelm::model& load_document(const std::string& path, rules& shared);

/// \param path  where it is going to, for errors
/// \returns the model with its history, as a document that has been read on trial and found to hold all of it
/// \throws file_error when it cannot be one: a text holds a character that XML has no place for
std::string to_document(kelm::model& model, const std::string& path, rules& shared);

} // namespace schema
