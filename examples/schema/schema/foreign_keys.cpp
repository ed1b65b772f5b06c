// From the names in foreign keys to Object References.
// A reference, once made, follows its target through every rename.
#include "schema/foreign_keys.h"

#include "schema/identifiers.h"
#include "schema/lookup.h"
#include "schema/types.h"
#include "schema/values.h"

#include <map>
#include <string>
#include <vector>

namespace schema {

namespace {

using tables_by_name = std::map<std::string, kelm::object*, less_name>;

void resolve_table(kelm::object& key, const tables_by_name& tables) {
    if (target(key, property::target_table)) return;
    const auto found = tables.find(text(key, property::target_name));
    if (found != tables.end()) set_target(key, property::target_table, *found->second);
}

void resolve_columns(kelm::object& key) {
    const kelm::object* table = target(key, property::target_table);
    if (!table) return;
    const std::vector<kelm::object*> pairs = parts(key, type::foreign_key_column);
    const kelm::object* primary = table->child_at(type::primary_key, 0);
    const bool fits = primary && primary->child_count(type::key_column) == pairs.size();
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        if (target(*pairs[i], property::target_column)) continue;
        kelm::object* column = nullptr;
        if (has(*pairs[i], property::target_name))
            column = find(*table, type::column, text(*pairs[i], property::target_name));
        else if (fits)
            column = target(*primary->child_at(type::key_column, i), property::column);
        if (column) set_target(*pairs[i], property::target_column, *column);
    }
}

} // namespace

void resolve_foreign_keys(kelm::object& root) {
    const std::vector<kelm::object*> tables = parts(root, type::table);
    tables_by_name by_name;
    for (kelm::object* table : tables) by_name[name(*table)] = table;
    for (const kelm::object* table : tables)
        for (kelm::object* key : parts(*table, type::foreign_key)) {
            resolve_table(*key, by_name);
            resolve_columns(*key);
        }
}

} // namespace schema
