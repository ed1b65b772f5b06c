// Filters: what each leaves out, alone and combined, asked directly and through listings.
// How a listing takes a filter is listing_test.
#include "tests/support/family.h"

#include <algorithm>
#include <type_traits>
#include <utility>

namespace kelm::test {
namespace {

/// Answers what it is told, and counts how often it is asked.
class answers final : public filter {
public:
    explicit answers(bool answer) : answer_(answer) {}
    bool do_it(const object*) const override {
        ++asked;
        return answer_;
    }
    mutable int asked = 0;

private:
    bool answer_;
};

class filters_test : public family {
protected:
    object* const c = make(types::other, "c", owner);

    std::string passing(filter& by) const { return names_of(owner->children(&by)); }
};

// Combinations

TEST_F(filters_test, combinations_join_what_is_left_out_and_ask_no_more_than_they_must) {
    struct row {
        const char* why;
        bool a, b;
        bool either, both;
        int asked_b_for_either, asked_b_for_both;
    };
    const row rows[] = {
        {"neither leaves it out", false, false, false, false, 1, 0},
        {"the second does", false, true, true, false, 1, 0},
        {"the first does", true, false, true, false, 0, 1},
        {"both do", true, true, true, true, 0, 1},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        answers first{row.a};
        answers second{row.b};
        EXPECT_EQ((or_filter{&first, &second}.do_it(a)), row.either);
        EXPECT_EQ(first.asked, 1);
        EXPECT_EQ(std::exchange(second.asked, 0), row.asked_b_for_either);
        EXPECT_EQ((and_filter{&first, &second}.do_it(a)), row.both);
        EXPECT_EQ(first.asked, 2);
        EXPECT_EQ(second.asked, row.asked_b_for_both);
        EXPECT_EQ(not_filter{&first}.do_it(a), !row.a);
        EXPECT_EQ(first.asked, 3);
    }
}

TEST_F(filters_test, keeps_the_names_of_combinations_that_speak_of_what_is_left_out) {
    obj_filter_type things{types::thing};
    long_names short_ones;
    or_filter either{&things, &short_ones};
    and_filter both{&things, &short_ones};
    EXPECT_EQ(passing(either), "a") << "or: what both pass";
    EXPECT_EQ(passing(both), "a aa b c s") << "and: what at least one passes";
}

TEST_F(filters_test, a_turned_filter_by_type_leaves_out_exactly_the_type) {
    obj_filter_type things{types::thing};
    not_filter no_things{&things};
    EXPECT_EQ(passing(no_things), "b bb c s");
    not_filter again{&no_things};
    EXPECT_EQ(passing(again), "a aa");
}

TEST_F(filters_test, keeps_a_filter_by_type_that_is_asked_only_inside_a_combination) {
    obj_filter_type derived{types::thing, true};
    not_filter no_things{&derived};
    not_filter things_after_all{&no_things};
    EXPECT_EQ(passing(derived), "a aa") << "a listing takes the run of the type";
    EXPECT_EQ(passing(things_after_all), "a aa s");
    obj_filter_types several{{types::part, types::thing}, true};
    not_filter none_of_them{&several};
    not_filter several_after_all{&none_of_them};
    EXPECT_EQ(passing(several), "b bb a aa");
    EXPECT_EQ(passing(several_after_all), "a aa b bb s");
}

TEST_F(filters_test, combinations_are_copied_with_the_same_operands) {
    answers first{true};
    answers second{false};
    const or_filter either{&first, &second};
    const and_filter both{&first, &second};
    const not_filter turned{&first};
    or_filter either_copy; // made without operands: not to be asked
    and_filter both_copy;
    not_filter turned_copy;
    either_copy = either;
    both_copy = both;
    turned_copy = turned;
    EXPECT_TRUE(either_copy.do_it(a));
    EXPECT_FALSE(both_copy.do_it(a));
    EXPECT_FALSE(turned_copy.do_it(a));
    EXPECT_EQ(first.asked, 3);
    EXPECT_EQ(second.asked, 1);
}

// By type

TEST_F(filters_test, by_type_says_no_to_its_type_alone) {
    const obj_filter_type exact{types::thing, false};
    EXPECT_FALSE(exact.do_it(a));
    for (const object* other : {b, c, special, root}) EXPECT_TRUE(exact.do_it(other));
    EXPECT_EQ(exact.type(), types::thing);
    EXPECT_TRUE(obj_filter_type{types::thing}.do_it(special)) << "derived types only when wanted";
}

TEST_F(filters_test, by_type_passes_derived_types_when_wanted) {
    const obj_filter_type things{types::thing, true};
    EXPECT_FALSE(things.do_it(a));
    EXPECT_FALSE(things.do_it(special));
    for (const object* other : {b, c, root}) EXPECT_TRUE(things.do_it(other));
    const obj_filter_type special_ones{types::special_thing, true};
    EXPECT_TRUE(special_ones.do_it(a)) << "the other way round nothing is derived";
    EXPECT_FALSE(special_ones.do_it(special));
    const obj_filter_type all{type_id::generic_object, true};
    for (const object* each : {a, b, c, special}) EXPECT_FALSE(all.do_it(each)) << "over several levels";
}

TEST_F(filters_test, by_type_without_a_type_leaves_out_everything) {
    const obj_filter_type none;
    EXPECT_EQ(none.type(), 0u);
    for (const object* each : {a, b, c, special, root}) EXPECT_TRUE(none.do_it(each));
}

TEST_F(filters_test, a_type_that_nobody_knows_has_none_derived_from_it) {
    constexpr u32 unknown = 4000000000U;
    EXPECT_TRUE((obj_filter_type{unknown, true}.do_it(a)));
    const obj_filter_types with_unknown{{unknown, types::thing}, true};
    EXPECT_TRUE(with_unknown.do_it(b));
    EXPECT_FALSE(with_unknown.do_it(special));
}

TEST_F(filters_test, by_type_asks_the_meta_model_of_the_application) {
    constexpr u32 local = 900101;
    meta_object* const made = model->meta_model()->add_meta_object(local, "Only Here", "", "");
    ASSERT_TRUE(made);
    made->add_base_type(model->meta_model()->find_meta_object(types::thing));
    const object* const what = make(local, "here");
    EXPECT_FALSE(obj_filter_type{local}.do_it(what));
    EXPECT_FALSE((obj_filter_type{local, true}.do_it(what)));
    EXPECT_TRUE((obj_filter_type{types::thing, true}.do_it(what))) << "the application knows of no such type";
}

TEST_F(filters_test, by_types_passes_those_of_its_list) {
    const std::vector<u32> wanted{types::part, types::thing};
    const obj_filter_types exact{wanted, false};
    EXPECT_EQ(exact.types(), wanted);
    for (const object* each : {a, b}) EXPECT_FALSE(exact.do_it(each));
    for (const object* each : {c, special, root}) EXPECT_TRUE(exact.do_it(each));
    const obj_filter_types derived{wanted, true};
    for (const object* each : {a, b, special}) EXPECT_FALSE(derived.do_it(each));
    for (const object* each : {c, root}) EXPECT_TRUE(derived.do_it(each));
}

TEST_F(filters_test, by_types_with_an_empty_list_leaves_out_everything) {
    for (const bool derived : {false, true}) {
        SCOPED_TRACE(derived);
        obj_filter_types none{{}, derived};
        for (const object* each : {a, b, c, special, root}) EXPECT_TRUE(none.do_it(each));
        EXPECT_EQ(passing(none), "");
        EXPECT_TRUE(none.types().empty());
    }
}

// By name

TEST_F(filters_test, by_name_and_type) {
    struct row {
        const char* why;
        std::string name;
        std::string wanted;
        bool exact, no_case; // left out
    };
    const row rows[] = {
        {"the name", "abc", "abc", false, false},
        {"another case", "ABC", "abc", true, false},
        {"another case the other way round", "abc", "aBc", true, false},
        {"longer", "abcd", "abc", true, true},
        {"shorter", "ab", "abc", true, true},
        {"letters of other alphabets have no case", "\xC4", "\xE4", true, true},
        {"what is no letter has no case either", "[", "{", true, true},
        {"none", "", "", false, false},
        {"none is not any", "", "abc", true, true},
        {"behind a zero byte only bytes count", std::string("a\0x", 3), std::string("a\0y", 3), true, false},
        {"a zero byte ends a name but for bytes", std::string("a\0x", 3), "A", true, false},
        {"the same with a zero byte", std::string("a\0x", 3), std::string("a\0x", 3), false, false},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        const object* const fitting = thing(row.name);
        const object* const of_another_type = part(row.name);
        const object* const derived = make(types::special_thing, row.name);
        const obj_filter_name_and_type exact{types::thing, row.wanted};
        const obj_filter_name_and_type_no_case no_case{types::thing, row.wanted};
        EXPECT_EQ(exact.do_it(fitting), row.exact);
        EXPECT_EQ(no_case.do_it(fitting), row.no_case);
        for (const object* other : {of_another_type, derived}) {
            EXPECT_TRUE(exact.do_it(other));
            EXPECT_TRUE(no_case.do_it(other));
        }
    }
}

TEST_F(filters_test, by_name_goes_by_the_present_and_the_inherited_name) {
    const obj_filter_name_and_type by_name{types::thing, "new"};
    EXPECT_TRUE(by_name.do_it(a));
    a->set_property(props::name, text("new"));
    EXPECT_FALSE(by_name.do_it(a));
    object* const heir = thing("own");
    heir->delete_property(props::name);
    heir->add_inherits_from(a);
    EXPECT_FALSE(by_name.do_it(heir));
}

TEST_F(filters_test, by_name_in_a_listing) {
    thing("B", owner);
    part("B", owner);
    obj_filter_name_and_type exact{types::part, "b"};
    obj_filter_name_and_type_no_case no_case{types::part, "b"};
    EXPECT_EQ(passing(exact), "b");
    EXPECT_EQ(passing(no_case), "b B");
}

// All but one

TEST_F(filters_test, all_of_a_type_but_one) {
    filter_type_and_obj others{types::thing, a};
    EXPECT_TRUE(others.do_it(a));
    EXPECT_FALSE(others.do_it(long_a));
    for (const object* of_another_type : {b, c, special, root}) EXPECT_TRUE(others.do_it(of_another_type));
    EXPECT_EQ(passing(others), "aa");
    filter_type_and_obj stranger{types::thing, b};
    EXPECT_EQ(passing(stranger), "a aa") << "of another type it is left out anyway";
    filter_type_and_obj nobody{types::thing, nullptr};
    EXPECT_EQ(passing(nobody), "a aa");
}

// What all share

template <class Filter>
void expect_copies_agree(const Filter& original, const object* passes, const object* left_out) {
    const Filter copy{original};
    Filter assigned{original};
    assigned = copy;
    EXPECT_FALSE(copy.do_it(passes));
    EXPECT_TRUE(copy.do_it(left_out));
    EXPECT_FALSE(assigned.do_it(passes));
    EXPECT_TRUE(assigned.do_it(left_out));
}

TEST_F(filters_test, filters_are_copied_with_what_they_look_for) {
    expect_copies_agree(obj_filter_type{types::thing, true}, special, b);
    expect_copies_agree(obj_filter_types{{types::thing}, true}, special, b);
    expect_copies_agree(obj_filter_name_and_type{types::thing, "a"}, a, long_a);
    expect_copies_agree(obj_filter_name_and_type_no_case{types::thing, "A"}, a, long_a);
    expect_copies_agree(filter_type_and_obj{types::thing, a}, long_a, a);
    static_assert(std::is_abstract_v<filter> && std::has_virtual_destructor_v<filter>);
}

TEST_F(filters_test, goes_through_algorithms_by_value_without_being_copied) {
    answers asked{true};
    std::vector<object*> list{a, b, c};
    const object_filter by_value{asked};
    const object_filter copy{by_value};
    EXPECT_TRUE(copy(a));
    list.erase(std::remove_if(list.begin(), list.end(), by_value), list.end());
    EXPECT_TRUE(list.empty()) << "what it answers true for is left out";
    EXPECT_EQ(asked.asked, 4) << "the copies ask the one filter";
    long_names short_ones;
    list = {a, long_a, b};
    std::erase_if(list, object_filter{short_ones});
    EXPECT_EQ(names_of(list), "a b");
}

} // namespace
} // namespace kelm::test
