// Schemas in the library's binary form.
// Its fields are the library's business: docs/stream_format.md tells them.
#pragma once

#include "hooks/rules.h"

#include <kelm/model.h>

#include <string>

namespace schema {

/// Reads a model with its history.
/// \returns borrowed: it lives until it is deleted, or the library shut down
/// \throws file_error when the file is no whole stream of a version that is known
kelm::model& load_stream(const std::string& path, rules& shared);

/// \returns the model with its history
std::string to_stream(kelm::model& model);

/// Judges what the library has read, and says what is wrong.  Its hooks have kept the version.
/// \param whole  whether the reading went well
/// \throws file_error unless it did, in the present version, and the objects fit together
void require_whole(bool whole, kelm::model& model, const rules& shared, const std::string& path);

} // namespace schema
