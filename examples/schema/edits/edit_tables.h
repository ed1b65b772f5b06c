// The edits there are, in tables of those that belong together.
// Which of them a line means is found by edits.h.
#pragma once

#include "edits/edits.h"

#include <span>
#include <string_view>

namespace schema {

struct edit_row {
    std::string_view verb;
    std::string_view what;
    edit_function apply;
};

/// Of tables and columns.
std::span<const edit_row> table_edits();
/// Of keys and indexes.
std::span<const edit_row> key_edits();
std::span<const edit_row> domain_edits();
/// Of user-defined properties.
std::span<const edit_row> property_edits();

} // namespace schema
