// A schema as text for people.
// For programs there is json_printer.h.
#pragma once

#include "printing/listing.h"

#include <kelm/object.h>

#include <ostream>
#include <vector>

namespace schema {

/// Prints a line of counts, what print_definitions prints, then what is listed: a block a table and a view, a line an
/// index and a trigger.  It is valid UTF-8 whatever the names hold.
/// \param root  the model's object side
void print_tree(std::ostream& out, const kelm::object& root, const std::vector<listing>& shown);
/// Prints the block of one table or view.
void print_relation(std::ostream& out, const kelm::object& relation);

} // namespace schema
