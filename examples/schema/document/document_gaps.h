// What a document says and the library, reading it, passes over: put where the library finds it.
// What needs help in writing is in document_names.h.
#pragma once

#include "document/xml_document.h"

#include <kelm/model.h>

namespace schema {

/// Two things stand in a document where the library does not look for them.  Without them, values of users' own
/// properties would be lost when the model is saved again, and a deleted object could not be brought back by undo.
/// - Deleted objects are moved one level up, to where they are looked for.
/// - Properties of users are given to the types of `into`.
/// \param into  a model that has just been made, and is to be read from the document
void fill_gaps(xml_document& from, kelm::model& into);

} // namespace schema
