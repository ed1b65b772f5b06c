// The edits of a script: a keyword pair, and the function that does it.
// Transactions, and commands that change nothing, are the business of editor.h.
#pragma once

#include "edits/line_reader.h"

#include <kelm/object.h>

namespace schema {

/// Takes the rest of a line and changes the schema as it says.
/// \throws script_error when it cannot; the schema is then half changed, for a transaction to take back
using edit_function = void (*)(kelm::object& root, line_reader& line);

/// Takes the words that name an edit, as `rename table`.
/// \throws script_error when there is no such edit
edit_function take_edit(line_reader& line);

} // namespace schema
