// The order of siblings, and sorters in algorithms and listings.
// Sorters by a text are name_sorters_test.
#include "tests/support/world.h"

#include <algorithm>
#include <type_traits>

namespace kelm::test {
namespace {

class sorters_test : public world {};

TEST_F(sorters_test, siblings_of_one_type_come_by_position) {
    object* const owner = thing("owner");
    object* const a = part("a", owner);
    object* const b = part("b", owner);
    object* const c = part("c", owner);
    const obj_sort_order order;
    EXPECT_TRUE(order.do_it(a, b));
    EXPECT_FALSE(order.do_it(b, a));
    EXPECT_FALSE(order.do_it(a, a));
    owner->set_child_position(c, 0);
    EXPECT_TRUE(order.do_it(c, a)) << "nothing is kept: the present positions count";
    EXPECT_TRUE(order.do_it(a, b));
    std::vector<object*> list{a, b, c};
    obj_sort_order by_position;
    std::sort(list.begin(), list.end(), object_sorter{by_position});
    EXPECT_EQ(names_of(list), "c a b");
}

TEST_F(sorters_test, objects_of_different_types_come_by_type_wherever_they_are) {
    object* const owner = thing("owner");
    object* const late = part("late", owner);
    object* const early = thing("early", owner);
    const obj_sort_order order;
    static_assert(types::thing < types::part);
    EXPECT_TRUE(order.do_it(early, late));
    EXPECT_FALSE(order.do_it(late, early));
    EXPECT_TRUE(order.do_it(owner, late));
    EXPECT_TRUE(order.do_it(root, late));
}

TEST_F(sorters_test, keeps_comparing_positions_of_objects_with_different_owners) {
    object* const first = thing("first");
    object* const second = thing("second");
    object* const a0 = part("a0", first);
    object* const a1 = part("a1", first);
    object* const b0 = part("b0", second);
    const obj_sort_order order;
    EXPECT_TRUE(order.do_it(b0, a1));
    EXPECT_FALSE(order.do_it(a0, b0)) << "both stand first";
    EXPECT_FALSE(order.do_it(b0, a0));
}

TEST_F(sorters_test, what_stands_nowhere_comes_last_of_its_type) {
    object* const owner = thing("owner");
    object* const a = part("a", owner);
    object* const b = part("b", owner);
    owner->remove_child(a);
    const obj_sort_order order;
    EXPECT_TRUE(order.do_it(b, a));
    EXPECT_FALSE(order.do_it(a, b));
    EXPECT_FALSE(order.do_it(root, root)) << "a model has no owner";
}

TEST_F(sorters_test, go_through_algorithms_by_value_without_being_copied) {
    object* const a = thing("a");
    object* const b = thing("b");
    std::vector<object*> list{b, a};
    obj_sort_name order;
    std::sort(list.begin(), list.end(), object_sorter{order});
    EXPECT_EQ(list, (std::vector{a, b}));
    a->set_property(props::name, text("c"));
    const object_sorter by_value{order};
    const object_sorter copy{by_value};
    EXPECT_TRUE(copy(a, b)) << "the keys are those of the one sorter";
    order.clear();
    EXPECT_FALSE(copy(a, b));
    EXPECT_FALSE(by_value(a, b));
    static_assert(std::is_abstract_v<sorter> && std::has_virtual_destructor_v<sorter>);
}

TEST_F(sorters_test, leave_ties_alone) {
    object* const owner = thing("owner");
    for (const char* name : {"b", "B", "a", "A", "b"}) part(name, owner);
    obj_sort_name_no_case order;
    std::vector<object*> sorted = owner->children(&order);
    ASSERT_EQ(sorted.size(), 5u);
    std::string names = names_of(sorted);
    lower_case(names);
    EXPECT_EQ(names, "a a b b b");
    EXPECT_FALSE(order.do_it(sorted[0], sorted[1])) << "not even by id";
    EXPECT_FALSE(order.do_it(sorted[1], sorted[0]));
}

TEST_F(sorters_test, sort_listings_with_and_without_a_filter) {
    object* const owner = thing("owner");
    part("b", owner);
    thing("c", owner);
    part("a", owner);
    thing("D", owner);
    obj_filter_type parts{types::part};
    obj_sort_name bytes;
    obj_sort_name_no_case no_case;
    obj_sort_order as_they_stand;
    obj_sort_by_type_name by_type;
    EXPECT_EQ(names_of(owner->children(&bytes)), "D a b c");
    EXPECT_EQ(names_of(owner->children(&no_case)), "a b c D");
    EXPECT_EQ(names_of(owner->children(&as_they_stand)), "c D b a");
    EXPECT_EQ(names_of(owner->children(&by_type)).substr(4), "c D") << "Part before Thing";
    EXPECT_EQ(names_of(owner->children(&parts, &bytes)), "a b");
}

} // namespace
} // namespace kelm::test
