// The edits of domains: what a column inherits instead of having it itself.
// Inheriting is the library's: a change of the domain is seen on its columns, and a column's own value wins.
#include "edits/edit_tables.h"

#include "schema/lookup.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/meta_model.h>

#include <algorithm>

namespace schema {

namespace {

constexpr kelm::u32 inherited[] = {property::declared_type, property::default_value, property::not_null};

/// Takes DEFAULT and NOT NULL, in any order.
void take_clauses(kelm::object& domain, line_reader& line) {
    while (!line.at_end())
        if (line.take("default"))
            set_text(domain, property::default_value, line.text("a default"));
        else if (line.take("not")) {
            line.expect("null");
            set_flag(domain, property::not_null);
        } else
            line.refuse_next("default or not null");
}

void add_domain(kelm::object& root, line_reader& line) {
    kelm::object& made = add(root, type::domain, line.name("a new name"));
    set_text(made, property::declared_type, line.type());
    take_clauses(made, line);
}

/// Behind this the column has nothing of its own that the domain could give.
void use_domain(kelm::object& root, line_reader& line) {
    kelm::object& base = domain(root, line.name("the name of a domain"));
    line.expect("for");
    kelm::object& user = column(root, line.column());
    const bool has_own =
        std::ranges::any_of(inherited, [&](kelm::u32 id) { return user.defines_property(id); });
    if (!has_own && user.inherits_from(&base, false))
        throw script_error("column " + full_name(user) + " uses the domain already");
    for (const kelm::u32 id : inherited)
        if (user.defines_property(id)) clear(user, id);
    inherit_only(user, base);
}

/// A column that uses it keeps it, see drop_hooks.cpp.
void drop_domain(kelm::object& root, line_reader& line) {
    remove(domain(root, line.name("the name of a domain")));
}

void type_domain(kelm::object& root, line_reader& line) {
    kelm::object& what = domain(root, line.name("the name of a domain"));
    set_text(what, property::declared_type, line.type());
}

constexpr edit_row domain_rows[] = {
    {"add", "domain", add_domain},
    {"use", "domain", use_domain},
    {"drop", "domain", drop_domain},
    {"type", "domain", type_domain},
};

} // namespace

std::span<const edit_row> domain_edits() { return domain_rows; }

} // namespace schema
