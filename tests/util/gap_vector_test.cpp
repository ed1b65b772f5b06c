// The list with room at both ends, against std::vector.
// Who uses it is tested through objects.
#include "util/gap_vector.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace kelm {

namespace {

std::vector<int> contents(const gap_vector<int>& of) { return {of.begin(), of.end()}; }

/// Puts in and takes out at random places, both ends more often than not.
void compare_with_vector(unsigned seed, int steps, int growth) {
    std::mt19937 random{seed};
    const auto below = [&](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>{0, n - 1}(random);
    };
    gap_vector<int> list;
    std::vector<int> model;
    for (int i = 0; i != steps; ++i) {
        const bool takes = !model.empty() && below(10) >= static_cast<std::size_t>(growth);
        const std::size_t places = takes ? model.size() : model.size() + 1;
        const std::size_t end = below(3);
        const std::size_t at = end == 0 ? 0 : end == 1 ? places - 1 : below(places);
        if (takes) {
            list.erase(at);
            model.erase(model.begin() + static_cast<std::ptrdiff_t>(at));
        } else if (at == model.size() && below(2) == 0) {
            list.push_back(i);
            model.push_back(i);
        } else {
            list.insert(at, i);
            model.insert(model.begin() + static_cast<std::ptrdiff_t>(at), i);
        }
        ASSERT_EQ(list.size(), model.size()) << "step " << i;
        ASSERT_EQ(list.empty(), model.empty());
        if (model.empty()) continue;
        ASSERT_EQ(list.front(), model.front()) << "step " << i;
        ASSERT_EQ(list.back(), model.back()) << "step " << i;
        const std::size_t somewhere = below(model.size());
        ASSERT_EQ(list[somewhere], model[somewhere]) << "step " << i;
        if (i % 16 != 0) continue;
        ASSERT_EQ(contents(list), model) << "step " << i;
    }
    EXPECT_EQ(contents(list), model);
}

} // namespace

TEST(gap_vector_test, behaves_like_a_vector_whatever_is_done_to_it) {
    for (unsigned seed = 0; seed != 40; ++seed)
        for (const int growth : {4, 5, 6, 9}) { // shrinking, level, growing slowly and fast
            SCOPED_TRACE(testing::Message() << "seed " << seed << " growth " << growth);
            compare_with_vector(seed, 600, growth);
        }
}

TEST(gap_vector_test, starts_empty_and_empties_from_either_end) {
    for (const bool from_front : {true, false}) {
        gap_vector<int> list;
        EXPECT_TRUE(list.empty());
        EXPECT_EQ(list.begin(), list.end());
        for (int i = 0; i != 9; ++i) list.push_back(i);
        while (!list.empty()) list.erase(from_front ? 0 : list.size() - 1);
        EXPECT_EQ(list.begin(), list.end());
        list.insert(0, 1);
        list.insert(0, 2);
        list.push_back(3);
        EXPECT_EQ(contents(list), (std::vector<int>{2, 1, 3}));
    }
}

TEST(gap_vector_test, can_be_cleared_and_used_again) {
    gap_vector<int> list;
    for (int i = 0; i != 9; ++i) list.insert(0, i);
    list.clear();
    EXPECT_TRUE(list.empty());
    list.push_back(7);
    EXPECT_EQ(contents(list), (std::vector<int>{7}));
}

TEST(gap_vector_test, takes_in_its_own_elements) {
    gap_vector<int> list;
    for (int i = 0; i != 8; ++i) list.push_back(i);
    for (int i = 0; i != 20; ++i) {
        list.push_back(list.front());
        list.insert(0, list.back());
        list.insert(list.size() / 2, list[1]);
        list.insert(1, list[list.size() - 1]);
    }
    EXPECT_EQ(list.size(), 88u);
    for (const int each : list) EXPECT_TRUE(each >= 0 && each < 8);
}

TEST(gap_vector_test, elements_can_be_written_in_place) {
    gap_vector<int> list;
    for (int i = 0; i != 4; ++i) list.insert(0, i);
    list[0] = 10;
    list[3] = 13;
    EXPECT_EQ(contents(list), (std::vector<int>{10, 2, 1, 13}));
}

TEST(gap_vector_test, used_as_a_queue_needs_no_more_room_than_it_holds) {
    gap_vector<int> list;
    for (int i = 0; i != 100; ++i) list.push_back(i);
    const int* lowest = &list.front();
    const int* highest = lowest;
    for (int i = 100; i != 100000; ++i) {
        list.push_back(i);
        list.erase(0);
        ASSERT_EQ(list.front(), i - 99);
        if (i < 2000) { // by then it has as much room as it will ever need
            lowest = &list.front();
            highest = lowest;
        }
        lowest = std::min(lowest, &list.front(), std::less<>{});
        highest = std::max(highest, &list.back(), std::less<>{});
    }
    EXPECT_LT(highest - lowest, 2000);
}

} // namespace kelm
