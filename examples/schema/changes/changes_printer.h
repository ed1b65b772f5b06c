// Changes of a schema as text, for people.
// Which changes there are is told by changes.h.
#pragma once

#include "changes/changes.h"

#include <ostream>
#include <vector>

namespace schema {

/// Prints a line a change: + for what was created, - for what was dropped, ~ for what differs.  A blank line stands
/// between two groups; what came or went with another thing stands below it.
void print_changes(std::ostream& out, const std::vector<change_group>& changes);

} // namespace schema
