// Places of elements found by an index are those that a look at each element finds.
// Which messages ask for places is told by the tests of their records.
#include "message/element_index.h"
#include "tests/support/counted_value.h"
#include "tests/support/world.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kelm::test {
namespace {

template <class T>
void add(std::vector<std::unique_ptr<abstract_property>>& to, std::initializer_list<T> values) {
    for (const T& each : values) to.push_back(std::make_unique<property<T>>(each));
}

class element_index_places : public world {
protected:
    using values = std::vector<std::unique_ptr<abstract_property>>;

    element_index_places() { counted_value::enter(); }

    /// Values of all kinds; some equal values of another kind, some have a text that one of another kind has.
    values of_every_kind() {
        values out;
        add<int>(out, {0, 1, 1, -1, std::numeric_limits<int>::min()});
        add<unsigned>(out, {1U, 0xFFFFFFFFU, 0x80000000U, 7U});
        add<long>(out, {7L, -1L, 1L});
        add<long long>(out, {1LL, -1LL, 7LL, 0xFFFFFFFFLL});
        add<short>(out, {short{1}, short{-1}, short{7}});
        add<bool>(out, {true, false});
        add<double>(out, {1.0, 1.0 + 4e-8, 1.0 + 8e-8, 1.0 + 12e-8, 0.0, 4e-8, -4e-8, 6e-8,
                          std::numeric_limits<double>::quiet_NaN(), 7.0});
        add<std::string>(out, {"", "1", "i1", "true", std::string{"1\0", 2}, "\xFF"});
        add<object*>(out, {nullptr, a, b, a, root});
        for (const int each : {1, 1, 2}) out.push_back(std::make_unique<counted_value>(each));
        add_lists(out);
        return out;
    }
    void add_lists(values& to) const {
        const std::vector<std::vector<int>> lists{{}, {1}, {1, 2}, {2, 1}, {1}};
        for (const auto& numbers : lists) {
            auto list = std::make_unique<vector_property>();
            for (const int each : numbers) list->elements.push_back(new property<int>{each});
            to.push_back(std::move(list));
        }
        auto holey = std::make_unique<vector_property>();
        holey->elements = {nullptr, new property<int>{1}};
        to.push_back(std::move(holey));
    }

    static std::string said(const abstract_property& value, std::size_t at) {
        return std::string{typeid(value).name()} + " " + value.to_string() + ", value " + std::to_string(at);
    }
    static void expect_same_places(element_index& index, const vector_property& list, const values& asked) {
        for (std::size_t i = 0; i != asked.size(); ++i)
            EXPECT_EQ(index.position(list, *asked[i]), element_position(list, *asked[i]))
                << said(*asked[i], i);
    }

    object* a = thing("a");
    object* b = thing("b");
};

TEST_F(element_index_places, are_those_of_a_search_in_mixed_lists) {
    const values all = of_every_kind();
    struct {
        const char* why;
        std::size_t first;
        std::size_t step;
    } const rows[] = {
        {"everything", 0, 1}, {"nothing", all.size(), 1}, {"every second", 0, 2},
        {"the others", 1, 2}, {"a third", 0, 3},          {"a third", 1, 3},
        {"a third", 2, 3},    {"one", all.size() - 1, 1}, {"from the end", 0, all.size() - 1},
    };
    for (const bool backward : {false, true})
        for (const auto& row : rows) {
            SCOPED_TRACE(row.why);
            SCOPED_TRACE(backward ? "backward" : "forward");
            vector_property list;
            for (std::size_t i = row.first; i < all.size(); i += row.step) {
                list.elements.push_back(all[backward ? all.size() - 1 - i : i]->clone());
                if (i % 5 == 0) list.elements.push_back(nullptr);
            }
            element_index index;
            expect_same_places(index, list, all);
            expect_same_places(index, list, all); // once more, now that all is known
        }
}

TEST_F(element_index_places, are_those_of_the_list_that_is_asked_about) {
    const values all = of_every_kind();
    vector_property upward;
    vector_property downward;
    for (const auto& each : all) {
        upward.elements.push_back(each->clone());
        downward.elements.insert(downward.elements.begin(), each->clone());
    }
    element_index index;
    expect_same_places(index, upward, all);
    expect_same_places(index, downward, all);
    expect_same_places(index, upward, all);
}

TEST_F(element_index_places, cross_the_kinds_of_32_bits_and_no_others) {
    vector_property list;
    list.elements = {new property<short>{1},         new property<long long>{1}, new property<bool>{true},
                     new property<std::string>{"1"}, new property<long>{1},      new property<int>{1}};
    element_index index;
    EXPECT_EQ(index.position(list, property<unsigned>{1}), 4U);
    EXPECT_EQ(index.position(list, property<int>{1}), 4U);
    EXPECT_EQ(index.position(list, property<long long>{1}), 1U);
    EXPECT_EQ(index.position(list, property<double>{1}), npos32);
    EXPECT_EQ(index.position(list, property<object*>{nullptr}), npos32);
}

} // namespace
} // namespace kelm::test
