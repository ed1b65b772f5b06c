// Questions to owners, children and heirs.
// Lists without an owner are object_lists_test.
#include "tests/support/family.h"

#include <kelm/object_helpers.h>

namespace kelm::test {
namespace {

class object_children : public family {
protected:
    std::vector<object*> out{nullptr}; // what was in it goes
};

// Owners

TEST_F(object_children, an_owner_owns_over_any_number_of_levels) {
    object* const below = part("below", b);
    struct row {
        const char* why;
        const object* what;
        const object* by;
        bool answer;
    };
    const row rows[] = {
        {"directly", b, owner, true},
        {"over another", below, owner, true},
        {"the model owns all", below, root, true},
        {"the other way round", owner, b, false},
        {"a sibling", a, b, false},
        {"itself", b, b, false},
        {"the model itself", root, root, false},
        {"nobody", nullptr, owner, false},
        {"by nobody", b, nullptr, false},
        {"nobody by nobody", nullptr, nullptr, false},
        {"the model has no owner", root, nullptr, false},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(is_owned(row.what, row.by), row.answer);
    }
}

// A child by name

TEST_F(object_children, a_child_has_a_name) {
    object* const upper = thing("ABC", owner);
    object* const part_of_same_name = part("ABC", owner);
    struct row {
        const char* why;
        const char* name;
        unsigned type;
        bool no_case;
        object* answer;
    };
    const row rows[] = {
        {"blind to case", "abc", 0, true, upper},
        {"not blind to case", "abc", 0, false, nullptr},
        {"exact", "ABC", 0, false, upper},
        {"of one type", "ABC", types::part, false, part_of_same_name},
        {"of one type, blind to case", "aBc", types::part, true, part_of_same_name},
        {"of another type", "b", types::thing, false, nullptr},
        {"a derived type is another", "s", types::thing, false, nullptr},
        {"of its own type", "s", types::special_thing, false, special},
        {"not the beginning of a name", "AB", 0, true, nullptr},
        {"not a name with something behind", "ABCD", 0, true, nullptr},
        {"not the owner", "owner", 0, false, nullptr},
        {"no name", "", 0, false, nullptr},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(child_by_name(owner, row.name, row.type, row.no_case), row.answer);
    }
    EXPECT_EQ(child_by_name(nullptr, "a", 0, true), nullptr);
    EXPECT_EQ(child_by_name(special, "a", 0, true), nullptr) << "without children";
}

TEST_F(object_children, the_first_of_a_name_is_meant) {
    object* const first = thing("same", owner);
    thing("same", owner);
    EXPECT_EQ(child_by_name(owner, "same", 0, false), first);
    EXPECT_EQ(child_by_name(owner, "SAME", types::thing, true), first);
}

TEST_F(object_children, a_zero_byte_ends_a_name_only_where_case_does_not_count) {
    object* const odd = thing(std::string("n\0x", 3), owner);
    EXPECT_EQ(child_by_name(owner, std::string("N\0y", 3), 0, true), odd);
    EXPECT_EQ(child_by_name(owner, "n", 0, false), nullptr);
    EXPECT_EQ(child_by_name(owner, std::string("n\0x", 3), 0, false), odd);
}

TEST_F(object_children, a_child_that_hooks_hide_is_not_found) {
    object* const hiding = hooked("hiding");
    part("x", hiding);
    EXPECT_TRUE(child_by_name(hiding, "x", 0, false));
    hooks.refuse<pre_children_get_semantic>();
    EXPECT_FALSE(child_by_name(hiding, "x", 0, false));
    EXPECT_FALSE(child_by_name(hiding, "x", types::part, false));
    hooks.clear();
    fw.set_in_semantic(false);
}

// Children of a type

TEST_F(object_children, of_a_type_are_listed_as_they_stand) {
    EXPECT_EQ(children_by_type(owner, out, types::thing, nullptr), 2u);
    EXPECT_EQ(names_of(out), "a aa") << "exactly that type";
    EXPECT_EQ(children_by_type(owner, out, types::part, nullptr), 2u);
    EXPECT_EQ(names_of(out), "b bb");
    EXPECT_EQ(children_by_type(owner, out, types::other, nullptr), 0u);
    EXPECT_TRUE(out.empty());
    out = {a};
    EXPECT_EQ(children_by_type(nullptr, out, types::thing, nullptr), 0u);
    EXPECT_TRUE(out.empty());
    EXPECT_EQ(num_children_of_type(owner, types::thing, nullptr), 2u);
    EXPECT_EQ(num_children_of_type(owner, types::other, nullptr), 0u);
    EXPECT_EQ(num_children_of_type(nullptr, types::thing, nullptr), 0u);
    EXPECT_TRUE(has_children_of_type(owner, types::part, nullptr));
    EXPECT_FALSE(has_children_of_type(owner, types::other, nullptr));
    EXPECT_FALSE(has_children_of_type(nullptr, types::thing, nullptr));
}

TEST_F(object_children, keeps_listings_that_want_both_and_counts_that_want_one_of_two) {
    long_names short_ones;
    EXPECT_EQ(children_by_type(owner, out, types::thing, &short_ones), 1u);
    EXPECT_EQ(names_of(out), "a") << "of the type and passing";
    EXPECT_EQ(num_children_of_type(owner, types::thing, &short_ones), 4u) << "a, aa, b, s";
    EXPECT_TRUE(has_children_of_type(owner, types::other, &short_ones)) << "none of the type, but some pass";
    EXPECT_EQ(children_by_type(owner, out, types::other, &short_ones), 0u);
    obj_filter_types nothing{{}};
    EXPECT_EQ(children_by_type(owner, out, types::thing, &nothing), 0u);
    EXPECT_EQ(num_children_of_type(owner, types::thing, &nothing), 2u);
    EXPECT_TRUE(has_children_of_type(owner, types::thing, &nothing));
    EXPECT_FALSE(has_children_of_type(owner, types::other, &nothing));
}

TEST_F(object_children, a_further_filter_by_type_is_asked_for_what_it_says) {
    obj_filter_type things{types::thing, true};
    EXPECT_EQ(children_by_type(owner, out, types::special_thing, &things), 1u);
    EXPECT_EQ(names_of(out), "s");
    EXPECT_EQ(num_children_of_type(owner, types::part, &things), 5u);
}

// Heirs

TEST_F(object_children, that_inherit_are_of_one_type_and_direct_heirs) {
    object* const base = thing("base");
    object* const between = thing("between");
    between->add_inherits_from(base);
    a->add_inherits_from(base);
    long_a->add_inherits_from(between);
    b->add_inherits_from(base);
    long_b->add_inherits_from(thing("stranger"));
    struct row {
        const char* why;
        const object* owner;
        const object* base;
        unsigned type;
        const char* names;
    };
    const row rows[] = {
        {"the type of the base", owner, base, 0, "a"},
        {"the same type, named", owner, base, types::thing, "a"},
        {"another type", owner, base, types::part, "b"},
        {"a type without heirs", owner, base, types::special_thing, ""},
        {"of another base", owner, between, 0, "aa"},
        {"a base without heirs", owner, special, 0, ""},
        {"nobody's children", nullptr, base, 0, ""},
        {"heirs of nobody", owner, nullptr, 0, ""},
        {"heirs of nobody of a type", owner, nullptr, types::thing, ""},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        out = {special};
        const std::size_t count = children_that_inherit_from(row.owner, row.base, out, row.type);
        EXPECT_EQ(names_of(out), row.names);
        EXPECT_EQ(count, out.size());
    }
}

TEST_F(object_children, the_first_common_base_is_that_of_the_first_object) {
    object* const x = thing("x");
    object* const y = thing("y");
    object* const z = thing("z");
    for (object* base : {x, y, z}) a->add_inherits_from(base);
    for (object* base : {z, y}) b->add_inherits_from(base);
    EXPECT_EQ(inherit_from_same_object(a, b), y);
    EXPECT_EQ(inherit_from_same_object(b, a), z);
    EXPECT_EQ(inherit_from_same_object(a, a), x);
    EXPECT_EQ(inherit_from_same_object(a, special), nullptr);
    EXPECT_EQ(inherit_from_same_object(special, a), nullptr);
    EXPECT_EQ(inherit_from_same_object(a, nullptr), nullptr);
    EXPECT_EQ(inherit_from_same_object(nullptr, a), nullptr);
    special->add_inherits_from(a);
    EXPECT_EQ(inherit_from_same_object(special, b), nullptr) << "direct bases only";
}

} // namespace
} // namespace kelm::test
