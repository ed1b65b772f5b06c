// The values of one object by id: order, growth, and who owns what.
#include "object/value_store.h"

#include "tests/support/counted_value.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kelm::test {

namespace {

std::unique_ptr<abstract_property> counted(int n) { return std::make_unique<counted_value>(n); }

std::map<u32, std::string> contents(const value_store& of) {
    std::map<u32, std::string> out;
    for (const auto& [id, value] : of) out[id] = value->to_string();
    return out;
}

} // namespace

TEST(value_store, is_empty_at_first) {
    const value_store store;
    EXPECT_TRUE(store.empty());
    EXPECT_EQ(store.size(), 0U);
    EXPECT_FALSE(store.holds(1));
    EXPECT_EQ(store.find(1), nullptr);
    EXPECT_TRUE(store.begin() == store.end());
}

// More than are scanned one by one, put in from both sides and between.
TEST(value_store, finds_each_of_many_whatever_their_order) {
    const long before = counted_value::alive;
    {
        value_store store;
        std::map<u32, std::string> expected;
        for (u32 i = 0; i != 40; ++i) {
            const u32 id = i * 17 % 41 * 3;
            EXPECT_EQ(store.exchange(id, counted(static_cast<int>(id))), nullptr);
            expected[id] = "counted " + std::to_string(id);
            EXPECT_EQ(contents(store), expected);
            EXPECT_TRUE(store.holds(id));
            EXPECT_FALSE(store.holds(id + 1));
            EXPECT_EQ(store.find(id + 1), nullptr);
        }
        EXPECT_EQ(store.size(), 40U);
        u32 last = 0;
        for (const auto& [id, value] : store) {
            EXPECT_TRUE(id == 0 || id > last);
            last = id;
        }
        for (u32 i = 0; i != 40; ++i) {
            const u32 id = i * 23 % 41 * 3;
            const auto taken = store.take(id);
            EXPECT_EQ(taken ? taken->to_string() : "none", expected.contains(id) ? expected[id] : "none");
            expected.erase(id);
            EXPECT_EQ(contents(store), expected);
        }
    }
    EXPECT_EQ(counted_value::alive, before);
}

TEST(value_store, an_exchange_gives_the_former_value_up) {
    value_store store;
    store.exchange(7, counted(1));
    const auto former = store.exchange(7, counted(2));
    ASSERT_NE(former, nullptr);
    EXPECT_EQ(former->to_string(), "counted 1");
    EXPECT_EQ(store.find(7)->to_string(), "counted 2");
    EXPECT_EQ(store.size(), 1U);
}

TEST(value_store, moves_with_all_that_it_holds) {
    const long before = counted_value::alive;
    {
        value_store former;
        former.exchange(3, counted(3));
        const abstract_property* const held = former.find(3);
        value_store latter{std::move(former)};
        EXPECT_EQ(latter.find(3), held);
        value_store third;
        third.exchange(4, counted(4));
        third = std::move(latter);
        EXPECT_EQ(third.find(3), held);
        EXPECT_FALSE(third.holds(4));
        third = {};
        EXPECT_TRUE(third.empty());
        EXPECT_EQ(counted_value::alive, before);
    }
    EXPECT_EQ(counted_value::alive, before);
}

} // namespace kelm::test
