// Orders of types, properties and compositions by name.
// Sorters of objects are name_sorters_test and sorters_test.
#include "tests/support/meta_types.h"

#include <kelm/sorters.h>

#include <algorithm>
#include <functional>
#include <utility>

namespace kelm::test {
namespace {

class meta_sorters_test : public meta_types {
protected:
    meta_object& add_type_called(u32 id, const std::string& name, const std::string& alternative = "") {
        return *application.add_meta_object(id, name, "", alternative);
    }
};

/// \returns "<", ">" or "=", as the sorter puts `a` and `b`
template <class Sorter, class Thing>
std::string order_of(const Sorter& sorter, const Thing* a, const Thing* b) {
    const bool there = sorter(a, b);
    const bool back = sorter(b, a);
    EXPECT_FALSE(there && back);
    return there ? "<" : back ? ">" : "=";
}

struct name_row {
    const char* why;
    std::string a, b;
    const char* bytes;
    const char* no_case;
};
const name_row name_rows[] = {
    {"the shorter first", "ab", "abc", "<", "<"},
    {"capitals before small letters as bytes", "B", "a", "<", ">"},
    {"another case", "aB", "Ab", ">", "="},
    {"the same", "ab", "ab", "=", "="},
    {"bytes have no sign", "z", "\xE4", "<", "<"},
    {"letters count as small ones", "_", "A", ">", "<"},
    {"a zero byte ends a name both ways", std::string("a\0x", 3), std::string("a\0y", 3), "=", "="},
};

TEST_F(meta_sorters_test, names_by_bytes_or_blind_to_case) {
    u32 id = 100;
    for (const name_row& row : name_rows) {
        SCOPED_TRACE(row.why);
        meta_object& a = add_type_called(id++, row.a);
        meta_object& b = add_type_called(id++, row.b);
        EXPECT_EQ(order_of(meta_object_name_sorter{true}, &a, &b), row.bytes);
        EXPECT_EQ(order_of(meta_object_name_sorter{false}, &a, &b), row.no_case);
        for (const bool alternative : {false, true}) { // without one it is the name
            EXPECT_EQ(order_of(meta_obj_sort_name(true, alternative), &a, &b), row.bytes);
            EXPECT_EQ(order_of(meta_obj_sort_name(false, alternative), &a, &b), row.no_case);
        }
        meta_property* const p = a.add_property(1000, row.a, data_type::string, "");
        meta_property* const q = b.add_property(1000, row.b, data_type::string, "");
        EXPECT_EQ(order_of(meta_property_name_sorter{true}, p, q), row.bytes);
        EXPECT_EQ(order_of(meta_property_name_sorter{false}, p, q), row.no_case);
        meta_composition* const c = a.add_composition(a.id());
        meta_composition* const d = b.add_composition(b.id());
        ASSERT_TRUE(c && d);
        EXPECT_EQ(order_of(meta_composition_name_sorter(true, false), c, d), row.bytes);
        EXPECT_EQ(order_of(meta_composition_name_sorter(false, false), c, d), row.no_case);
    }
}

TEST_F(meta_sorters_test, types_and_compositions_by_alternative_names) {
    meta_object& first = add_type_called(100, "A", "z");
    meta_object& second = add_type_called(101, "b", "Y");
    EXPECT_EQ(order_of(meta_obj_sort_name(true, false), &first, &second), "<");
    EXPECT_EQ(order_of(meta_obj_sort_name(true, true), &first, &second), ">");
    EXPECT_EQ(order_of(meta_obj_sort_name(false, true), &first, &second), ">");
    EXPECT_EQ(order_of(meta_object_name_sorter{true}, &first, &second), "<") << "this one knows names only";
    meta_object& owner = add_type_called(102, "owner");
    const meta_composition* const c = owner.add_composition(100);
    const meta_composition* const d = owner.add_composition(101);
    EXPECT_EQ(order_of(meta_composition_name_sorter(true, false), c, d), "<");
    EXPECT_EQ(order_of(meta_composition_name_sorter(true, true), c, d), ">");
    EXPECT_EQ(order_of(meta_composition_name_sorter(false, true), c, d), ">");
    meta_object& third = add_type_called(103, "c", "y");
    EXPECT_EQ(order_of(meta_obj_sort_name(true, true), &second, &third), "<");
    EXPECT_EQ(order_of(meta_obj_sort_name(false, true), &second, &third), "=");
    const meta_composition* const e = owner.add_composition(103);
    EXPECT_EQ(order_of(meta_composition_name_sorter(true, true), d, e), "<");
    EXPECT_EQ(order_of(meta_composition_name_sorter(false, true), d, e), "=");
}

TEST_F(meta_sorters_test, serve_the_standard_algorithms) {
    for (const auto& [id, name] : {std::pair{100u, "b"}, {101u, "C"}, {102u, "a"}}) add_type_called(id, name);
    std::vector<meta_object*> list = application.meta_objects();
    const auto ours = [](const meta_object* each) { return each->id() >= 100 && each->id() <= 102; };
    std::erase_if(list, std::not_fn(ours));
    std::sort(list.begin(), list.end(), meta_object_name_sorter{true});
    EXPECT_EQ(ids_of(list), (ids{101, 102, 100}));
    std::sort(list.begin(), list.end(), meta_object_name_sorter{false});
    EXPECT_EQ(ids_of(list), (ids{102, 100, 101}));
    meta_obj_sort_name kept{true, false};
    std::sort(list.begin(), list.end(), std::ref(kept));
    EXPECT_EQ(ids_of(list), (ids{101, 102, 100}));
}

TEST_F(meta_sorters_test, one_keeps_names_until_it_is_cleared) {
    meta_object& a = add_type_called(100, "a");
    meta_object& b = add_type_called(101, "b");
    meta_obj_sort_name kept{true, false};
    const meta_object_name_sorter fresh{true};
    EXPECT_EQ(order_of(kept, &a, &b), "<");
    a.set_attribute_value(attribute_id::name, property<std::string>{"c"});
    EXPECT_EQ(order_of(fresh, &a, &b), ">");
    EXPECT_EQ(order_of(kept, &a, &b), "<");
    meta_obj_sort_name copy{kept};
    meta_obj_sort_name assigned{true, true};
    assigned = kept;
    kept.clear();
    EXPECT_EQ(order_of(kept, &a, &b), ">");
    EXPECT_EQ(order_of(assigned, &a, &b), "<");
    EXPECT_EQ(order_of(copy, &a, &b), "<");
    const meta_obj_sort_name moved{std::move(copy)};
    EXPECT_EQ(order_of(moved, &a, &b), "<");
    meta_obj_sort_name moved_into{false, true};
    moved_into = std::move(assigned);
    EXPECT_EQ(order_of(moved_into, &a, &b), "<");
    moved_into.clear();
    EXPECT_EQ(order_of(moved_into, &a, &b), ">");
}

TEST_F(meta_sorters_test, the_marks_go_with_a_copy) {
    meta_object& a = add_type_called(100, "a", "z");
    meta_object& b = add_type_called(101, "B", "Y");
    meta_obj_sort_name order{true, false};
    order = meta_obj_sort_name{false, true};
    EXPECT_EQ(order_of(order, &a, &b), ">") << "y, z";
    order = meta_obj_sort_name{false, false};
    EXPECT_EQ(order_of(order, &a, &b), "<") << "a, b";
}

} // namespace
} // namespace kelm::test
