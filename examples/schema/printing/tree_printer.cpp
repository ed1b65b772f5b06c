// Tables and views with what they contain, a line each.
// All of it comes from the model: columns are reached through the references of keys.
#include "printing/tree_printer.h"

#include "printing/counts.h"
#include "printing/definitions_printer.h"
#include "printing/shown.h"
#include "printing/text.h"
#include "schema/identifiers.h"
#include "schema/properties.h"
#include "schema/sql_text.h"
#include "schema/types.h"
#include "schema/values.h"

#include <algorithm>

namespace schema {

namespace {

constexpr std::size_t widest_column = 40;
constexpr std::size_t longest_sql = 72;

/// Where the column stands in its table's primary key, from 1; 0 when it does not.
std::size_t place_in_primary_key(kelm::object& column) {
    for (kelm::object* part : column.referencing_objects())
        if (part->owner()->type() == type::primary_key) return part->owner()->child_position(part) + 1;
    return 0;
}

std::string user_value(const std::string& key, const std::string& value) {
    return shown_identifier(key) + " = " + printable(value);
}

std::string column_notes(kelm::object& column) {
    std::string notes;
    const auto note = [&](const std::string& text) { append(notes, text, "  "); };
    if (flag(column, property::not_null)) note("not null");
    if (const std::size_t place = place_in_primary_key(column)) note("pk " + std::to_string(place));
    if (flag(column, property::autoincrement)) note("autoincrement");
    if (has(column, property::default_value))
        note("default " + shown_sql(text(column, property::default_value)));
    const std::string collation = text(column, property::collation);
    if (!collation.empty() && !same_name(collation, "BINARY")) note("collate " + shown_identifier(collation));
    if (has(column, property::generated)) note("generated " + text(column, property::generated));
    if (flag(column, property::hidden)) note("hidden");
    if (const kelm::object* domain = column.inherits_from_at(0)) note("domain " + shown_name(*domain));
    for (const auto& [key, value] : user_values(column)) note(user_value(key, value));
    return notes;
}

void print_columns(std::ostream& out, const kelm::object& relation) {
    std::size_t names = 0;
    std::size_t types = 0;
    const std::vector<kelm::object*> columns = parts(relation, type::column);
    for (const kelm::object* column : columns) {
        names = std::max(names, width(shown_name(*column)));
        types = std::max(types, width(printable(text(*column, property::declared_type))));
    }
    for (kelm::object* column : columns)
        print_line(out, "  " + padded(shown_name(*column), std::min(names, widest_column)) + "  " +
                            padded(printable(text(*column, property::declared_type)),
                                   std::min(types, widest_column)) +
                            "  " + column_notes(*column));
    if (has(relation, property::problem))
        out << "  columns unknown: " << printable(text(relation, property::problem)) << '\n';
}

std::string key_term(const kelm::object& part) {
    const kelm::object* column = target(part, property::column);
    std::string term = column ? shown_name(*column) : shown_sql(text(part, property::expression));
    const std::string collation = text(part, property::collation);
    const std::string usual = column ? text(*column, property::collation) : collation;
    if (!same_name(collation, usual)) term += " collate " + shown_identifier(collation);
    if (flag(part, property::descending)) term += " desc";
    return term;
}

/// The columns of a key or an index in brackets.
std::string key_terms(const kelm::object& key) {
    std::string list;
    for (const kelm::object* part : parts(key, type::key_column)) append(list, key_term(*part), ", ");
    return "(" + list + ")";
}

void print_keys(std::ostream& out, const kelm::object& table) {
    for (const kelm::object* key : parts(table, type::primary_key))
        out << "  primary key " << key_terms(*key) << '\n';
    for (const kelm::object* key : parts(table, type::unique_key))
        out << "  unique " << key_terms(*key) << '\n';
}

/// Why a foreign key has no target; empty when it has one.
std::string complaint(const kelm::object& key) {
    if (!target(key, property::target_table)) return "  unresolved: no such table";
    for (const kelm::object* pair : parts(key, type::foreign_key_column)) {
        if (target(*pair, property::target_column)) continue;
        return has(*pair, property::target_name) ? "  unresolved: no such column"
                                                 : "  unresolved: no matching primary key";
    }
    return {};
}

/// A target is named as it calls itself; what is not there, as the foreign key spells it.
std::string target_text(const kelm::object& from, kelm::u32 reference) {
    const kelm::object* found = target(from, reference);
    if (found) return shown_name(*found);
    return has(from, property::target_name) ? shown_identifier(text(from, property::target_name)) : "";
}

void print_foreign_key(std::ostream& out, const kelm::object& key) {
    std::string columns;
    std::string targets;
    for (const kelm::object* pair : parts(key, type::foreign_key_column)) {
        const kelm::object* column = target(*pair, property::column);
        append(columns, column ? shown_name(*column) : "?", ", ");
        append(targets, target_text(*pair, property::target_column), ", ");
    }
    out << "  foreign key (" << columns << ") -> " << target_text(key, property::target_table);
    if (!targets.empty()) out << " (" << targets << ')';
    if (has(key, property::on_delete)) out << "  on delete " << lower(text(key, property::on_delete));
    if (has(key, property::on_update)) out << "  on update " << lower(text(key, property::on_update));
    out << complaint(key) << '\n';
}

/// \param of  where it stands: " on t", or nothing inside the block of its table
std::string index_line(const kelm::object& index, const std::string& of) {
    std::string line = flag(index, property::unique) ? "unique index " : "index ";
    line += shown_name(index) + of + ' ' + key_terms(index);
    if (flag(index, property::partial)) line += "  where " + shown_sql(text(index, property::condition));
    return line;
}

std::string summary(const std::string& sql) { return shortened(printable(after_name(sql)), longest_sql); }

std::string trigger_line(const kelm::object& trigger, const std::string& of) {
    return "trigger " + shown_name(trigger) + of + "  " + summary(text(trigger, property::sql));
}

void print_triggers(std::ostream& out, const kelm::object& relation) {
    for (const kelm::object* trigger : parts(relation, type::trigger))
        print_line(out, "  " + trigger_line(*trigger, ""));
}

void print_table(std::ostream& out, const kelm::object& table) {
    std::string notes;
    if (flag(table, property::shadow)) append(notes, "shadow", ", ");
    if (flag(table, property::without_rowid)) append(notes, "without rowid", ", ");
    if (flag(table, property::strict)) append(notes, "strict", ", ");
    if (flag(table, property::is_virtual)) append(notes, summary(text(table, property::sql)), ", ");
    print_line(out, (flag(table, property::is_virtual) ? "virtual table " : "table ") + shown_name(table) +
                        "  " + notes);
    print_columns(out, table);
    print_keys(out, table);
    for (const kelm::object* key : parts(table, type::foreign_key)) print_foreign_key(out, *key);
    for (const kelm::object* index : parts(table, type::index))
        print_line(out, "  " + index_line(*index, ""));
    print_triggers(out, table);
    for (const auto& [key, value] : user_values(table))
        print_line(out, "  property " + user_value(key, value));
}

void print_view(std::ostream& out, const kelm::object& view) {
    out << "view " << shown_name(view) << '\n';
    print_columns(out, view);
    print_line(out, "  " + summary(text(view, property::sql)));
    print_triggers(out, view);
}

void print_counts(std::ostream& out, const kelm::object& root) {
    std::string list;
    for (const count& entry : counts(root))
        append(list, std::to_string(entry.number) + ' ' + (entry.number == 1 ? entry.one : entry.many), ", ");
    out << printable(name(root)) << ": " << list << '\n';
}

/// An index or a trigger, outside the block of its table.
void print_part_line(std::ostream& out, const kelm::object& part) {
    const std::string of = " on " + shown_name(*part.owner());
    print_line(out, part.type() == type::index ? index_line(part, of) : trigger_line(part, of));
}

void print_listing(std::ostream& out, const listing& of_type) {
    const bool is_relation = of_type.type == type::table || of_type.type == type::view;
    if (!is_relation && !of_type.objects.empty()) out << '\n';
    for (const kelm::object* each : of_type.objects) {
        if (is_relation) out << '\n';
        (is_relation ? print_relation : print_part_line)(out, *each);
    }
}

} // namespace

void print_tree(std::ostream& out, const kelm::object& root, const std::vector<listing>& shown) {
    print_counts(out, root);
    print_definitions(out, root);
    const bool no_tables = !root.child_count(type::table);
    bool any = false;
    for (const listing& of_type : shown) {
        if (of_type.type == type::table && no_tables) out << "\nno tables\n";
        print_listing(out, of_type);
        any = any || !of_type.objects.empty() || (of_type.type == type::table && no_tables);
    }
    if (!any) out << "\nnothing to show\n";
}

void print_relation(std::ostream& out, const kelm::object& relation) {
    (relation.type() == type::view ? print_view : print_table)(out, relation);
}

} // namespace schema
