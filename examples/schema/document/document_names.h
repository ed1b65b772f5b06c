// Names in the history of a document, in any language.
// All other texts of a document are right as the library writes them.
#pragma once

#include "document/xml_document.h"

#include <kelm/model.h>

namespace schema {

/// The library escapes the names of transactions and of users' properties in the messages of a document, and its
/// escaping keeps 7-bit text alone.  It reads other text well, so that is put there instead.  What stays impossible
/// are names that spell one of its escapes, as "&lt;".
/// \param in  a document to which `of` has been written with its whole history
void write_names(xml_document& in, const kelm::model& of);

} // namespace schema
