// The edits of properties that a user invents: an owner, a comment, tags.
// A definition is an object of the model; the library makes a property of it as soon as it has types.
#include "edits/edit_tables.h"

#include "schema/identifiers.h"
#include "schema/lookup.h"
#include "schema/properties.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>

#include <optional>
#include <string>
#include <vector>

namespace schema {

namespace {

/// Takes `table`, `column`, or both with a comma.
std::vector<kelm::u32> take_types(line_reader& line) {
    std::vector<kelm::u32> found;
    do {
        if (line.take("table"))
            found.push_back(type::table);
        else if (line.take("column"))
            found.push_back(type::column);
        else
            line.refuse_next("table or column");
    } while (line.take(","));
    return found;
}

std::vector<std::string> take_choices(line_reader& line) {
    line.expect("(");
    std::vector<std::string> found;
    do found.push_back(line.text("a choice"));
    while (line.take(","));
    line.expect(")");
    return found;
}

struct clauses {
    std::optional<std::string> usual;
    std::vector<std::string> choices;
};

/// Takes `default` and `choices`, in any order.
clauses take_clauses(line_reader& line) {
    clauses found;
    while (!line.at_end())
        if (line.take("default"))
            found.usual = line.text("a default");
        else if (line.take("choices"))
            found.choices = take_choices(line);
        else
            line.refuse_next("default or choices");
    return found;
}

/// Choices come before the default, which must be one of them, and types last: they complete the definition.
void define_property(kelm::object& root, line_reader& line) {
    kelm::object& made = add(root, kelm::type_id::user_defined_property, line.name("a new name"));
    line.expect("on");
    const std::vector<kelm::u32> types = take_types(line);
    const clauses with = take_clauses(line);
    if (!with.choices.empty()) set_list(made, kelm::property_id::udp_default_value_choices, with.choices);
    if (with.usual) set_text(made, kelm::property_id::udp_default_value, *with.usual);
    set_list(made, kelm::property_id::udp_object_types, types);
}

/// A property of a table or a column, as a line names it.
struct place {
    kelm::object& owner;
    kelm::u32 property;
    std::string shown; ///< as in "property owner of t.c"
};

/// Takes `NAME of T` or `NAME of T.C`.
place take_place(kelm::object& root, line_reader& line) {
    const kelm::object& definition = property_definition(root, line.name("the name of a property"));
    line.expect("of");
    const std::string of = line.name("the name of a table");
    const bool is_column = line.take(".");
    kelm::object& owner =
        is_column ? column(plain_table(root, of), line.name("the name of a column")) : table(root, of);
    const std::string shown = "property " + identifier(name(definition));
    kelm::framework& framework = kelm::framework::instance();
    if (!framework.is_object_type_of_udp(&definition, owner.type()))
        throw script_error(shown + " is not one of " + (is_column ? "columns" : "tables"));
    return {owner, framework.udp_property_id(&definition),
            shown + " of " + (is_column ? full_name(owner) : identifier(name(owner)))};
}

void set_property(kelm::object& root, line_reader& line) {
    const place where = take_place(root, line);
    line.expect("to");
    set_text(where.owner, where.property, line.text("a text"));
}

void clear_property(kelm::object& root, line_reader& line) {
    const place where = take_place(root, line);
    if (!where.owner.defines_property(where.property)) throw script_error(where.shown + " is not set");
    clear(where.owner, where.property);
}

/// Without types the library takes the property away, and all its values with it; the definition alone is left then.
void drop_property(kelm::object& root, line_reader& line) {
    kelm::object& definition = property_definition(root, line.name("the name of a property"));
    clear(definition, kelm::property_id::udp_object_types);
    remove(definition);
}

constexpr edit_row property_rows[] = {
    {"define", "property", define_property},
    {"set", "property", set_property},
    {"clear", "property", clear_property},
    {"drop", "property", drop_property},
};

} // namespace

std::span<const edit_row> property_edits() { return property_rows; }

} // namespace schema
