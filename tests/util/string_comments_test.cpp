// The string helpers that remove comments.
// A slow, literal reading of the rules serves as reference for random text.
#include <kelm/string_helpers.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

namespace {

using namespace std::string_literals;

constexpr auto not_found = static_cast<std::size_t>(-1);

struct row {
    const char* why;
    std::string before, after;
};

std::string without_lines(std::string s) {
    kelm::strip_hyphen_comments(s);
    return s;
}

std::string without_comments(std::string s) {
    kelm::str_strip_comments(s);
    return s;
}

/// Takes out one line comment after the other, each time looking from the start.
std::string literal_without_lines(std::string s) {
    for (;;) {
        const std::size_t from = s.find("--");
        if (from == not_found) return s;
        std::size_t end = from + 2;
        while (end < s.size() && s[end] != '\n' && s[end] != '\r') ++end;
        if (end == s.size()) return s;
        end += s.compare(end, 2, "\r\n") == 0 ? 2 : 1;
        s.erase(from, end - from);
    }
}

/// Takes out one block after the other, each time looking from the start.
std::string literal_without_comments(std::string s) {
    for (;;) {
        const std::size_t open = kelm::str_contains_str(s, "/*", true);
        const std::size_t close = kelm::str_contains_str(s, "*/", true);
        if (open == not_found || close == not_found || close < open) return literal_without_lines(s);
        s.erase(open, close + 2 - open);
    }
}

TEST(string_comments, hyphen_comments_go_with_their_line_end) {
    const row rows[] = {
        {"empty", "", ""},
        {"none", "a - b\nc", "a - b\nc"},
        {"to the line feed", "a -- b\nc", "a c"},
        {"to the carriage return", "a -- b\rc", "a c"},
        {"to both", "a -- b\r\nc", "a c"},
        {"the other way round is two line ends", "a -- b\n\rc", "a \rc"},
        {"one line end only", "a --\n\nb", "a \nb"},
        {"two carriage returns are two line ends", "a --\r\r\nb", "a \r\nb"},
        {"keeps: without a line end it stays", "a -- b", "a -- b"},
        {"the last one stays", "a -- b\nc -- d", "a c -- d"},
        {"the mark alone stays", "--", "--"},
        {"a line end ahead does not count", "\na -- b", "\na -- b"},
        {"at the start", "-- a\nb", "b"},
        {"nothing left", "--\n", ""},
        {"one after the other", "--a\n--b\r\n--c\rd", "d"},
        {"marks within are part of it", "a -- b -- c\nd", "a d"},
        {"three hyphens", "a---b\nc", "ac"},
        {"hyphens come together and are none", "a--b\n-c-d\n", "a-c-d\n"},
        {"quotes are not looked at", "'a -- b'\nc", "'a c"},
        {"a zero byte is a character", "a\0--b\0\nc"s, "a\0c"s},
        {"bytes from 0x80", "\xE4--\xF6\n\xFC", "\xE4\xFC"},
    };
    for (const row& each : rows) {
        SCOPED_TRACE(each.why);
        EXPECT_EQ(without_lines(each.before), each.after);
        EXPECT_EQ(literal_without_lines(each.before), each.after);
    }
}

TEST(string_comments, block_comments_go_and_then_hyphen_comments) {
    const row rows[] = {
        {"empty", "", ""},
        {"none", "a / b * c", "a / b * c"},
        {"blanks around stay", "a /* b */ c", "a  c"},
        {"more than one", "/*a*/b/*c*/d/**/", "bd"},
        {"over lines", "a/*\n\r\n*/b", "ab"},
        {"nothing left", "/* a */", ""},
        {"not closed", "a /* b", "a /* b"},
        {"not opened", "a */ b", "a */ b"},
        {"the second not closed", "a/*b*/c/*d", "ac/*d"},
        {"no nesting", "a/*b/*c*/d*/e", "ad*/e"},
        {"keeps: a closing mark ahead ends it", "*/ a /* b */ c", "*/ a /* b */ c"},
        {"a closing mark left over ends it", "/*a*/ */ /*b*/c", " */ /*b*/c"},
        {"keeps: the marks may share their star", "a/*/b", "ab"},
        {"shared, and a closing mark left over", "/*/a*/b/*c*/", "a*/b/*c*/"},
        {"many stars", "/***/a/****/", "a"},
        {"a mark that comes together opens", "a//*b*/*c*/d", "ad"},
        {"a mark that comes together closes", "a*/*b*//c/*d*/", "a*/*b*//c/*d*/"},
        {"a closing mark that comes together ends it", "a*/**//b/*c*/", "a*/**//b/*c*/"},
        {"leading space", "  /* a */b", "  b"},
        {"only space is left", " /*a*/ ", "  "},
        {"hyphen comments go as well", "a/*b*/ -- c\nd", "a d"},
        {"hyphen comments go when there is no block", "a -- c\nd", "a d"},
        {"hyphen comments go when a closing mark ended it", "*/ /*a*/--b\nc", "*/ /*a*/c"},
        {"a block in a hyphen comment goes first", "a -- /* b\n c */ d\ne", "a e"},
        {"a hyphen mark that comes together counts", "a-/*b*/-c\nd", "ad"},
        {"a hyphen comment in a block", "a/*-- b*/c\nd", "ac\nd"},
        {"quotes are not looked at", "'/*' a '*/'", "''"},
        {"zero bytes and bytes from 0x80", "\0/*\0*/\xE4/*\xFF*/"s, "\0\xE4"s},
    };
    for (const row& each : rows) {
        SCOPED_TRACE(each.why);
        EXPECT_EQ(without_comments(each.before), each.after);
        EXPECT_EQ(literal_without_comments(each.before), each.after);
    }
}

TEST(string_comments, random_text_loses_what_the_rules_say) {
    constexpr unsigned seed = 1789;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    constexpr std::string_view letters = "//**//**a -\n\r--";
    for (int round = 0; round < 100000; ++round) {
        std::string s(random() % 24, ' ');
        for (char& c : s) c = letters[random() % (round % 2 ? 9 : letters.size())];
        ASSERT_EQ(without_lines(s), literal_without_lines(s)) << testing::PrintToString(s);
        ASSERT_EQ(without_comments(s), literal_without_comments(s)) << testing::PrintToString(s);
    }
}

/// A cost of the square would take minutes here.
TEST(string_comments, many_comments_take_no_time) {
    std::string blocks;
    std::string lines;
    for (int i = 0; i < 300000; ++i) {
        blocks += "a/*b*/";
        lines += "a--b\n";
    }
    const std::string expected(300000, 'a');
    EXPECT_EQ(without_comments(blocks) == expected, true);
    EXPECT_EQ(without_comments(lines) == expected, true);
}

} // namespace
