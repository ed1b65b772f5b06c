// The sorted list of those who point at an object.
// Who enters and leaves it, and when, is told by the tests of references and of bases.
#include "object/back_links.h"

#include "object/object_impl.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace kelm::test {

namespace {

/// Addresses in order, as the list never looks behind them.
struct back_links_test : testing::Test {
    object_impl* at(std::size_t place) { return reinterpret_cast<object_impl*>(&room[place]); }
    std::vector<object_impl*> listed() const { return list.copy(); }

    std::max_align_t room[4];
    back_links list;
};

} // namespace

TEST_F(back_links_test, is_sorted_by_address_with_an_entry_for_each_link) {
    for (const std::size_t place : {2u, 0u, 3u, 0u, 1u}) list.add(at(place));
    EXPECT_EQ(listed(), (std::vector{at(0), at(0), at(1), at(2), at(3)}));
    list.remove(at(0));
    EXPECT_EQ(listed(), (std::vector{at(0), at(1), at(2), at(3)}));
    EXPECT_TRUE(list.holds(at(0)));
    list.remove(at(0));
    EXPECT_FALSE(list.holds(at(0)));
    list.remove(at(0));
    EXPECT_EQ(listed(), (std::vector{at(1), at(2), at(3)})) << "what is not there is not removed";
}

TEST_F(back_links_test, keeps_striking_off_by_place_when_the_member_is_not_there) {
    for (const std::size_t place : {0u, 2u}) list.add(at(place));
    list.remove_member(at(3));
    EXPECT_EQ(listed(), (std::vector{at(0), at(2)})) << "behind the last there is nobody";
    list.remove_member(at(1));
    EXPECT_EQ(listed(), std::vector{at(0)}) << "the next one goes";
    list.remove_member(at(0));
    EXPECT_TRUE(list.empty());
}

} // namespace kelm::test
