// Rules by key: clones, replacing, order, and rules that change the map they are in.
// What rules are asked is told where they are used.
#include "util/rule_map.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace kelm {
namespace {

/// Counts its copies, and may give none.
struct counted_rule {
    counted_rule(int number, int& alive) : number_(number), alive_(alive) { ++alive_; }
    counted_rule(const counted_rule& other)
        : number_(other.number_),
          alive_(other.alive_),
          gives_clones(other.gives_clones),
          on_call(other.on_call) {
        ++alive_;
    }
    counted_rule& operator=(const counted_rule&) = delete;
    ~counted_rule() { --alive_; }
    counted_rule* clone() const { return gives_clones ? new counted_rule(*this) : nullptr; }
    int number() const { return number_; }

private:
    int number_;
    int& alive_;

public:
    bool gives_clones = true;
    std::function<void()> on_call;
};

class rule_map_test : public testing::Test {
protected:
    counted_rule rule(int number) { return {number, alive}; }
    counted_rule without_clones(int number) {
        counted_rule made = rule(number);
        made.gives_clones = false;
        return made;
    }
    /// \returns "key=number" of all, in the order of setting
    std::string all() const {
        std::string out;
        for (const auto& each : map.in_order_of_setting())
            out += (out.empty() ? "" : " ") + std::to_string(each.key) + "=" +
                   std::to_string(each.rule->number());
        return out;
    }

    int alive = 0;
    rule_map<int, counted_rule> map;
};

TEST_F(rule_map_test, has_nothing_at_first) {
    EXPECT_EQ(map.of(1), nullptr);
    EXPECT_FALSE(map.holds(1));
    EXPECT_EQ(all(), "");
}

TEST_F(rule_map_test, has_a_clone_for_a_key) {
    {
        const counted_rule given = rule(7);
        map.set(1, given);
        EXPECT_NE(map.of(1).get(), &given);
    }
    EXPECT_EQ(alive, 1);
    ASSERT_TRUE(map.holds(1));
    EXPECT_EQ(map.of(1)->number(), 7);
    EXPECT_EQ(map.of(2), nullptr);
    EXPECT_FALSE(map.holds(2));
}

TEST_F(rule_map_test, frees_all_that_it_keeps) {
    {
        rule_map<int, counted_rule> other;
        for (const int key : {1, 2, 3}) other.set(key, rule(key));
        EXPECT_EQ(alive, 3);
    }
    EXPECT_EQ(alive, 0);
}

TEST_F(rule_map_test, replaces_the_rule_of_a_key) {
    map.set(1, rule(7));
    map.set(1, rule(8));
    EXPECT_EQ(all(), "1=8");
    EXPECT_EQ(alive, 1);
}

TEST_F(rule_map_test, takes_a_rule_that_it_holds_itself) {
    map.set(1, rule(7));
    map.set(1, *map.of(1));
    map.set(2, *map.of(1));
    EXPECT_EQ(all(), "1=7 2=7");
    EXPECT_EQ(alive, 2);
}

TEST_F(rule_map_test, counts_a_rule_without_a_clone_as_none) {
    map.set(1, without_clones(7));
    EXPECT_FALSE(map.holds(1));
    EXPECT_EQ(map.of(1), nullptr);
    EXPECT_EQ(all(), "");
}

TEST_F(rule_map_test, loses_the_former_rule_to_one_without_a_clone) {
    map.set(1, rule(7));
    map.set(2, rule(8));
    map.set(1, without_clones(9));
    EXPECT_FALSE(map.holds(1));
    EXPECT_EQ(all(), "2=8");
    EXPECT_EQ(alive, 1);
}

TEST_F(rule_map_test, lists_them_in_the_order_of_setting) {
    map.set(3, rule(1));
    map.set(1, rule(2));
    map.set(2, rule(3));
    EXPECT_EQ(all(), "3=1 1=2 2=3");
    map.set(3, rule(4));
    EXPECT_EQ(all(), "1=2 2=3 3=4") << "one that is set again goes last";
    map.set(1, without_clones(5));
    map.set(1, rule(6));
    EXPECT_EQ(all(), "2=3 3=4 1=6");
}

TEST_F(rule_map_test, lets_a_rule_live_that_replaces_itself) {
    counted_rule first = rule(1);
    first.on_call = [&] {
        map.set(1, rule(2));
        EXPECT_EQ(alive, 3) << "the given one, the one that runs, and the new one";
    };
    map.set(1, first);
    {
        const std::shared_ptr<counted_rule> running = map.of(1);
        running->on_call();
        EXPECT_EQ(running->number(), 1);
        EXPECT_EQ(map.of(1)->number(), 2);
    }
    EXPECT_EQ(alive, 2) << "it goes when nobody uses it any more";
}

TEST_F(rule_map_test, lists_what_was_there_however_it_changes_meanwhile) {
    for (const int key : {1, 2, 3}) map.set(key, rule(key));
    std::string seen;
    for (const auto& each : map.in_order_of_setting()) {
        map.set(3, rule(9));
        map.set(2, without_clones(0));
        seen += std::to_string(each.rule->number());
    }
    EXPECT_EQ(seen, "123");
    EXPECT_EQ(all(), "1=1 3=9");
}

} // namespace
} // namespace kelm
