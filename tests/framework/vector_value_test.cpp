// The kind that is a list: ownership, comparison, merging, text, and streams of every sort of corruption.
// Vectors of an object, changed in place, are tested with objects.
#include "framework/data_types.h"
#include "tests/support/counted_value.h"
#include "tests/support/unregistered_value.h"
#include "util/bytes.h"

#include <kelm/property.h>

#include <gtest/gtest.h>

#include <memory>
#include <sstream>

namespace kelm {
namespace {

using box = std::unique_ptr<abstract_property>;

class vector_value : public testing::Test {
protected:
    static void SetUpTestSuite() { data_types::register_built_in_data_types(); }

    static void fill(vector_property& list, std::initializer_list<int> numbers) {
        for (const int number : numbers) list.elements.push_back(new property<int>(number));
    }

    /// The bytes of a list; a failure is the caller's to look for.
    static std::string bytes_of(const abstract_property& value) {
        std::ostringstream out;
        value.write(out);
        return out.str();
    }

    /// Reads `bytes` into `list`.  \returns whether the stream is still good
    bool read(const std::string& bytes, vector_property& list) {
        std::istringstream in(bytes);
        list.read(in, references_, nullptr);
        return in.good();
    }

    static std::string number(u32 value) {
        std::ostringstream out;
        put_u32(out, value);
        return out.str();
    }

    /// Vectors with one element each, `levels` deep, the innermost empty.
    static std::string nested_bytes(int levels) {
        std::string bytes;
        for (int i = 1; i != levels; ++i) bytes += number(1) + number(data_type::vector);
        return bytes + number(0);
    }

    std::vector<reference_record> references_;
};

TEST_F(vector_value, frees_its_elements) {
    const long before = test::counted_value::alive;
    {
        vector_property list;
        list.elements = {new test::counted_value(0), nullptr, new test::counted_value(0)};
        EXPECT_EQ(test::counted_value::alive, before + 2);
    }
    EXPECT_EQ(test::counted_value::alive, before);
}

TEST_F(vector_value, clones_are_deep_and_keep_order_and_nulls) {
    vector_property list;
    auto* const inner = new vector_property;
    fill(*inner, {5});
    list.elements = {new property<int>(1), nullptr, inner, new property<std::string>("x")};
    const box copy{list.clone()};
    auto& copied = dynamic_cast<vector_property&>(*copy);
    ASSERT_EQ(copied.elements.size(), 4U);
    EXPECT_EQ(copied.elements[1], nullptr);
    for (const std::size_t i : {0U, 2U, 3U}) {
        EXPECT_NE(copied.elements[i], list.elements[i]);
        EXPECT_TRUE(copied.elements[i]->equals(list.elements[i]));
    }
    dynamic_cast<property<int>&>(*inner->elements[0]).value = 6;
    EXPECT_EQ(copied.elements[2]->to_string(), "5");
}

TEST_F(vector_value, equality_is_element_by_element_in_order) {
    struct row {
        const char* why;
        std::initializer_list<int> a;
        std::initializer_list<int> b;
        bool same;
    };
    const row rows[] = {{"both empty", {}, {}, true},
                        {"alike", {1, 2}, {1, 2}, true},
                        {"another order", {1, 2}, {2, 1}, false},
                        {"one more", {1, 2}, {1, 2, 3}, false},
                        {"empty and not", {}, {1}, false},
                        {"another element", {1, 2}, {1, 3}, false}};
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        vector_property a;
        vector_property b;
        fill(a, row.a);
        fill(b, row.b);
        EXPECT_EQ(a.equals(&b), row.same);
        EXPECT_EQ(b.equals(&a), row.same);
    }
}

TEST_F(vector_value, a_list_equals_neither_null_nor_another_kind) {
    const vector_property list;
    const property<std::string> text;
    EXPECT_FALSE(list.equals(nullptr));
    EXPECT_FALSE(list.equals(&text));
}

TEST_F(vector_value, null_elements_equal_nothing) {
    vector_property with_null;
    with_null.elements = {nullptr};
    vector_property also_null;
    also_null.elements = {nullptr};
    vector_property with_number;
    fill(with_number, {0});
    EXPECT_FALSE(with_null.equals(&also_null));
    EXPECT_FALSE(with_null.equals(&with_number));
    EXPECT_FALSE(with_number.equals(&with_null));
}

TEST_F(vector_value, elements_compare_by_their_own_rules) {
    vector_property a;
    a.elements = {new property<double>(0.0), new property<int>(3)};
    vector_property b;
    b.elements = {new property<double>(4e-8), new property<long>(3)};
    EXPECT_TRUE(a.equals(&b));
}

TEST_F(vector_value, merging_takes_the_other_elements_over) {
    vector_property list;
    vector_property other;
    fill(list, {1, 2});
    fill(other, {3, 4});
    const std::vector<abstract_property*> expected{list.elements[0], list.elements[1], other.elements[0],
                                                   other.elements[1]};
    list.merge(&other);
    EXPECT_EQ(list.elements, expected) << "the very pointers, not clones";
    EXPECT_TRUE(other.elements.empty());
}

TEST_F(vector_value, merging_moves_an_element_that_is_here_already_to_the_end) {
    vector_property list;
    vector_property other;
    fill(list, {1, 2, 3});
    const std::vector<abstract_property*> before = list.elements;
    other.elements = {new property<int>(4), before[0], before[1]};
    list.merge(&other);
    EXPECT_EQ(list.to_string(), "3, 4, 1, 2");
    EXPECT_TRUE(other.elements.empty());
}

TEST_F(vector_value, merging_keeps_the_last_place_of_an_element_named_twice) {
    vector_property list;
    vector_property other;
    auto* const twice = new property<int>(9);
    other.elements = {twice, new property<int>(8), twice};
    list.merge(&other);
    EXPECT_EQ(list.to_string(), "8, 9");
}

TEST_F(vector_value, merging_with_nothing_to_take_does_nothing) {
    vector_property list;
    fill(list, {1, 2});
    property<int> number{3};
    list.merge(nullptr);
    list.merge(&number);
    list.merge(&list);
    EXPECT_EQ(list.to_string(), "1, 2");
}

TEST_F(vector_value, merging_long_lists_is_not_quadratic) {
    vector_property list;
    vector_property other;
    for (int i = 0; i != 200000; ++i) {
        list.elements.push_back(new property<int>(i));
        other.elements.push_back(new property<int>(i));
    }
    list.merge(&other);
    EXPECT_EQ(list.elements.size(), 400000U);
}

TEST_F(vector_value, text_joins_the_elements) {
    vector_property list;
    EXPECT_EQ(list.to_string(), "");
    fill(list, {1, 2});
    EXPECT_EQ(list.to_string(), "1, 2");
    list.elements.push_back(nullptr);
    list.elements.push_back(new property<std::string>("x"));
    EXPECT_EQ(list.to_string(), "1, 2, , x") << "a null element has an empty text";
    std::string into = "before";
    list.to_string(into);
    EXPECT_EQ(into, "1, 2, , x");
}

TEST_F(vector_value, text_is_read_with_a_code_for_each_element) {
    struct row {
        const char* why;
        std::string text;
        std::string read;
        std::size_t count;
    };
    const row rows[] = {
        {"two numbers", "[1|4][2|4]", "1, 2", 2},
        {"several kinds", "[7|4][abc|6][true|2]", "7, abc, True", 3},
        {"no text", "", "", 0},
        {"one field", "[4]", "", 0},
        {"three fields", "[1|4|4]", "", 0},
        {"an unknown code", "[1|99][2|4]", "2", 1},
        {"a code that is no number", "[1|x][2|4]", "2", 1},
        {"a negative code", "[1|-4]", "", 0},
        {"an empty first field is no field", "[|4]", "", 0},
        {"no brackets needed around one", "1|4", "1", 1},
        {"any bracket parts", "1|4]2|4[3|4", "1, 2, 3", 3},
        {"white space around fields", "[ 1 | 4 ] [2|4]", "1, 2", 2},
        {"what it prints itself", "1, 2", "", 0},
        {"a bad number is 0", "[x|4]", "0", 1},
        {"a vector as an element finds no elements in one field", "[1|1]", "", 1},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        vector_property list;
        list.from_string(row.text);
        EXPECT_EQ(list.to_string(), row.read);
        EXPECT_EQ(list.elements.size(), row.count);
    }
}

TEST_F(vector_value, text_gives_elements_of_the_kind_of_their_code) {
    vector_property list;
    list.from_string("[1|4][2|4]");
    vector_property expected;
    fill(expected, {1, 2});
    EXPECT_TRUE(list.equals(&expected));
    list.elements.push_back(new property<int>(3)); // and owns them as it does others
}

TEST_F(vector_value, keeps_former_elements_undeleted_when_set_from_text) {
    vector_property list;
    const long before = test::counted_value::alive;
    auto* const former = new test::counted_value(0);
    list.elements = {former};
    list.from_string("[1|4]");
    EXPECT_EQ(list.to_string(), "1");
    EXPECT_EQ(test::counted_value::alive, before + 1) << "it is the caller's now";
    delete former;
}

TEST_F(vector_value, binary_form_is_count_codes_and_values) {
    vector_property list;
    EXPECT_EQ(bytes_of(list), number(0));
    list.elements = {new property<bool>(true), new property<std::string>("ab"), new property<long>(-1)};
    EXPECT_EQ(bytes_of(list),
              number(3) + number(2) + "\x01" + number(6) + number(2) + "ab" + number(5) + number(0xFFFFFFFF));
}

TEST_F(vector_value, an_unsigned_element_is_written_as_an_integer) {
    vector_property list;
    list.elements = {new property<unsigned>(4294967295U)};
    EXPECT_EQ(bytes_of(list), number(1) + number(4) + number(0xFFFFFFFF));
}

TEST_F(vector_value, every_kind_is_read_back_as_an_element) {
    vector_property list;
    auto* const inner = new vector_property;
    fill(*inner, {1, 2});
    list.elements = {inner,
                     new property<bool>(true),
                     new property<short>(-3),
                     new property<int>(4),
                     new property<long>(5),
                     new property<std::string>("six"),
                     new property<double>(7.5),
                     new property<long long>(1LL << 40),
                     new property<GUID>(GUID{1, 2, 3, {4}}),
                     new property<id_multimap>};
    vector_property again;
    fill(again, {77});
    EXPECT_TRUE(read(bytes_of(list), again));
    EXPECT_TRUE(again.equals(&list)) << again.to_string();
    EXPECT_EQ(bytes_of(again), bytes_of(list));
}

TEST_F(vector_value, references_inside_leave_records_in_order) {
    const std::string bytes =
        number(2) + number(8) + number(7) + number(1) + number(1) + number(8) + number(npos32);
    vector_property list;
    EXPECT_TRUE(read(bytes, list));
    ASSERT_EQ(references_.size(), 2U);
    ASSERT_EQ(list.elements.size(), 2U);
    EXPECT_EQ(references_[0].value, list.elements[0]);
    EXPECT_EQ(references_[0].target_id, 7U);
    EXPECT_EQ(references_[1].value, dynamic_cast<vector_property&>(*list.elements[1]).elements.at(0));
    EXPECT_EQ(references_[1].target_id, npos32);
}

TEST_F(vector_value, what_could_not_be_read_back_is_not_written) {
    for (abstract_property* const element : {static_cast<abstract_property*>(nullptr),
                                             static_cast<abstract_property*>(new test::unregistered_value)}) {
        SCOPED_TRACE(element ? "a kind without a code" : "null");
        vector_property list;
        list.elements = {new property<int>(1), element, new property<int>(2)};
        std::ostringstream out;
        list.write(out);
        EXPECT_TRUE(out.fail());
        EXPECT_EQ(out.str(), number(3) + number(4) + number(1)) << "and writing stops there";
    }
}

TEST_F(vector_value, a_stream_cut_at_any_byte_fails) {
    vector_property list;
    auto* const inner = new vector_property;
    inner->elements = {new property<object*>, new property<std::string>("inside")};
    list.elements = {new property<int>(1), inner, new property<object*>, new property<double>(1)};
    const std::string whole = bytes_of(list);
    vector_property again;
    EXPECT_TRUE(read(whole, again));
    for (std::size_t length = 0; length != whole.size(); ++length) {
        SCOPED_TRACE(length);
        references_.clear();
        vector_property cut;
        EXPECT_FALSE(read(whole.substr(0, length), cut));
        // Records stay good as long as the list does, however far it was read.
        for (const reference_record& record : references_) EXPECT_EQ(record.value->value, nullptr);
    }
}

TEST_F(vector_value, a_hostile_count_takes_no_more_than_what_is_there) {
    vector_property list;
    EXPECT_FALSE(read(number(0xFFFFFFFF), list));
    EXPECT_TRUE(list.elements.empty());
    EXPECT_FALSE(read(number(0xFFFFFFFF) + number(4) + number(9), list));
    EXPECT_EQ(list.to_string(), "9");
    EXPECT_LE(list.elements.capacity(), 16U);
}

TEST_F(vector_value, an_unknown_code_fails_the_stream) {
    for (const u32 code : {0U, 9U, 1000U, 1004U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(code);
        vector_property list;
        EXPECT_FALSE(
            read(number(3) + number(4) + number(1) + number(code) + number(0) + number(4) + number(2), list));
        EXPECT_EQ(list.to_string(), "1") << "nothing behind it is read";
    }
}

TEST_F(vector_value, a_failed_stream_is_not_read) {
    std::istringstream in(number(1) + number(4) + number(1));
    in.setstate(std::ios_base::failbit);
    vector_property list;
    list.read(in, references_, nullptr);
    EXPECT_TRUE(list.elements.empty());
}

TEST_F(vector_value, a_thousand_levels_are_read_and_no_more) {
    vector_property deep;
    EXPECT_TRUE(read(nested_bytes(1000), deep));
    EXPECT_EQ(bytes_of(deep), nested_bytes(1000));
    vector_property too_deep;
    EXPECT_FALSE(read(nested_bytes(1001), too_deep));
    EXPECT_FALSE(read(nested_bytes(1000000), too_deep));
}

TEST_F(vector_value, levels_count_by_depth_and_not_by_number) {
    std::string bytes = number(5000);
    for (int i = 0; i != 5000; ++i) bytes += number(data_type::vector) + number(0);
    vector_property wide;
    EXPECT_TRUE(read(bytes, wide));
    EXPECT_EQ(wide.elements.size(), 5000U);
}

TEST_F(vector_value, what_is_too_deep_to_be_read_is_not_written) {
    vector_property deep;
    ASSERT_TRUE(read(nested_bytes(1000), deep));
    vector_property deeper;
    deeper.elements = {deep.clone()};
    std::ostringstream out;
    deeper.write(out);
    EXPECT_TRUE(out.fail());
}

} // namespace
} // namespace kelm
