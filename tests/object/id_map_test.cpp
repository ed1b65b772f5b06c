// The table of objects by id.
// That models keep it in step is object_state_test.
#include "object/id_map.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace kelm {

namespace {

/// An address to put into the map, which never looks behind it.
object_impl* object_number(std::size_t n) {
    static char places[64];
    return reinterpret_cast<object_impl*>(&places[n]);
}

std::map<u32, object_impl*> contents(const id_map& of) {
    std::map<u32, object_impl*> out;
    u32 before = 0;
    of.for_each([&](u32 id, object_impl* what) {
        EXPECT_TRUE(out.empty() || id > before) << id;
        before = id;
        EXPECT_TRUE(out.emplace(id, what).second) << id;
    });
    return out;
}

} // namespace

TEST(id_map_test, finds_what_was_entered_and_nothing_else) {
    id_map map;
    EXPECT_EQ(map.size(), 0u);
    EXPECT_EQ(map.find(0), nullptr);
    EXPECT_EQ(map.find(0xFFFFFFFF), nullptr);
    const std::vector<u32> ids{0,        1,          1023,       1024,       0xFFFFF,
                               0x100000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
    std::map<u32, object_impl*> expected;
    for (const u32 id : ids) {
        object_impl* const what = object_number(expected.size());
        EXPECT_TRUE(map.enter(id, what));
        expected[id] = what;
    }
    EXPECT_EQ(map.size(), ids.size());
    for (const auto& [id, what] : expected) EXPECT_EQ(map.find(id), what) << id;
    for (const u32 stranger : {2u, 1022u, 1025u, 0x100001u, 0xFFFFFFFDu})
        EXPECT_EQ(map.find(stranger), nullptr);
    EXPECT_EQ(contents(map), expected);
}

TEST(id_map_test, keeps_the_first_of_two_with_one_id) {
    id_map map;
    EXPECT_TRUE(map.enter(7, object_number(1)));
    EXPECT_FALSE(map.enter(7, object_number(2)));
    EXPECT_EQ(map.find(7), object_number(1));
    EXPECT_EQ(map.size(), 1u);
}

TEST(id_map_test, lets_go_of_the_very_object_alone) {
    id_map map;
    map.enter(7, object_number(1));
    map.leave(7, object_number(2));
    map.leave(8, object_number(1));
    map.leave(8, nullptr);
    map.leave(0xFFFFFFFF, object_number(1));
    EXPECT_EQ(map.find(7), object_number(1));
    EXPECT_EQ(map.size(), 1u);
    map.leave(7, object_number(1));
    map.leave(7, object_number(1));
    EXPECT_EQ(map.find(7), nullptr);
    EXPECT_EQ(map.size(), 0u);
    EXPECT_TRUE(map.enter(7, object_number(2))); // ids come back
}

TEST(id_map_test, may_lose_entries_while_it_is_walked) {
    id_map map;
    for (u32 id = 0; id != 3000; ++id) map.enter(id, object_number(id % 64));
    std::size_t visits = 0;
    map.for_each([&](u32 id, object_impl* what) {
        ++visits;
        map.leave(id, what);
        map.leave(id + 1, map.find(id + 1));
    });
    EXPECT_EQ(visits, 1500u);
    EXPECT_EQ(map.size(), 0u);
}

// A stream may ask for any ids: what they cost must not exceed by far what it took to ask.
TEST(id_map_test, takes_ids_that_are_far_apart_and_the_dense_ones_that_reach_them) {
    id_map map;
    std::map<u32, object_impl*> expected;
    const auto enter = [&](u32 id) {
        ASSERT_EQ(map.enter(id, object_number(id % 7)), expected.emplace(id, object_number(id % 7)).second);
    };
    for (u32 i = 0; i != 2000; ++i) enter(i * 5000 + 5);
    EXPECT_EQ(contents(map), expected);
    for (u32 id = 0; id != 30000; ++id) enter(id); // the pages grow over some of those before
    EXPECT_EQ(contents(map), expected);
    for (const auto& [id, what] : expected) ASSERT_EQ(map.find(id), what) << id;
    for (const u32 id : {5u, 20005u, 25005u, 5000005u}) {
        map.leave(id, expected[id]);
        ASSERT_EQ(map.find(id), nullptr) << id;
        ASSERT_TRUE(map.enter(id, expected[id])) << id;
    }
    EXPECT_EQ(contents(map), expected);
}

TEST(id_map_test, id_that_comes_back_while_the_map_is_walked_keeps_its_place) {
    id_map map;
    for (const u32 id : {7u, 4000000u, 4000001u, 4100000u}) map.enter(id, object_number(id % 7));
    std::vector<u32> visited;
    map.for_each([&](u32 id, object_impl* what) {
        visited.push_back(id);
        map.leave(id, what);
        EXPECT_TRUE(map.enter(id, what));
    });
    EXPECT_EQ(visited, (std::vector<u32>{7, 4000000, 4000001, 4100000}));
}

TEST(id_map_test, behaves_like_an_ordered_map) {
    std::mt19937 random{5};
    id_map map;
    std::map<u32, object_impl*> expected;
    for (int i = 0; i != 20000; ++i) {
        const u32 spread = std::uniform_int_distribution<u32>{0, 2}(random);
        const u32 id = std::uniform_int_distribution<u32>{0, 300}(random) << (spread * 9);
        object_impl* const what = object_number(id % 7);
        if (std::uniform_int_distribution<int>{0, 1}(random) == 0) {
            ASSERT_EQ(map.enter(id, what), expected.emplace(id, what).second);
        } else {
            map.leave(id, what);
            expected.erase(id);
        }
        ASSERT_EQ(map.size(), expected.size());
    }
    EXPECT_EQ(contents(map), expected);
}

} // namespace kelm
