// A schema as JSON for programs.
// For people there is tree_printer.h.
#pragma once

#include <kelm/object.h>

#include <ostream>

namespace schema {

/// Prints one JSON object: file, counts, tables, views.  What there is not is null, false or an empty list; no key
/// is left out.
/// \param root  the model's object side
void print_json(std::ostream& out, const kelm::object& root);

} // namespace schema
