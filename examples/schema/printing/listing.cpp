// A filter and two sorters of this application's own, beside those of the library.
// Filters say what is left out; sorters, which of two comes first.
#include "printing/listing.h"

#include "printing/text.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/filters.h>
#include <kelm/sorters.h>

#include <sqlite3.h>

#include <algorithm>
#include <memory>

namespace schema {

namespace {

struct listed_type {
    kelm::u32 type;
    const char* key;
};

constexpr listed_type listed_types[] = {
    {type::table, "tables"}, {type::view, "views"}, {type::index, "indexes"}, {type::trigger, "triggers"}};

/// Leaves out what has a name that does not match.
class name_pattern : public kelm::filter {
public:
    explicit name_pattern(const std::string& pattern) : pattern_(lower(pattern)) {}
    bool do_it(const kelm::object* candidate) const override {
        return sqlite3_strglob(pattern_.c_str(), lower(name(*candidate)).c_str()) != 0;
    }

private:
    std::string pattern_;
};

class by_columns : public kelm::sorter {
public:
    bool do_it(const kelm::object* a, const kelm::object* b) const override {
        if (columns(*a) != columns(*b)) return columns(*a) > columns(*b);
        return names_.do_it(a, b);
    }

private:
    static std::size_t columns(const kelm::object& of) {
        return of.child_count(type::column) + of.child_count(type::key_column); // it has but one kind of them
    }

    kelm::obj_sort_name_no_case names_;
};

class by_file_order : public kelm::sorter {
public:
    bool do_it(const kelm::object* a, const kelm::object* b) const override {
        return number(*a, property::file_position) < number(*b, property::file_position);
    }
};

/// \returns null when nothing is to be sorted
std::unique_ptr<kelm::sorter> new_sorter(order by) {
    switch (by) {
    case order::name: return std::make_unique<kelm::obj_sort_name_no_case>();
    case order::columns: return std::make_unique<by_columns>();
    case order::file_order: return std::make_unique<by_file_order>();
    case order::as_read: break;
    }
    return nullptr;
}

/// Tables and views are children of the schema; indexes and triggers, of those.
std::vector<kelm::object*> all(const kelm::object& root, kelm::filter& leave_out) {
    std::vector<kelm::object*> found = root.children(&leave_out);
    for (const kelm::u32 type : {type::table, type::view})
        for (const kelm::object* relation : parts(root, type)) {
            const std::vector<kelm::object*> more = relation->children(&leave_out);
            found.insert(found.end(), more.begin(), more.end());
        }
    return found;
}

bool is_wanted(const selection& wanted, kelm::u32 type) {
    if (wanted.types.empty()) return type == type::table || type == type::view;
    return std::ranges::find(wanted.types, type) != wanted.types.end();
}

} // namespace

std::vector<listing> listings(const kelm::object& root, const selection& wanted) {
    const std::unique_ptr<kelm::sorter> sorter = new_sorter(wanted.by);
    name_pattern named(wanted.pattern);
    std::vector<listing> found;
    for (const listed_type& row : listed_types) {
        if (!is_wanted(wanted, row.type)) continue;
        kelm::obj_filter_type of_type(row.type);
        kelm::or_filter leave_out(&of_type, &named); // what either leaves out
        found.push_back({row.type, row.key, all(root, leave_out)});
        if (sorter) std::ranges::stable_sort(found.back().objects, kelm::object_sorter(*sorter));
    }
    return found;
}

} // namespace schema
