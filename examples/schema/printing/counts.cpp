// Counts objects by their types.
// Columns are those of tables; indexes are those that have a name.
#include "printing/counts.h"

#include "schema/types.h"
#include "schema/values.h"

namespace schema {

namespace {

/// The children of one type of all objects of another.
std::size_t in_each(const kelm::object& root, kelm::u32 owner, kelm::u32 type) {
    std::size_t sum = 0;
    for (const kelm::object* object : parts(root, owner)) sum += object->child_count(type);
    return sum;
}

} // namespace

std::vector<count> counts(const kelm::object& root) {
    return {
        {"table", "tables", "tables", root.child_count(type::table)},
        {"column", "columns", "columns", in_each(root, type::table, type::column)},
        {"primary key", "primary keys", "primary_keys", in_each(root, type::table, type::primary_key)},
        {"foreign key", "foreign keys", "foreign_keys", in_each(root, type::table, type::foreign_key)},
        {"index", "indexes", "indexes", in_each(root, type::table, type::index)},
        {"view", "views", "views", root.child_count(type::view)},
        {"trigger", "triggers", "triggers",
         in_each(root, type::table, type::trigger) + in_each(root, type::view, type::trigger)},
    };
}

} // namespace schema
