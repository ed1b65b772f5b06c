// One function a type of object: its members, then its parts.
// Names and texts leave as they are, unquoted; the escapes are the writer's business.
#include "printing/json_printer.h"

#include "printing/counts.h"
#include "printing/definitions_json.h"
#include "printing/json_text.h"
#include "printing/json_writer.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/meta_model.h>

namespace schema {

namespace {

void name_or_null(json_writer& json, const kelm::object* what) {
    if (what)
        json.value(name(*what));
    else
        json.null();
}

/// An array of the parts of one type.
template <class Print>
void list(json_writer& json, const char* key, const kelm::object& owner, kelm::u32 type, Print print) {
    json.key(key).begin_array();
    for (const kelm::object* part : parts(owner, type)) print(json, *part);
    json.end_array();
}

void print_column(json_writer& json, const kelm::object& column) {
    json.begin_object();
    json.key("name").value(name(column));
    json.key("type").value(text(column, property::declared_type));
    json.key("not_null").value(flag(column, property::not_null));
    text_or_null(json, "default", column, property::default_value);
    text_or_null(json, "collation", column, property::collation);
    json.key("autoincrement").value(flag(column, property::autoincrement));
    text_or_null(json, "generated", column, property::generated);
    json.key("hidden").value(flag(column, property::hidden));
    write_domain(json, column);
    write_user_values(json, column);
    json.end_object();
}

void print_key_column(json_writer& json, const kelm::object& part) {
    json.begin_object();
    json.key("column");
    name_or_null(json, target(part, property::column));
    text_or_null(json, "expression", part, property::expression);
    json.key("descending").value(flag(part, property::descending));
    text_or_null(json, "collation", part, property::collation);
    json.end_object();
}

void print_key_columns(json_writer& json, const kelm::object& key) {
    list(json, "columns", key, type::key_column, print_key_column);
}

void print_key(json_writer& json, const kelm::object& key) {
    json.begin_object();
    print_key_columns(json, key);
    json.end_object();
}

void print_primary_key(json_writer& json, const kelm::object& table) {
    json.key("primary_key");
    if (const kelm::object* key = table.child_at(type::primary_key, 0))
        print_key(json, *key);
    else
        json.null();
}

bool is_resolved(const kelm::object& key) {
    for (const kelm::object* pair : parts(key, type::foreign_key_column))
        if (!target(*pair, property::target_column)) return false;
    return true;
}

/// What is not there keeps the name that the foreign key gives it.
void print_target(json_writer& json, const kelm::object& from, kelm::u32 reference) {
    if (const kelm::object* found = target(from, reference))
        json.value(name(*found));
    else if (has(from, property::target_name))
        json.value(text(from, property::target_name));
    else
        json.null();
}

void print_foreign_key(json_writer& json, const kelm::object& key) {
    json.begin_object();
    list(json, "columns", key, type::foreign_key_column,
         [](json_writer& to, const kelm::object& pair) { name_or_null(to, target(pair, property::column)); });
    json.key("target_table");
    print_target(json, key, property::target_table);
    list(json, "target_columns", key, type::foreign_key_column,
         [](json_writer& to, const kelm::object& pair) { print_target(to, pair, property::target_column); });
    json.key("resolved").value(is_resolved(key));
    text_or_null(json, "on_delete", key, property::on_delete);
    text_or_null(json, "on_update", key, property::on_update);
    json.end_object();
}

void print_index_members(json_writer& json, const kelm::object& index) {
    json.key("unique").value(flag(index, property::unique));
    json.key("partial").value(flag(index, property::partial));
    text_or_null(json, "condition", index, property::condition);
    print_key_columns(json, index);
}

/// An index or a trigger.  Outside the object of its table it tells which that is.
void print_part(json_writer& json, const kelm::object& part, bool with_table) {
    json.begin_object();
    json.key("name").value(name(part));
    if (with_table) json.key("table").value(name(*part.owner()));
    if (part.type() == type::index) print_index_members(json, part);
    json.key("sql").value(text(part, property::sql));
    json.end_object();
}

void print_inner_part(json_writer& json, const kelm::object& part) { print_part(json, part, false); }

void print_as_table(json_writer& json, const kelm::object& table) {
    json.begin_object();
    json.key("name").value(name(table));
    json.key("virtual").value(flag(table, property::is_virtual));
    json.key("shadow").value(flag(table, property::shadow));
    json.key("without_rowid").value(flag(table, property::without_rowid));
    json.key("strict").value(flag(table, property::strict));
    text_or_null(json, "problem", table, property::problem);
    list(json, "columns", table, type::column, print_column);
    print_primary_key(json, table);
    list(json, "unique_keys", table, type::unique_key, print_key);
    list(json, "foreign_keys", table, type::foreign_key, print_foreign_key);
    list(json, "indexes", table, type::index, print_inner_part);
    list(json, "triggers", table, type::trigger, print_inner_part);
    write_user_values(json, table);
    json.key("sql").value(text(table, property::sql));
    json.end_object();
}

void print_as_view(json_writer& json, const kelm::object& view) {
    json.begin_object();
    json.key("name").value(name(view));
    text_or_null(json, "problem", view, property::problem);
    list(json, "columns", view, type::column, print_column);
    list(json, "triggers", view, type::trigger, print_inner_part);
    json.key("sql").value(text(view, property::sql));
    json.end_object();
}

void print_listed(json_writer& json, const kelm::object& what) {
    switch (what.type()) {
    case type::table: return print_as_table(json, what);
    case type::view: return print_as_view(json, what);
    default: return print_part(json, what, true);
    }
}

} // namespace

void print_json(std::ostream& out, const kelm::object& root, const std::vector<listing>& shown) {
    json_writer json(out);
    json.begin_object();
    json.key("file").value(text(root, kelm::property_id::definition));
    json.key("counts").begin_object();
    for (const count& entry : counts(root)) json.key(entry.key).value(entry.number);
    json.end_object();
    write_definitions(json, root);
    for (const listing& of_type : shown) {
        json.key(of_type.key).begin_array();
        for (const kelm::object* each : of_type.objects) print_listed(json, *each);
        json.end_array();
    }
    json.end_object();
}

} // namespace schema
