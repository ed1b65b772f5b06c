// A schema as JSON for programs.
// For people there is tree_printer.h.
#pragma once

#include "printing/listing.h"

#include <kelm/object.h>

#include <ostream>
#include <vector>

namespace schema {

/// Prints one JSON object: file, counts, and what is listed: tables and views, or indexes and triggers with the name of
/// their table.  What there is not is null, false or an empty list; no key is left out.
/// \param root  the model's object side
void print_json(std::ostream& out, const kelm::object& root, const std::vector<listing>& shown);

} // namespace schema
