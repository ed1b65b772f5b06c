// Changes of a schema as JSON, for programs.
// Which changes there are is told by changes.h.
#pragma once

#include "changes/changes.h"

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace schema {

/// Which edits the changes come from.
struct edit_range {
    std::string file;
    std::size_t first; ///< as `log` numbers them
    std::size_t last;  ///< smaller than `first` when there are none
};

void print_changes_as_json(std::ostream& out, const edit_range& by, const std::vector<change_group>& changes);

} // namespace schema
