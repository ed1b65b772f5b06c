// Boxes of one value: what a new one holds, copies, comparison, and the pair with an attribute.
// Text and binary forms, and vectors, have files of their own.
#include "framework/data_types.h"
#include "framework/values.h"
#include "tests/support/box.h"
#include "tests/support/counted_value.h"
#include "tests/support/unregistered_value.h"

#include <kelm/property.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <typeinfo>

namespace kelm {
namespace {

using test::box;
using test::boxed;

constexpr GUID some_id{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};

TEST(values, a_new_box_holds_nothing) {
    EXPECT_FALSE(property<bool>{}.value);
    EXPECT_EQ(property<short>{}.value, 0);
    EXPECT_EQ(property<int>{}.value, 0);
    EXPECT_EQ(property<long>{}.value, 0);
    EXPECT_EQ(property<unsigned>{}.value, 0U);
    EXPECT_EQ(property<long long>{}.value, 0);
    EXPECT_EQ(property<double>{}.value, 0.0);
    EXPECT_EQ(property<std::string>{}.value, "");
    EXPECT_EQ(property<object*>{}.value, nullptr);
    EXPECT_TRUE(property<GUID>{}.value == GUID{});
    EXPECT_TRUE(property<id_multimap>{}.value.empty());
    EXPECT_TRUE(vector_property{}.elements.empty());
}

TEST(values, a_long_has_32_bits) {
    static_assert(sizeof(property<long>{}.value) == 4);
    EXPECT_EQ(property<long>{std::numeric_limits<std::int32_t>::min()}.value, -2147483647 - 1);
}

TEST(values, a_clone_is_another_box_of_the_same_kind_and_value) {
    std::vector<box> all;
    all.push_back(boxed<bool>(true));
    all.push_back(boxed<short>(-3));
    all.push_back(boxed<int>(4));
    all.push_back(boxed<long>(5));
    all.push_back(boxed<unsigned>(6));
    all.push_back(boxed<long long>(1LL << 40));
    all.push_back(boxed<double>(2.5));
    all.push_back(boxed<std::string>("text that is too long to be stored in place"));
    all.push_back(boxed<GUID>(some_id));
    all.push_back(boxed<id_multimap>({{1, 2}, {1, 3}}));
    for (const box& original : all) {
        const abstract_property& value = *original;
        SCOPED_TRACE(typeid(value).name());
        const box copy{original->clone()};
        const abstract_property& copied = *copy;
        EXPECT_NE(copy.get(), original.get());
        EXPECT_EQ(typeid(copied), typeid(value));
        EXPECT_TRUE(copy->equals(original.get()));
        EXPECT_TRUE(original->equals(copy.get()));
    }
    const box reference = std::make_unique<property<object*>>();
    const box copy{reference->clone()};
    EXPECT_EQ(dynamic_cast<property<object*>&>(*copy).value, nullptr);
}

TEST(values, a_clone_lives_on_its_own) {
    property<std::string> original{"before"};
    const box copy{original.clone()};
    original.value = "after";
    EXPECT_EQ(copy->to_string(), "before");
}

TEST(values, merging_does_nothing_to_a_box_of_one_value) {
    property<int> value{1};
    property<int> other{2};
    value.merge(&other);
    EXPECT_EQ(value.value, 1);
    EXPECT_EQ(other.value, 2);
    value.merge(nullptr);
    EXPECT_EQ(value.value, 1);
}

TEST(values, comparison_of_boxes_of_one_kind) {
    struct row {
        const char* why;
        box a;
        box b;
        bool same;
    };
    const row rows[] = {
        {"both true", boxed<bool>(true), boxed<bool>(true), true},
        {"both false", boxed<bool>(false), boxed<bool>(false), true},
        {"true and false", boxed<bool>(true), boxed<bool>(false), false},
        {"shorts alike", boxed<short>(-7), boxed<short>(-7), true},
        {"shorts apart by the sign", boxed<short>(-7), boxed<short>(7), false},
        {"ints alike", boxed<int>(70000), boxed<int>(70000), true},
        {"ints apart in the high half", boxed<int>(70000), boxed<int>(70000 - 65536), false},
        {"longs alike", boxed<long>(-1), boxed<long>(-1), true},
        {"longs apart", boxed<long>(-1), boxed<long>(0), false},
        {"unsigneds alike", boxed<unsigned>(4294967295U), boxed<unsigned>(4294967295U), true},
        {"unsigneds apart", boxed<unsigned>(4294967295U), boxed<unsigned>(4294967294U), false},
        {"long longs alike", boxed<long long>(-(1LL << 40)), boxed<long long>(-(1LL << 40)), true},
        {"long longs apart in the high half", boxed<long long>(1LL << 40), boxed<long long>(1LL << 41),
         false},
        {"texts alike", boxed<std::string>("abc"), boxed<std::string>("abc"), true},
        {"texts apart by case", boxed<std::string>("abc"), boxed<std::string>("Abc"), false},
        {"texts apart by length", boxed<std::string>("abc"), boxed<std::string>("ab"), false},
        {"texts apart behind a zero byte", boxed<std::string>(std::string("a\0b", 3)),
         boxed<std::string>(std::string("a\0c", 3)), false},
        {"ids alike", boxed<GUID>(some_id), boxed<GUID>(some_id), true},
        {"ids apart in the first half", boxed<GUID>(some_id),
         boxed<GUID>({0, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}}), false},
        {"ids apart in the last byte", boxed<GUID>(some_id),
         boxed<GUID>({1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 12}}), false},
        {"maps empty", boxed<id_multimap>({}), boxed<id_multimap>({}), true},
        {"maps alike", boxed<id_multimap>({{1, 2}, {3, 4}}), boxed<id_multimap>({{3, 4}, {1, 2}}), true},
        {"maps apart by size", boxed<id_multimap>({{1, 2}, {3, 4}}), boxed<id_multimap>({{1, 2}}), false},
        {"maps apart by a key", boxed<id_multimap>({{1, 2}}), boxed<id_multimap>({{2, 2}}), false},
        {"maps apart by a value", boxed<id_multimap>({{1, 2}}), boxed<id_multimap>({{1, 3}}), false},
        {"maps apart by the order under one key", boxed<id_multimap>({{1, 2}, {1, 3}}),
         boxed<id_multimap>({{1, 3}, {1, 2}}), false},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(row.a->equals(row.b.get()), row.same);
        EXPECT_EQ(row.b->equals(row.a.get()), row.same);
    }
}

TEST(values, null_equals_nothing) {
    for (const u32 code : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 1001U, 1002U, 1003U}) {
        SCOPED_TRACE(code);
        data_types::register_built_in_data_types();
        const box value{data_types::create_value(code)};
        ASSERT_TRUE(value);
        EXPECT_FALSE(value->equals(nullptr));
    }
    EXPECT_FALSE(property<unsigned>{}.equals(nullptr));
}

TEST(values, keeps_two_null_references_unequal) {
    const property<object*> a;
    const property<object*> b;
    EXPECT_FALSE(a.equals(&b));
    EXPECT_FALSE(a.equals(&a));
}

TEST(values, the_three_kinds_of_32_bits_compare_with_each_other) {
    const box int_box = boxed<int>(-1);
    const box long_box = boxed<long>(-1);
    const box unsigned_box = boxed<unsigned>(4294967295U);
    for (const box* a : {&int_box, &long_box, &unsigned_box})
        for (const box* b : {&int_box, &long_box, &unsigned_box}) EXPECT_TRUE((*a)->equals(b->get()));
    const box other = boxed<unsigned>(1);
    EXPECT_FALSE(int_box->equals(other.get()));
    EXPECT_FALSE(other->equals(long_box.get()));
}

TEST(values, boxes_of_other_kinds_are_never_equal) {
    std::vector<box> all;
    all.push_back(boxed<bool>(false));
    all.push_back(boxed<short>(0));
    all.push_back(boxed<int>(0));
    all.push_back(boxed<long long>(0));
    all.push_back(boxed<double>(0.0));
    all.push_back(boxed<std::string>(""));
    all.push_back(std::make_unique<property<object*>>());
    all.push_back(std::make_unique<property<GUID>>());
    all.push_back(std::make_unique<property<id_multimap>>());
    all.push_back(std::make_unique<vector_property>());
    for (const box& a : all)
        for (const box& b : all) {
            if (a == b) continue;
            const abstract_property& one = *a;
            const abstract_property& other = *b;
            SCOPED_TRACE(std::string(typeid(one).name()) + " and " + typeid(other).name());
            EXPECT_FALSE(a->equals(b.get()));
        }
}

TEST(values, keeps_the_uneven_comparison_of_doubles) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    struct row {
        const char* why;
        double a;
        double b;
        bool same;
    };
    const row rows[] = {
        {"alike", 1.5, 1.5, true},
        {"a little apart", 1.0, 1.00000001, true},
        {"a tenth apart", 1.0, 1.1, false},
        {"b just below the limit counts as zero", 0.0, 4e-8, true},
        {"b at the limit is a number, and zero is infinitely far from it", 0.0, 5e-8, false},
        {"the same two the other way: a is not below the limit", 5e-8, 0.0, false},
        {"both near zero", 1e-9, 1e-10, true},
        {"near zero with other signs", 1e-9, -1e-9, true},
        {"a is near zero, b is not: relative", 4.9999999e-8, 5.0000000e-8, true},
        {"b is near zero, a is not: absolute", 5.0000000e-8, 4.9999999e-8, false},
        {"the quotient is of a by b: just inside", 1.0, 1 + 5.00000012e-8, true},
        {"the same two the other way: just outside", 1 + 5.00000012e-8, 1.0, false},
        {"other signs", 1.0, -1.0, false},
        {"large, a little apart", 1e20, 1.00000001e20, true},
        {"large, farther apart", 1e20, 1.0000001e20, false},
        {"zeros of both signs", 0.0, -0.0, true},
        {"a is none", nan, 1.0, false},
        {"b is none", 1.0, nan, false},
        {"none is not even equal to itself", nan, nan, false},
        {"a is none, b is zero", nan, 0.0, false},
        {"the quotient of two infinities is none", infinity, infinity, false},
        {"a is infinite", infinity, 1.0, false},
        {"b is infinite", 1.0, infinity, false},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        const property<double> b{row.b};
        EXPECT_EQ(property<double>{row.a}.equals(&b), row.same);
    }
}

TEST(values, shared_values_are_freed_with_their_last_reader) {
    EXPECT_FALSE(share(nullptr));
    EXPECT_FALSE(shared_clone(nullptr));
    EXPECT_FALSE(clone(nullptr));
    value_ptr first = share(std::make_unique<property<int>>(5));
    const value_ptr second = first;
    EXPECT_EQ(second.use_count(), 2);
    first.reset();
    EXPECT_EQ(second->to_string(), "5");
    const value_ptr copy = shared_clone(second.get());
    EXPECT_NE(copy, second);
    EXPECT_EQ(copy->to_string(), "5");
}

#if KELM_FREE_LISTS
TEST(values, boxes_come_from_the_free_lists) {
    box first = boxed<int>(1);
    const void* const memory = first.get();
    first.reset();
    const box second = boxed<int>(2);
    EXPECT_EQ(second.get(), memory);
}
#endif

TEST(values, a_pair_begins_empty) {
    const attribute_value_pair pair;
    EXPECT_EQ(pair.attribute_id, 0U);
    EXPECT_EQ(pair.value, nullptr);
    EXPECT_FALSE(pair.flag);
}

TEST(values, a_pair_frees_its_value) {
    const long before = test::counted_value::alive;
    {
        const attribute_value_pair pair{7, new test::counted_value(0), true};
        EXPECT_EQ(pair.attribute_id, 7U);
        EXPECT_TRUE(pair.flag);
        EXPECT_EQ(test::counted_value::alive, before + 1);
    }
    EXPECT_EQ(test::counted_value::alive, before);
}

TEST(values, keeps_assignment_of_a_pair_a_copy_of_the_pointer) {
    const long before = test::counted_value::alive;
    {
        attribute_value_pair from{7, new test::counted_value(0), true};
        attribute_value_pair to;
        to = from;
        EXPECT_EQ(to.attribute_id, 7U);
        EXPECT_TRUE(to.flag);
        EXPECT_EQ(to.value, from.value);
        EXPECT_EQ(test::counted_value::alive, before + 1);
        from.value = nullptr; // as its contract asks
    }
    EXPECT_EQ(test::counted_value::alive, before);
}

} // namespace
} // namespace kelm
