// Finds the edit that a line begins with.
// The edits themselves are in files of their own, a table each: see edit_tables.h.
#include "edits/edits.h"

#include "edits/edit_tables.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace schema {

namespace {

constexpr std::span<const edit_row> (*tables[])() = {table_edits, key_edits, domain_edits, property_edits};

/// The edits that begin with the next word.
std::vector<edit_row> with_verb(const line_reader& line) {
    std::vector<edit_row> found;
    for (const auto& table : tables)
        std::ranges::copy_if(table(), std::back_inserter(found),
                             [&](const edit_row& row) { return line.is(row.verb); });
    return found;
}

} // namespace

edit_function take_edit(line_reader& line) {
    const std::vector<edit_row> known = with_verb(line);
    if (known.empty()) line.refuse_next("a command");
    line.skip(1);
    std::string choices;
    for (const edit_row& row : known) {
        if (line.is(row.what)) {
            line.skip(1);
            return row.apply;
        }
        if (!choices.empty()) choices += " or ";
        choices += row.what;
    }
    line.refuse_next(choices);
}

} // namespace schema
