// The edits of primary keys, foreign keys and indexes.
// Whether a key is a good one is asked by key_hooks.cpp.
#include "edits/edit_tables.h"

#include "schema/lookup.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/meta_model.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace schema {

namespace {

/// Takes a list of columns of the table, and makes each a term of the key.
void add_terms(kelm::object& key, const kelm::object& table, line_reader& line) {
    for (const std::string& listed : line.column_list()) {
        kelm::object& of = column(table, listed);
        kelm::object& made = add(key, type::key_column);
        set_target(made, property::column, of);
        set_text(made, property::collation, text(of, property::collation));
    }
}

void add_index(kelm::object& root, line_reader& line) {
    const std::string wanted = line.name("a new name");
    line.expect("on");
    kelm::object& owner = plain_table(root, line.name("the name of a table"));
    add_terms(add(owner, type::index, wanted), owner, line);
}

void drop_index(kelm::object& root, line_reader& line) {
    remove(index(root, line.name("the name of an index")));
}

void add_primary_key(kelm::object& root, line_reader& line) {
    line.expect("key");
    line.expect("on");
    kelm::object& owner = plain_table(root, line.name("the name of a table"));
    add_terms(add(owner, type::primary_key), owner, line);
}

/// The lists may differ in length: that is for a hook to tell.
void add_pairs(kelm::object& key, const std::vector<std::string>& own,
               const std::vector<std::string>& others) {
    for (std::size_t at = 0; at < std::max(own.size(), others.size()); ++at) {
        kelm::object& pair = add(key, type::foreign_key_column);
        if (at < own.size()) set_target(pair, property::column, column(*key.owner(), own[at]));
        if (at < others.size()) set_text(pair, property::target_name, others[at]);
    }
}

/// The key finds its target by name, as one that was read does, when the line is done.
void add_foreign_key(kelm::object& root, line_reader& line) {
    line.expect("key");
    line.expect("on");
    kelm::object& owner = plain_table(root, line.name("the name of a table"));
    const std::vector<std::string> own = line.column_list();
    line.expect("to");
    kelm::object& made = add(owner, type::foreign_key);
    set_text(made, property::target_name, line.name("the name of a table"));
    add_pairs(made, own, line.at_end() ? std::vector<std::string>() : line.column_list());
}

constexpr edit_row key_rows[] = {
    {"add", "index", add_index},
    {"drop", "index", drop_index},
    {"add", "primary", add_primary_key},
    {"add", "foreign", add_foreign_key},
};

} // namespace

std::span<const edit_row> key_edits() { return key_rows; }

} // namespace schema
