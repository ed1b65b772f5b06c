// A thing is called as a script would call it, and what happened to it follows.
// Terms of keys stand in the line of their key; other parts have lines of their own.
#include "changes/changes_printer.h"

#include "printing/shown.h"
#include "printing/text.h"
#include "schema/types.h"

#include <kelm/meta_model.h>

#include <algorithm>

#include <string>

namespace schema {

namespace {

constexpr std::size_t longest_value = 60;

std::string in_brackets(const std::vector<std::string>& terms) {
    std::string list;
    for (const std::string& term : terms) append(list, term.empty() ? "?" : shown_identifier(term), ", ");
    return "(" + list + ")";
}

std::string key_on(const changed_thing& thing) {
    return " on " + shown_identifier(thing.where) + ' ' + in_brackets(thing.columns);
}

std::string target_of(const changed_thing& key) {
    std::string shown = " to " + shown_identifier(key.target);
    const bool any = std::ranges::any_of(key.target_columns, [](const auto& each) { return !each.empty(); });
    return any ? shown + ' ' + in_brackets(key.target_columns) : shown;
}

std::string head(const changed_thing& thing) {
    const std::string name = shown_identifier(thing.name);
    switch (thing.type) {
    case type::column:
    case type::key_column:
    case type::foreign_key_column:
        return lower(thing.type_name) + ' ' + shown_identifier(thing.where) + '.' + name;
    case type::primary_key: return "primary key" + key_on(thing);
    case type::unique_key: return "unique key" + key_on(thing);
    case type::foreign_key: return "foreign key" + key_on(thing) + target_of(thing);
    case type::index: return "index " + name + key_on(thing);
    case type::trigger: return "trigger " + name + " on " + shown_identifier(thing.where);
    case kelm::type_id::user_defined_property: return "property " + name;
    default: break;
    }
    std::string what = lower(thing.type_name);
    if (!thing.name.empty()) what += ' ' + name;
    return what;
}

std::string shown_value(const std::optional<std::string>& value) {
    if (!value) return "(none)";
    return value->empty() ? "\"\"" : shortened(shown_sql(*value), longest_value);
}

std::string in_words(const value_change& value) {
    std::string words =
        printable(value.name) + "  " + shown_value(value.before) + " -> " + shown_value(value.after);
    if (!value.inherited_from.empty())
        words += "  (from domain " + shown_identifier(value.inherited_from) + ')';
    if (value.by_default && value.after) words += "  (by default)";
    return words;
}

/// What happened to a thing that was there before, a line each.
std::vector<std::string> all_in_words(const changed_thing& thing) {
    std::vector<std::string> all;
    if (!thing.renamed_from.empty()) all.push_back("renamed from " + shown_identifier(thing.renamed_from));
    if (!thing.moved_from.empty()) all.push_back("moved here from " + shown_identifier(thing.moved_from));
    if (thing.moved)
        all.push_back("moved from position " + std::to_string(thing.moved->from) + " to " +
                      std::to_string(thing.moved->to));
    for (const std::string& base : thing.new_bases) all.push_back("uses domain " + shown_identifier(base));
    for (const std::string& base : thing.lost_bases)
        all.push_back("uses domain " + shown_identifier(base) + " no more");
    for (const value_change& value : thing.values) all.push_back(in_words(value));
    return all;
}

bool has_line(const changed_thing& part) {
    return part.type != type::key_column && part.type != type::foreign_key_column;
}

void print_whole(std::ostream& out, const changed_thing& thing, const std::string& indent) {
    const std::string sign = thing.what == fate::created ? "+ " : "- ";
    print_line(out, indent + sign + head(thing) + "  " + printable(value_of(thing, property::declared_type)));
    for (const changed_thing& part : thing.parts)
        if (has_line(part)) print_whole(out, part, indent + "    ");
}

void print_thing(std::ostream& out, const changed_thing& thing) {
    if (thing.what != fate::changed) return print_whole(out, thing, "");
    for (const std::string& words : all_in_words(thing)) print_line(out, "~ " + head(thing) + "  " + words);
}

} // namespace

void print_changes(std::ostream& out, const std::vector<change_group>& changes) {
    bool first = true;
    for (const change_group& group : changes) {
        if (!first) out << '\n';
        first = false;
        for (const changed_thing& thing : group) print_thing(out, thing);
    }
}

} // namespace schema
