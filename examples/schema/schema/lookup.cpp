// Look-ups by name, in the model.
// Tables, views and indexes share one space of names in SQLite; columns have one a table.
#include "schema/lookup.h"

#include "schema/identifiers.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/meta_model.h>

namespace schema {

namespace {

[[noreturn]] void refuse_missing(const char* what, const std::string& name) {
    throw script_error(std::string("there is no ") + what + ' ' + identifier(name));
}

} // namespace

kelm::object* find(const kelm::object& owner, kelm::u32 type, const std::string& name) {
    for (kelm::object* candidate : parts(owner, type))
        if (same_name(schema::name(*candidate), name)) return candidate;
    return nullptr;
}

kelm::object* find_relation(const kelm::object& root, const std::string& name) {
    kelm::object* found = find(root, type::table, name);
    return found ? found : find(root, type::view, name);
}

kelm::object* find_index(const kelm::object& root, const std::string& name) {
    for (const kelm::object* table : parts(root, type::table))
        if (kelm::object* found = find(*table, type::index, name)) return found;
    return nullptr;
}

kelm::object& relation(const kelm::object& root, const std::string& name) {
    if (kelm::object* found = find_relation(root, name)) return *found;
    refuse_missing("table or view", name);
}

kelm::object& table(const kelm::object& root, const std::string& name) {
    kelm::object* found = find_relation(root, name);
    if (!found) refuse_missing("table", name);
    if (found->type() == type::view) throw script_error(identifier(name) + " is a view, not a table");
    return *found;
}

kelm::object& plain_table(const kelm::object& root, const std::string& name) {
    kelm::object& found = table(root, name);
    if (flag(found, property::is_virtual))
        throw script_error(identifier(name) + " is a virtual table, whose columns are not its own");
    return found;
}

kelm::object& column(const kelm::object& root, const column_name& name) {
    return column(plain_table(root, name.table), name.column);
}

kelm::object& column(const kelm::object& plain_table, const std::string& name) {
    if (kelm::object* found = find(plain_table, type::column, name)) return *found;
    throw script_error("there is no column " + identifier(name) + " in table " +
                       identifier(schema::name(plain_table)));
}

kelm::object& index(const kelm::object& root, const std::string& name) {
    if (kelm::object* found = find_index(root, name)) return *found;
    refuse_missing("index", name);
}

kelm::object& domain(const kelm::object& root, const std::string& name) {
    if (kelm::object* found = find(root, type::domain, name)) return *found;
    refuse_missing("domain", name);
}

kelm::object& property_definition(const kelm::object& root, const std::string& name) {
    if (kelm::object* found = find(root, kelm::type_id::user_defined_property, name)) return *found;
    refuse_missing("property", name);
}

std::string full_name(const kelm::object& column) {
    return identifier(name(*column.owner())) + '.' + identifier(name(column));
}

} // namespace schema
