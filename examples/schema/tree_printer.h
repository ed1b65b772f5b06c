// A schema as text for people.
// For programs there is json_printer.h.
#pragma once

#include <kelm/object.h>

#include <ostream>

namespace schema {

/// Prints a line of counts, then a block a table and a view, in the order of the model.  What it prints is valid
/// UTF-8 whatever the names hold.
/// \param root  the model's object side
void print_tree(std::ostream& out, const kelm::object& root);

} // namespace schema
