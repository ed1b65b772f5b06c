// Asks the model who refers to an object, and reads the texts of indexes.
// Texts of views, triggers and checks are not looked into.
#include "schema/users.h"

#include "schema/identifiers.h"
#include "schema/lookup.h"
#include "schema/sql_text.h"
#include "schema/types.h"
#include "schema/values.h"

#include <algorithm>

namespace schema {

namespace {

std::vector<kelm::object*> oldest_first(std::vector<kelm::object*> all) {
    std::sort(all.begin(), all.end(), [](const auto* a, const auto* b) { return a->id() < b->id(); });
    return all;
}

bool has_in_text(const kelm::object& index, const std::string& name) {
    if (mentions(text(index, property::condition), name)) return true;
    const std::vector<kelm::object*> terms = parts(index, type::key_column);
    return std::any_of(terms.begin(), terms.end(), [&](const kelm::object* term) {
        return mentions(text(*term, property::expression), name);
    });
}

} // namespace

std::string described(const kelm::object& key) {
    const std::string of_table = " of table " + identifier(name(*key.owner()));
    switch (key.type()) {
    case type::primary_key: return "the primary key" + of_table;
    case type::unique_key: return "a unique key" + of_table;
    case type::foreign_key: return "a foreign key" + of_table;
    default: return "index " + identifier(name(key));
    }
}

std::vector<kelm::object*> foreign_keys_to(const kelm::object& table) {
    std::vector<kelm::object*> keys = oldest_first(table.referencing_objects());
    keys.erase(std::remove_if(keys.begin(), keys.end(),
                              [&](const kelm::object* key) { return key->owner() == &table; }),
               keys.end());
    return keys;
}

std::string user_of_column(const kelm::object& column) {
    const std::vector<kelm::object*> terms = oldest_first(column.referencing_objects());
    return terms.empty() ? std::string() : described(*terms.front()->owner());
}

std::string text_user_of_column(const kelm::object& column) {
    for (const kelm::object* index : parts(*column.owner(), type::index))
        if (has_in_text(*index, name(column))) return "the SQL of " + described(*index);
    return {};
}

std::string user_of_domain(const kelm::object& domain) {
    const std::vector<kelm::object*> columns = oldest_first(domain.inheritors());
    return columns.empty() ? std::string() : "column " + full_name(*columns.front());
}

} // namespace schema
