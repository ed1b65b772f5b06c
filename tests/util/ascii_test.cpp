// Classification, folding and case-blind order of single bytes and texts.
// The C library serves as reference only under its "C" locale, which these tests never leave.
#include "util/ascii.h"

#include <gtest/gtest.h>

#include <cctype>
#include <random>
#include <string>
#include <string_view>
#include <strings.h>

namespace {

using namespace std::string_view_literals;

int sign(int number) { return (number > 0) - (number < 0); }

static_assert(kelm::is_space(' ') && !kelm::is_space('a'));
static_assert(kelm::to_upper('a') == 'A' && kelm::to_lower('Z') == 'z');

TEST(ascii, classes_and_folding_agree_with_the_c_locale_for_all_256_bytes) {
    for (int byte = 0; byte < 256; ++byte) {
        SCOPED_TRACE(byte);
        const char c = static_cast<char>(byte);
        EXPECT_EQ(kelm::is_space(c), std::isspace(byte) != 0);
        EXPECT_EQ(kelm::is_digit(c), std::isdigit(byte) != 0);
        EXPECT_EQ(kelm::is_alpha(c), std::isalpha(byte) != 0);
        EXPECT_EQ(kelm::is_alnum(c), std::isalnum(byte) != 0);
        EXPECT_EQ(kelm::to_upper(c), static_cast<char>(std::toupper(byte)));
        EXPECT_EQ(kelm::to_lower(c), static_cast<char>(std::tolower(byte)));
    }
}

TEST(ascii, case_blind_order_is_that_of_c_strings) {
    const struct {
        const char* why;
        std::string_view a, b;
        int order;
    } rows[] = {
        {"two empty texts are equal", "", "", 0},
        {"the empty text comes first", "", "a", -1},
        {"case does not count", "TaBlE", "tAbLe", 0},
        {"a prefix comes first", "tab", "TABLE", -1},
        {"letters go by the alphabet", "b", "A", 1},
        {"letters fold down, so the underscore is before them", "_", "A", -1},
        {"the character behind Z stays before a", "[", "a", -1},
        {"the character before A is not folded", "@", "`", -1},
        {"bytes from 0x80 come after ASCII", "\x80", "z", 1},
        {"bytes from 0x80 are not folded", "\xC4", "\xE4", -1},
        {"a zero byte ends the text", "a\0b"sv, "A\0c"sv, 0},
        {"a zero byte is as good as the end", "a\0b"sv, "a", 0},
        {"a zero byte comes before everything else", "a\0b"sv, "a\x01", -1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(sign(kelm::compare_no_case(row.a, row.b)), row.order);
        EXPECT_EQ(sign(kelm::compare_no_case(row.b, row.a)), -row.order);
        EXPECT_EQ(kelm::equal_no_case(row.a, row.b), row.order == 0);
        EXPECT_EQ(kelm::less_no_case(row.a, row.b), row.order < 0);
        EXPECT_EQ(kelm::less_no_case(row.b, row.a), row.order > 0);
    }
}

TEST(ascii, a_view_ends_at_its_size_without_a_terminator) {
    const std::string text = "abcX";
    EXPECT_TRUE(kelm::equal_no_case(std::string_view(text).substr(0, 3), "ABC"));
    EXPECT_FALSE(kelm::equal_no_case(text, "ABC"));
}

TEST(ascii, same_bytes_takes_zero_bytes_as_bytes) {
    EXPECT_TRUE(kelm::same_bytes_no_case("", ""));
    EXPECT_TRUE(kelm::same_bytes_no_case("a\0B"sv, "A\0b"sv));
    EXPECT_FALSE(kelm::same_bytes_no_case("a\0b"sv, "a\0c"sv));
    EXPECT_FALSE(kelm::same_bytes_no_case("a\0"sv, "a"));
    EXPECT_FALSE(kelm::same_bytes_no_case("ab", "abc"));
    EXPECT_FALSE(kelm::same_bytes_no_case("\xC4", "\xE4"));
}

TEST(ascii, random_texts_are_ordered_as_the_c_library_orders_them) {
    constexpr unsigned seed = 20240611;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    constexpr std::string_view letters = "aAbBzZ_[@\x7F\x80\xC4\xE4\xFF\0"sv;
    const auto text = [&] {
        std::string made(random() % 5, ' ');
        for (char& c : made) c = letters[random() % letters.size()];
        return made;
    };
    for (int round = 0; round < 20000; ++round) {
        const std::string a = text();
        const std::string b = text();
        ASSERT_EQ(sign(kelm::compare_no_case(a, b)), sign(::strcasecmp(a.c_str(), b.c_str())))
            << testing::PrintToString(a) << " and " << testing::PrintToString(b);
    }
}

} // namespace
