// Text forms of the kinds, both ways.
// Names of objects as the text of references are tested with objects.
#include <kelm/property.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>

namespace kelm {
namespace {

/// Both forms of to_string(), which must agree.
std::string text(const abstract_property& value) {
    std::string into = "what was there before";
    value.to_string(into);
    EXPECT_EQ(into, value.to_string());
    return into;
}

/// Reads `from` over `before`.
template <class T>
stored_value<T> parsed(const std::string& from, stored_value<T> before = {}) {
    property<T> read{before};
    read.from_string(from);
    return read.value;
}

TEST(values_text, truth) {
    EXPECT_EQ(text(property<bool>{true}), "True");
    EXPECT_EQ(text(property<bool>{false}), "False");
    EXPECT_EQ(text(property<bool>{}), "False");
    for (const char* yes : {"True", "TRUE", "true", "tRuE"}) EXPECT_TRUE(parsed<bool>(yes)) << yes;
    for (const char* no : {"", "False", "1", "yes", "True ", " True", "Tru", "Truee"})
        EXPECT_FALSE(parsed<bool>(no, true)) << no;
    EXPECT_FALSE(parsed<bool>(std::string("True\0", 5), true)) << "a zero byte is a byte";
}

TEST(values_text, shorts) {
    EXPECT_EQ(text(property<short>{-32768}), "-32768");
    EXPECT_EQ(text(property<short>{32767}), "32767");
    EXPECT_EQ(parsed<short>("-32768"), -32768);
    EXPECT_EQ(parsed<short>("32767"), 32767);
    EXPECT_EQ(parsed<short>("32768"), -32768) << "cut to 16 bits";
    EXPECT_EQ(parsed<short>("65537"), 1) << "cut to 16 bits";
}

TEST(values_text, ints) {
    EXPECT_EQ(text(property<int>{std::numeric_limits<int>::min()}), "-2147483648");
    EXPECT_EQ(text(property<int>{0}), "0");
    EXPECT_EQ(parsed<int>("-2147483648"), std::numeric_limits<int>::min());
    EXPECT_EQ(parsed<int>("2147483647"), 2147483647);
}

TEST(values_text, longs) {
    EXPECT_EQ(text(property<long>{-2147483647 - 1}), "-2147483648");
    EXPECT_EQ(parsed<long>("2147483647"), 2147483647);
    EXPECT_EQ(parsed<long>("4294967297"), 1) << "cut to 32 bits";
}

TEST(values_text, keeps_large_unsigned_numbers_negative) {
    EXPECT_EQ(text(property<unsigned>{2147483647U}), "2147483647");
    EXPECT_EQ(text(property<unsigned>{2147483648U}), "-2147483648");
    EXPECT_EQ(text(property<unsigned>{4294967295U}), "-1");
    EXPECT_EQ(parsed<unsigned>("-1"), 4294967295U);
    EXPECT_EQ(parsed<unsigned>("4294967295"), 4294967295U);
}

TEST(values_text, long_longs) {
    EXPECT_EQ(text(property<long long>{std::numeric_limits<long long>::min()}), "-9223372036854775808");
    EXPECT_EQ(text(property<long long>{std::numeric_limits<long long>::max()}), "9223372036854775807");
    EXPECT_EQ(parsed<long long>("9223372036854775807"), std::numeric_limits<long long>::max());
}

TEST(values_text, keeps_long_longs_read_without_a_sign) {
    EXPECT_EQ(parsed<long long>("-1", 5), 0);
    EXPECT_EQ(parsed<long long>("18446744073709551615"), -1);
}

TEST(values_text, bad_texts_of_whole_numbers_read_as_far_as_they_go) {
    struct row {
        const char* text;
        int number;
    };
    const row rows[] = {{"", 0},     {"word", 0}, {"12word", 12}, {" \t\n12", 12},
                        {"+12", 12}, {"- 12", 0}, {"1.9", 1},     {"0x10", 0}};
    for (const row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(parsed<short>(row.text, 77), row.number);
        EXPECT_EQ(parsed<int>(row.text, 77), row.number);
        EXPECT_EQ(parsed<long>(row.text, 77), row.number);
        EXPECT_EQ(parsed<unsigned>(row.text, 77), static_cast<unsigned>(row.number));
    }
    EXPECT_EQ(parsed<int>(std::string("1\0002", 3)), 1) << "a zero byte ends a number";
}

TEST(values_text, doubles) {
    struct row {
        double number;
        const char* text;
    };
    const row rows[] = {
        {0, "0"},          {1, "1"},           {-1.5, "-1.5"},          {3.14159265, "3.14159"},
        {1e6, "1e+06"},    {999999, "999999"}, {0.0001, "0.0001"},      {0.00001, "1e-05"},
        {1e300, "1e+300"}, {100, "100"},       {1234567, "1.23457e+06"}};
    for (const row& row : rows) EXPECT_EQ(text(property<double>{row.number}), row.text);
    EXPECT_EQ(parsed<double>("2.5"), 2.5);
    EXPECT_EQ(parsed<double>(" -1e3x"), -1000.0);
    EXPECT_EQ(parsed<double>("2,5"), 2.0);
    EXPECT_EQ(parsed<double>("word", 7.0), 0.0);
    EXPECT_EQ(parsed<double>("", 7.0), 0.0);
}

TEST(values_text, texts_are_themselves) {
    const std::string odd("line\nzero\0quote\"\xE4", 17);
    EXPECT_EQ(text(property<std::string>{odd}), odd);
    EXPECT_EQ(parsed<std::string>(odd), odd);
    EXPECT_EQ(parsed<std::string>("", "before"), "");
}

TEST(values_text, model_ids) {
    const GUID id{0x0123ABCD, 0x4567, 0x89EF, {0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10}};
    const std::string shown = "{0123ABCD-4567-89EF-FEDC-BA9876543210}";
    EXPECT_EQ(text(property<GUID>{id}), shown);
    EXPECT_TRUE(parsed<GUID>(shown) == id);
    EXPECT_TRUE(parsed<GUID>("no id", id) == id) << "what does not parse changes nothing";
}

TEST(values_text, keeps_id_maps_without_a_text) {
    property<id_multimap> map{{{1, 2}}};
    EXPECT_EQ(text(map), "TO DO");
    map.from_string("3 4");
    EXPECT_EQ(map.value, (id_multimap{{1, 2}}));
    EXPECT_EQ(text(property<id_multimap>{}), "TO DO");
}

TEST(values_text, a_null_reference_has_an_empty_text) { EXPECT_EQ(text(property<object*>{}), ""); }

} // namespace
} // namespace kelm
