// The edits of tables and columns.
// What must hold for a schema is kept by hooks, see hooks.h; here is only what a line means.
#include "edits/edit_tables.h"

#include "schema/lookup.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/meta_model.h>

namespace schema {

namespace {

void rename_table(kelm::object& root, line_reader& line) {
    kelm::object& what = table(root, line.name("the name of a table"));
    set_text(what, kelm::property_id::name, line.name("a new name"));
}

void rename_column(kelm::object& root, line_reader& line) {
    kelm::object& what = column(root, line.column());
    set_text(what, kelm::property_id::name, line.name("a new name"));
}

/// What the table contains goes with it.
void drop_table(kelm::object& root, line_reader& line) {
    remove(table(root, line.name("the name of a table")));
}

void drop_column(kelm::object& root, line_reader& line) { remove(column(root, line.column())); }

void add_column(kelm::object& root, line_reader& line) {
    const column_name wanted = line.column();
    kelm::object& owner = plain_table(root, wanted.table);
    kelm::object& made = add(owner, type::column, wanted.column);
    set_text(made, property::declared_type, line.type());
    set_text(made, property::collation, "BINARY");
}

void move_column(kelm::object& root, line_reader& line) {
    kelm::object& what = column(root, line.column());
    const std::size_t position = line.number("a position");
    const std::size_t count = what.owner()->child_count(type::column);
    if (position < 1 || position > count)
        throw script_error("position " + std::to_string(position) + " is not between 1 and " +
                           std::to_string(count));
    if (!what.owner()->set_child_position(&what, position - 1))
        throw model_refusal("the model refused a position");
}

void type_column(kelm::object& root, line_reader& line) {
    kelm::object& what = column(root, line.column());
    set_text(what, property::declared_type, line.type());
}

constexpr edit_row table_rows[] = {
    {"rename", "table", rename_table}, {"rename", "column", rename_column}, {"drop", "table", drop_table},
    {"drop", "column", drop_column},   {"add", "column", add_column},       {"move", "column", move_column},
    {"type", "column", type_column},
};

} // namespace

std::span<const edit_row> table_edits() { return table_rows; }

} // namespace schema
