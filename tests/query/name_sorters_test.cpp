// Sorters by a text: what text, how it compares, and that it is kept.
// Sorters that keep nothing, and what all sorters share, are sorters_test.
#include "tests/support/world.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace kelm::test {
namespace {

class name_sorters_test : public world {
protected:
    /// \returns whether `a` comes before `b`; fails when both come before one another
    template <class Sorter>
    static bool before(const object* a, const object* b) {
        Sorter order;
        const bool there = order.do_it(a, b);
        EXPECT_FALSE(there && order.do_it(b, a)) << "both ways";
        return there;
    }
    /// \returns "<", ">" or "=", as the sorter puts `a` and `b`
    template <class Sorter>
    static std::string order_of(const object* a, const object* b) {
        return before<Sorter>(a, b) ? "<" : before<Sorter>(b, a) ? ">" : "=";
    }
};

TEST_F(name_sorters_test, names_by_bytes_and_blind_to_case) {
    struct row {
        const char* why;
        std::string a, b;
        const char* bytes;
        const char* no_case;
    };
    const row rows[] = {
        {"the shorter first", "ab", "abc", "<", "<"},
        {"capitals come before small letters only as bytes", "B", "a", "<", ">"},
        {"and small letters before capitals blind to case", "a", "B", ">", "<"},
        {"the same in another case", "abC", "ABc", ">", "="},
        {"the same", "abc", "abc", "=", "="},
        {"nothing comes first", "", "a", "<", "<"},
        {"nothing twice", "", "", "=", "="},
        {"bytes have no sign", "z", "\xE4", "<", "<"},
        {"other alphabets have no case", "\xC4", "\xE4", "<", "<"},
        {"letters count as small ones", "_", "A", ">", "<"},
        {"a zero byte ends a name blind to case", std::string("a\0x", 3), std::string("a\0y", 3), "<", "="},
        {"a zero byte is a byte else", "a", std::string("a\0", 2), "<", "="},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        const object* const a = thing(row.a);
        const object* const b = part(row.b);
        EXPECT_EQ(order_of<obj_sort_name>(a, b), row.bytes);
        EXPECT_EQ(order_of<obj_sort_name_no_case>(a, b), row.no_case);
    }
}

TEST_F(name_sorters_test, the_nameless_are_those_with_the_empty_name) {
    object* const nameless = thing("x");
    nameless->delete_property(props::name);
    EXPECT_EQ(order_of<obj_sort_name>(nameless, thing("")), "=");
    EXPECT_EQ(order_of<obj_sort_name>(nameless, thing("a")), "<");
    EXPECT_EQ(order_of<obj_sort_name>(nullptr, nameless), "=") << "nobody has no name";
}

TEST_F(name_sorters_test, names_of_owners_come_first) {
    // Each level is the reverse of the one above, so that each sorter sees another order.
    root->set_property(props::name, text("root"));
    object* const a1 = thing("a", thing("y", thing("k")));
    object* const b1 = thing("b", thing("x", thing("l")));
    EXPECT_EQ(order_of<obj_sort_name_no_case>(a1, b1), "<");
    EXPECT_EQ(order_of<owner_obj_sort_name_no_case>(a1, b1), ">");
    EXPECT_EQ(order_of<owner_owner_obj_sort_name_no_case>(a1, b1), "<");
    object* const m = thing("m");
    object* const n = thing("n");
    object* const a2 = thing("a", thing("y", thing("k", n)));
    object* const b2 = thing("b", thing("x", thing("l", m)));
    EXPECT_EQ(order_of<owner_owner_obj_sort_name_no_case>(a2, b2), "<");
    EXPECT_EQ(order_of<owner_owner_owner_obj_sort_name_no_case>(a2, b2), ">");
    EXPECT_EQ(order_of<obj_sort_full_path_name_no_case>(a2, b2), ">");
}

TEST_F(name_sorters_test, own_names_decide_among_equal_owners_and_case_never_does) {
    object* const top = thing("Top");
    object* const top_again = thing("tOP");
    object* const a = thing("a", thing("Mid", top));
    object* const b = thing("B", thing("mID", top_again));
    EXPECT_EQ(order_of<owner_obj_sort_name_no_case>(a, b), "<");
    EXPECT_EQ(order_of<owner_owner_obj_sort_name_no_case>(a, b), "<");
    EXPECT_EQ(order_of<owner_owner_owner_obj_sort_name_no_case>(a, b), "<");
    EXPECT_EQ(order_of<obj_sort_full_path_name_no_case>(a, b), "<");
    object* const same = thing("A", thing("mid", top_again));
    EXPECT_EQ(order_of<owner_obj_sort_name_no_case>(a, same), "=");
    EXPECT_EQ(order_of<owner_owner_owner_obj_sort_name_no_case>(a, same), "=");
    EXPECT_EQ(order_of<obj_sort_full_path_name_no_case>(a, same), "=");
}

TEST_F(name_sorters_test, a_point_stands_between_the_names) {
    // "a.b" + "." + "c" and "a" + "." + "b.c" are one text; "a-" comes before "a." and that before "a/".
    EXPECT_EQ(order_of<owner_obj_sort_name_no_case>(thing("c", thing("a.b")), thing("b.c", thing("a"))), "=");
    EXPECT_EQ(order_of<owner_obj_sort_name_no_case>(thing("z", thing("a-")), thing("a", thing("a"))), "<");
    EXPECT_EQ(order_of<owner_obj_sort_name_no_case>(thing("a", thing("a/")), thing("z", thing("a"))), ">");
}

TEST_F(name_sorters_test, keeps_the_points_of_missing_owners) {
    root->set_property(props::name, text("b"));
    object* const in_b = thing("a");
    // Each key is compared with that of an object that has as many owners, nameless ones.
    const auto chain = [&](std::initializer_list<const char*> names) {
        object* last = nullptr;
        for (const char* name : names) last = thing(name, last);
        return last;
    };
    EXPECT_EQ(order_of<owner_obj_sort_name_no_case>(root, chain({"", "b"})), "=") << ".b";
    EXPECT_EQ(order_of<owner_owner_obj_sort_name_no_case>(root, chain({"", "", "b"})), "=") << "..b";
    EXPECT_EQ(order_of<owner_owner_obj_sort_name_no_case>(in_b, chain({"", "b", "a"})), "=") << ".b.a";
    EXPECT_EQ(order_of<owner_owner_owner_obj_sort_name_no_case>(root, chain({"", "", "", "b"})), "=")
        << "...b";
    EXPECT_EQ(order_of<owner_owner_owner_obj_sort_name_no_case>(in_b, chain({"", "", "b", "a"})), "=");
    EXPECT_EQ(order_of<owner_obj_sort_name_no_case>(in_b, chain({"b", "a"})), "=") << "the model is an owner";
}

TEST_F(name_sorters_test, a_path_begins_below_the_model) {
    root->set_property(props::name, text("z"));
    object* const child = thing("m");
    object* const elsewhere = thing("a", thing("n"));
    EXPECT_EQ(order_of<obj_sort_full_path_name_no_case>(child, elsewhere), "<") << "m, n.a";
    EXPECT_EQ(order_of<owner_obj_sort_name_no_case>(child, elsewhere), ">") << "z.m, n.a";
    EXPECT_EQ(order_of<obj_sort_full_path_name_no_case>(root, child), "<") << "the model's path is empty";
    EXPECT_EQ(order_of<obj_sort_full_path_name_no_case>(thing("p"), thing("p!")), "<")
        << "a quote follows '!'";
}

TEST_F(name_sorters_test, types_by_their_names) {
    object* const a_thing = thing("a");
    object* const a_part = part("b");
    object* const an_other = make(types::other, "c");
    EXPECT_EQ(order_of<obj_sort_by_type_name>(a_part, a_thing), "<") << "Part, Thing";
    EXPECT_EQ(order_of<obj_sort_by_type_name>(an_other, a_part), "<") << "Other, Part";
    EXPECT_EQ(order_of<obj_sort_by_type_name>(a_thing, thing("0")), "=");
    EXPECT_EQ(order_of<obj_sort_by_type_name>(root, a_part), "<") << "Model, Part";
}

TEST_F(name_sorters_test, names_of_types_compare_by_bytes_in_the_model_of_the_object) {
    constexpr u32 small = 900201, local = 900202;
    ASSERT_TRUE(model->meta_model()->add_meta_object(small, "part", "", ""));
    ASSERT_TRUE(model->meta_model()->add_meta_object(local, "Pa", "", ""));
    object* const of_small = make(small, "x");
    object* const of_local = make(local, "x");
    EXPECT_EQ(order_of<obj_sort_by_type_name>(of_small, thing("x")), ">") << "part, Thing";
    EXPECT_EQ(order_of<obj_sort_by_type_name>(of_local, part("x")), "<") << "Pa, Part";
}

TEST_F(name_sorters_test, keeps_the_name_of_a_type_for_objects_of_all_models) {
    constexpr u32 local = 900203;
    object* const second_root = fw.create_object(type_id::model, nullptr);
    ASSERT_TRUE(second_root);
    kelm::model* const second = second_root->model();
    ASSERT_TRUE(model->meta_model()->add_meta_object(local, "A", "", ""));
    ASSERT_TRUE(second->meta_model()->add_meta_object(local, "Z", "", ""));
    object* const here = make(local, "x");
    object* const there = make(local, "x", second_root);
    object* const middle = part("x");
    obj_sort_by_type_name order;
    EXPECT_TRUE(order.do_it(here, middle));
    EXPECT_TRUE(order.do_it(there, middle)) << "the name is known by now";
    order.clear();
    EXPECT_FALSE(order.do_it(there, middle));
    EXPECT_FALSE(order.do_it(here, middle));
    EXPECT_TRUE(fw.delete_object(second_root));
}

// What is kept

template <class Sorter>
class kept_keys_test : public name_sorters_test {};
using sorters_by_names =
    testing::Types<obj_sort_name, obj_sort_name_no_case, owner_obj_sort_name_no_case,
                   owner_owner_obj_sort_name_no_case, owner_owner_owner_obj_sort_name_no_case,
                   obj_sort_full_path_name_no_case>;
TYPED_TEST_SUITE(kept_keys_test, sorters_by_names);

TYPED_TEST(kept_keys_test, stay_until_they_are_cleared) {
    object* const a = this->thing("a");
    object* const b = this->thing("b");
    TypeParam order;
    EXPECT_TRUE(order.do_it(a, b));
    a->set_property(props::name, text("c"));
    EXPECT_TRUE(order.do_it(a, b)) << "the old name";
    TypeParam fresh;
    EXPECT_FALSE(fresh.do_it(a, b));
    order.clear();
    EXPECT_FALSE(order.do_it(a, b));
    EXPECT_TRUE(order.do_it(b, a));
}

TYPED_TEST(kept_keys_test, go_with_a_copy_and_are_each_sorters_own_from_then_on) {
    object* const a = this->thing("a");
    object* const b = this->thing("b");
    TypeParam order;
    EXPECT_TRUE(order.do_it(a, b));
    a->set_property(props::name, text("c"));
    TypeParam copy{order};
    TypeParam assigned;
    assigned = order;
    order.clear();
    EXPECT_FALSE(order.do_it(a, b));
    EXPECT_TRUE(copy.do_it(a, b));
    EXPECT_TRUE(assigned.do_it(a, b));
    TypeParam moved{std::move(copy)};
    EXPECT_TRUE(moved.do_it(a, b));
    TypeParam moved_into;
    moved_into = std::move(moved);
    EXPECT_TRUE(moved_into.do_it(a, b));
}

TYPED_TEST(kept_keys_test, are_built_once_an_object) {
    object* const owner = this->thing("owner");
    constexpr int count = 40;
    for (int i = 0; i != count; ++i) this->hooked("n" + std::to_string(i * 7 % count + 10), owner);
    int asked = 0;
    this->hooks.template on<pre_prop_get_semantic>([&](hook_call&) {
        ++asked;
        return true;
    });
    TypeParam order;
    const std::vector<object*> sorted = owner->children(&order);
    EXPECT_EQ(asked, count);
    EXPECT_EQ(sorted.size(), static_cast<std::size_t>(count));
    EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end(), object_sorter{order}));
    EXPECT_EQ(object_name(sorted.front()), "n10");
    EXPECT_EQ(object_name(sorted.back()), "n49");
    this->hooks.clear();
}

TYPED_TEST(kept_keys_test, survive_a_hook_that_clears_them_or_asks_for_names) {
    object* const a = this->hooked("a" + std::string(100, 'x'));
    object* const b = this->hooked("b" + std::string(100, 'x'));
    object* const other = this->thing("z");
    TypeParam order;
    this->hooks.template on<pre_prop_get_semantic>([&](hook_call&) {
        order.clear();
        return object_name(other) == "z";
    });
    EXPECT_TRUE(order.do_it(a, b));
    EXPECT_FALSE(order.do_it(b, a));
    this->hooks.clear();
}

} // namespace
} // namespace kelm::test
