// Questions to lists of objects.
// Lists of children are object_children_test.
#include "tests/support/world.h"

#include <kelm/object_helpers.h>

namespace kelm::test {
namespace {

using objects = std::vector<object*>;
using object_ids = std::vector<unsigned long>;

class object_lists : public world {
protected:
    object* const a = thing("a");
    object* const p = part("p");
    object* const b = thing("b");
    object* const special = make(types::special_thing, "s");
};

TEST_F(object_lists, objects_of_a_type_are_appended_in_order) {
    objects out{p};
    append_objects_with_type(out, {b, p, special, nullptr, a, b}, types::thing);
    EXPECT_EQ(out, (objects{p, b, a, b})) << "of exactly that type";
    append_objects_with_type(out, {}, types::thing);
    append_objects_with_type(out, {p}, types::thing);
    EXPECT_EQ(out.size(), 4u);
    append_objects_with_type(out, out, types::part);
    EXPECT_EQ(out, (objects{p, b, a, b, p})) << "also to the list itself";
}

TEST_F(object_lists, a_list_without_a_type_is_a_new_one) {
    const objects in{b, p, special, nullptr, a};
    EXPECT_EQ(remove_object_type(in, types::thing), (objects{p, special, nullptr}));
    EXPECT_EQ(remove_object_type(in, types::other), in);
    EXPECT_EQ(in.size(), 5u);
    EXPECT_TRUE(remove_object_type({}, types::thing).empty());
    EXPECT_TRUE(remove_object_type({a, b}, types::thing).empty());
}

TEST_F(object_lists, objects_of_a_type_are_counted) {
    const objects in{b, p, special, nullptr, a, a};
    EXPECT_EQ(contains_object_type(in, types::thing), 3u);
    EXPECT_EQ(contains_object_type(in, types::part), 1u);
    EXPECT_EQ(contains_object_type(in, types::other), 0u);
    EXPECT_EQ(contains_object_type({}, types::thing), 0u);
}

TEST_F(object_lists, an_object_has_a_position) {
    const objects in{b, p, a, p};
    EXPECT_EQ(object_position(in, b), 0u);
    EXPECT_EQ(object_position(in, p), 1u) << "the first";
    EXPECT_EQ(object_position(in, a), 2u);
    EXPECT_EQ(object_position(in, special), static_cast<std::size_t>(-1));
    EXPECT_EQ(object_position({}, a), npos);
    EXPECT_TRUE(container_contains_object(in, a));
    EXPECT_FALSE(container_contains_object(in, special));
    EXPECT_FALSE(container_contains_object({}, a));
}

TEST_F(object_lists, the_first_object_with_a_reference_is_found) {
    object* const to_b = thing("to b");
    object* const to_b_too = thing("to b too");
    object* const to_a = thing("to a");
    to_b->set_property(props::reference, reference(b));
    to_b_too->set_property(props::reference, reference(b));
    to_a->set_property(props::reference, reference(a));
    const objects in{nullptr, a, to_a, nullptr, to_b, to_b_too};
    EXPECT_EQ(container_contains_object_reference(in, props::reference, b), to_b);
    EXPECT_EQ(container_contains_object_reference(in, props::reference, a), to_a);
    EXPECT_EQ(container_contains_object_reference(in, props::reference, p), nullptr);
    EXPECT_EQ(container_contains_object_reference(in, props::text, b), nullptr) << "another property";
    EXPECT_EQ(container_contains_object_reference({}, props::reference, b), nullptr);
}

TEST_F(object_lists, references_count_where_they_are_inherited_but_not_inside_lists) {
    object* const base = thing("base");
    object* const heir = thing("heir");
    heir->add_inherits_from(base);
    base->set_property(props::reference, reference(b));
    EXPECT_EQ(container_contains_object_reference({a, heir}, props::reference, b), heir);
    object* const with_list = thing("list");
    with_list->append_vector_element(props::list, reference(b));
    EXPECT_EQ(container_contains_object_reference({with_list}, props::list, b), nullptr);
    object* const with_text = thing("text");
    with_text->set_property(props::reference, text("b"));
    EXPECT_EQ(container_contains_object_reference({with_text}, props::reference, b), nullptr);
    EXPECT_EQ(container_contains_object_reference({with_text, a}, props::reference, nullptr), nullptr);
    a->set_property(props::reference, reference(nullptr));
    EXPECT_EQ(container_contains_object_reference({with_text, a}, props::reference, nullptr), a);
}

TEST_F(object_lists, keeps_the_first_type_of_a_homogenous_list) {
    struct row {
        const char* why;
        objects in;
        unsigned also;
        unsigned type;
    };
    const row rows[] = {
        {"none", {}, types::part, 0},
        {"one", {a}, 0, types::thing},
        {"of one type", {a, b, a}, 0, types::thing},
        {"with the other behind", {a, p}, types::part, types::thing},
        {"with the other in between", {a, p, b, p}, types::part, types::thing},
        {"the other one first", {p, a}, types::part, 0},
        {"the other one alone", {p, p}, types::part, types::part},
        {"a third", {a, p, special}, types::part, 0},
        {"two types, none allowed", {a, p}, 0, 0},
        {"a derived type is another", {a, special}, 0, 0},
        {"null behind", {a, b, nullptr}, types::part, 0},
        {"null first", {nullptr, a}, types::part, 0},
        {"null alone", {nullptr}, 0, 0},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(homogenous(row.in, row.also), row.type);
    }
}

TEST_F(object_lists, ids_and_objects_are_turned_into_one_another) {
    object_ids ids{7};
    objs_to_ids({b, nullptr, a, b}, ids);
    EXPECT_EQ(ids, (object_ids{7, b->id(), a->id(), b->id()}));
    objects out{p};
    ids_to_objs(model, {b->id(), 4000000000UL, a->id(), 0, root->id()}, out);
    EXPECT_EQ(out, (objects{p, b, a, root}));
    ids_to_objs(model, {}, out);
    ids_to_objs(nullptr, {a->id()}, out);
    EXPECT_EQ(out.size(), 4u);
}

TEST_F(object_lists, ids_of_the_deleted_and_ids_too_wide_have_no_object) {
    const unsigned long gone = b->id();
    begin();
    ASSERT_TRUE(fw.delete_object(b));
    end();
    objects out;
    ids_to_objs(model, {gone}, out);
    EXPECT_TRUE(out.empty());
    if constexpr (sizeof(unsigned long) > sizeof(u32)) {
        const u64 wide = (u64{1} << 32) + a->id();
        ids_to_objs(model, {static_cast<unsigned long>(wide)}, out);
        EXPECT_TRUE(out.empty());
    }
    object_ids ids;
    objs_to_ids({b}, ids);
    EXPECT_EQ(ids, (object_ids{gone})) << "a deleted object has its id still";
}

TEST_F(object_lists, keeps_an_object_out_that_was_to_go_past_the_end) {
    struct row {
        const char* why;
        objects before;
        std::size_t position;
        bool answer;
        objects after;
    };
    const row rows[] = {
        {"there already", {p, a, b}, 1, true, {p, a, b}},
        {"to the front", {p, b, a}, 0, true, {a, p, b}},
        {"to the end", {a, p, b}, 2, true, {p, b, a}},
        {"one up", {a, p, b}, 1, true, {p, a, b}},
        {"one past the end, counted without it", {a, p, b}, 3, false, {p, b}},
        {"far past the end", {p, a, b}, 100, false, {p, b}},
        {"no position", {p, a}, npos, false, {p}},
        {"put in at the front", {p, b}, 0, true, {a, p, b}},
        {"put in between", {p, b}, 1, true, {p, a, b}},
        {"put in at the end", {p, b}, 2, true, {p, b, a}},
        {"put in past the end", {p, b}, 3, false, {p, b}},
        {"no position to put in", {p, b}, npos, false, {p, b}},
        {"into nothing", {}, 0, true, {a}},
        {"past nothing", {}, 1, false, {}},
        {"alone", {a}, 0, true, {a}},
        {"alone, past the end", {a}, 1, false, {}},
        {"twice in the list, once at the position", {a, p, a}, 2, true, {a, p, a}},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        objects list = row.before;
        EXPECT_EQ(set_object_order(list, a, row.position), row.answer);
        EXPECT_EQ(list, row.after);
    }
}

} // namespace
} // namespace kelm::test
