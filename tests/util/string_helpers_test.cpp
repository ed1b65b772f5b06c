// The string helpers that look for and change characters and words.
// Delimiters and path names: string_paths_test.cpp; comments: string_comments_test.cpp.
#include <kelm/string_helpers.h>
#include <kelm/types.h>

#include <gtest/gtest.h>

#include <cctype>
#include <climits>
#include <cstring>
#include <random>
#include <string>
#include <string_view>

namespace {

using kelm::npos;
using namespace std::string_literals;

/// A text with all 256 bytes, each once.
std::string all_bytes() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    return bytes;
}

struct change_row {
    const char* why;
    std::string before, after;
};

/// Runs `edit` on each row's text.
template <class Edit, class Rows>
void expect_changes(Edit edit, const Rows& rows) {
    for (const change_row& row : rows) {
        SCOPED_TRACE(row.why);
        std::string s = row.before;
        edit(s);
        EXPECT_EQ(s, row.after);
    }
}

/// The same for an edit that says whether it changed anything.
template <class Edit, class Rows>
void expect_told_changes(Edit edit, const Rows& rows) {
    for (const change_row& row : rows) {
        SCOPED_TRACE(row.why);
        std::string s = row.before;
        EXPECT_EQ(edit(s), row.before != row.after);
        EXPECT_EQ(s, row.after);
    }
}

TEST(string_helpers, four_characters_are_white_space) {
    for (int c = -300; c <= 300; ++c) {
        SCOPED_TRACE(c);
        EXPECT_EQ(kelm::whitespace(c), c == 9 || c == 10 || c == 13 || c == 32);
    }
    EXPECT_FALSE(kelm::whitespace(INT_MAX));
    EXPECT_FALSE(kelm::whitespace(INT_MIN));
}

TEST(string_helpers, white_space_goes_from_the_end) {
    const change_row rows[] = {
        {"empty", "", ""},
        {"none there", " a b", " a b"},
        {"all four kinds", "a \t\r\n", "a"},
        {"nothing else", " \t\r\n", ""},
        {"a vertical tab and a form feed stay", "a \v ", "a \v"},
        {"a zero byte stays", "a\0 "s, "a\0"s},
        {"a byte from 0x80 stays", "a\xA0", "a\xA0"},
    };
    expect_changes(kelm::remove_trailing_whitespace, rows);
}

TEST(string_helpers, white_space_goes_from_the_start) {
    const change_row rows[] = {
        {"empty", "", ""},
        {"none there", "a b ", "a b "},
        {"all four kinds", " \t\r\na", "a"},
        {"nothing else", " \t\r\n", ""},
        {"a vertical tab and a form feed stay", " \f a", "\f a"},
        {"a byte from 0x80 stays", "\xA0 a", "\xA0 a"},
    };
    expect_changes(kelm::remove_leading_whitespace, rows);
}

TEST(string_helpers, one_trailing_character_goes) {
    const change_row rows[] = {
        {"empty", "", ""},         {"not there", "a;b", "a;b"}, {"there", "a;", "a"},
        {"only one", "a;;", "a;"}, {"alone", ";", ""},
    };
    expect_changes([](std::string& s) { kelm::remove_trailing_char(s, ';'); }, rows);

    std::string zero_ended = "a\0"s;
    kelm::remove_trailing_char(zero_ended, '\0');
    EXPECT_EQ(zero_ended, "a");
    kelm::remove_trailing_char(zero_ended, '\0');
    EXPECT_EQ(zero_ended, "a") << "the terminator is no character of the string";
}

TEST(string_helpers, a_position_moves_past_all_kinds_of_space) {
    const struct {
        const char* why;
        std::string s;
        std::size_t from, to;
    } rows[] = {
        {"empty", "", 0, 0},
        {"no space here", "a b", 0, 0},
        {"from the middle", "a  b", 1, 3},
        {"all six kinds", " \t\n\v\f\ra", 0, 6},
        {"to the end", "a  ", 1, 3},
        {"at the end", "a", 1, 1},
        {"beyond the end", "a", 5, 5},
        {"no position", "  ", npos, npos},
        {"a byte from 0x80 is none", " \xA0 ", 0, 1},
        {"a zero byte is none", " \0 "s, 0, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::size_t pos = row.from;
        kelm::str_skip_all_white_chars(pos, row.s);
        EXPECT_EQ(pos, row.to);
    }
}

TEST(string_helpers, identifiers_are_made_of_letters_digits_and_three_signs) {
    std::string found;
    for (const char c : all_bytes())
        if (kelm::str_is_identifier_char(c)) found += c;
    EXPECT_EQ(found, "#$0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
}

TEST(string_helpers, every_carriage_return_goes) {
    const change_row rows[] = {
        {"empty", "", ""},
        {"none", "a\nb", "a\nb"},
        {"before a line feed and alone", "\ra\r\n\rb\r\r", "a\nb"},
        {"nothing else", "\r\r", ""},
    };
    expect_told_changes(kelm::strip_carrige_return, rows);
}

TEST(string_helpers, a_line_feed_gets_a_carriage_return) {
    const change_row rows[] = {
        {"empty", "", ""},
        {"no line feed", "a\rb", "a\rb"},
        {"one without", "a\nb", "a\r\nb"},
        {"one that has it", "a\r\nb", "a\r\nb"},
        {"not at position 0", "\na", "\na"},
        {"but at position 1", "\n\n", "\n\r\n"},
        {"each of a row", "a\n\n\n", "a\r\n\r\n\r\n"},
        {"some have it", "a\r\n\nb\n", "a\r\n\r\nb\r\n"},
        {"line feed before carriage return", "a\n\r", "a\r\n\r"},
        {"at the start behind its carriage return", "\r\na", "\r\na"},
    };
    expect_told_changes(kelm::add_carrige_return, rows);
}

TEST(string_helpers, starts_and_ends_are_found_in_either_case) {
    const struct {
        const char* why;
        std::string s, part;
        bool starts, ends;
    } rows[] = {
        {"two empty texts", "", "", true, true},
        {"an empty part", "abc", "", true, true},
        {"an empty text", "", "a", false, false},
        {"the whole, in another case", "TaBle", "tAbLE", true, true},
        {"longer than the text", "abc", "abcd", false, false},
        {"longer at the front", "abc", "zabc", false, false},
        {"at the start", "Name_id", "NAME", true, false},
        {"at the end", "Name_id", "_ID", false, true},
        {"in the middle only", "Name_id", "me", false, false},
        {"signs have no case", "[a", "{a", false, false},
        {"bytes from 0x80 have no case", "\xC4", "\xE4", false, false},
        {"bytes from 0x80 equal themselves", "\xC4x", "\xC4", true, false},
        {"a zero byte is a character", "a\0b"s, "A\0c"s, false, false},
        {"a zero byte is a character that can fit", "a\0b"s, "A\0"s, true, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(kelm::string_starts_with(row.s, row.part), row.starts);
        EXPECT_EQ(kelm::string_ends_with(row.s, row.part), row.ends);
    }
}

TEST(string_helpers, a_text_is_found_in_a_text) {
    const struct {
        const char* why;
        std::string s, x;
        std::size_t exact, no_case;
    } rows[] = {
        {"nothing in nothing", "", "", npos, npos},
        {"something in nothing", "", "a", npos, npos},
        {"nothing in a text", "abc", "", 0, 0},
        {"nothing, where the scan starts", " \t\v\fabc", "", 4, 4},
        {"nothing in blanks", " \t\n", "", npos, npos},
        {"a blank in blanks", "   ", " ", npos, npos},
        {"a blank in leading space is passed over", "  a b", " ", 3, 3},
        {"what begins in leading space is missed", " a", " a", npos, npos},
        {"at the start", "abc", "ab", 0, 0},
        {"at the end", "abc", "bc", 1, 1},
        {"the whole", "abc", "abc", 0, 0},
        {"the first of two", "xabyab", "ab", 1, 1},
        {"longer than the text", "ab", "abc", npos, npos},
        {"only in another case", "xABy", "ab", npos, 1},
        {"another case first", "ABab", "ab", 2, 0},
        {"signs have no case", "[", "{", npos, npos},
        {"bytes from 0x80 have no case", "\xC4", "\xE4", npos, npos},
        {"bytes from 0x80 are no leading space", "\xA0 x", "\xA0", 0, 0},
        {"zero bytes are characters", "a\0b"s, "\0b"s, 1, 1},
        {"the character that breaks a match starts the next", "aab", "ab", 1, 1},
        {"also at the last moment", "abab!abc", "abc", 5, 5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(kelm::str_contains_str(row.s, row.x, false), row.exact);
        EXPECT_EQ(kelm::str_contains_str(row.s, row.x, true), row.no_case);
    }
}

TEST(string_helpers, keeps_missing_a_text_with_a_repeated_prefix) {
    EXPECT_EQ(kelm::str_contains_str("aaab", "aab", false), npos);
    EXPECT_EQ(kelm::str_contains_str("aAaB", "AAb", true), npos);
    EXPECT_EQ(kelm::str_contains_str("ababac", "abac", false), npos);
    EXPECT_EQ(kelm::str_contains_str("aaab aab", "aab", false), 5U) << "a later one is found";
}

/// A text without repeated letters never breaks a match in a way that matters: the plain search is right.
TEST(string_helpers, a_text_of_different_letters_is_found_as_by_the_standard_library) {
    constexpr unsigned seed = 99;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 20000; ++round) {
        std::string s(random() % 12, ' ');
        for (char& c : s) c = "abc"[random() % 3];
        const std::string x = std::string("abcab").substr(random() % 3, 1 + random() % 3);
        const std::size_t expected = s.find(x);
        ASSERT_EQ(kelm::str_contains_str(s, x, false), expected) << s << " and " << x;
        for (char& c : s)
            if (random() % 2) c = static_cast<char>(std::toupper(c));
        ASSERT_EQ(kelm::str_contains_str(s, x, true), expected) << s << " and " << x;
    }
}

TEST(string_helpers, keeps_skipping_a_start_by_its_length) {
    const struct {
        const char* why;
        const char *s, *x;
        std::size_t skipped;
    } rows[] = {
        {"two empty texts", "", "", 0},
        {"what is skipped", "create table", "create", 7},
        {"keeps: nothing is compared", "create table", "abcdef", 7},
        {"nothing to skip but space", " \t\n\v\f\rx", "", 6},
        {"no space behind", "abc", "ab", 2},
        {"to the end", "abc", "abc", 3},
        {"longer than the text", "abc", "abcdefgh", 3},
        {"something in an empty text", "", "abc", 0},
        {"space to the end", "ab  ", "ab", 4},
        {"a byte from 0x80 is no space", "ab\xA0", "ab", 2},
        {"no text to skip", "  abc", nullptr, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(kelm::remove_substr_from_begining(row.s, row.x), row.s + row.skipped);
    }
    EXPECT_STREQ(kelm::remove_substr_from_begining(nullptr, "abc"), "");
    EXPECT_STREQ(kelm::remove_substr_from_begining(nullptr, nullptr), "");
}

TEST(string_helpers, a_whole_word_goes_from_the_start) {
    const struct {
        const char* why;
        std::string s, word;
        bool quoted, removed;
        std::string after;
    } rows[] = {
        {"empty", "", "table", false, false, ""},
        {"only space", " \v\f", "table", false, false, " \v\f"},
        {"no word in nothing", "", "", false, false, ""},
        {"the word alone", "table", "table", false, true, ""},
        {"blank behind stays", "table x", "table", false, true, " x"},
        {"space before stays", " \t\v table x", "table", false, true, " \t\v  x"},
        {"space before stays when the text is cut", "  table", "table", false, true, "  "},
        {"either case", "TaBlE(x)", "tAbLe", false, true, "(x)"},
        {"another word", "view x", "table", false, false, "view x"},
        {"not at the start", "a table", "table", false, false, "a table"},
        {"too short", "tabl", "table", false, false, "tabl"},
        {"goes on with a digit", "table1", "table", false, false, "table1"},
        {"goes on with a letter", "tableS", "table", false, false, "tableS"},
        {"goes on with _", "table_", "table", false, false, "table_"},
        {"goes on with $", "table$", "table", false, false, "table$"},
        {"goes on with #", "table#", "table", false, false, "table#"},
        {"a byte from 0x80 is no letter", "table\xE4", "table", false, true, "\xE4"},
        {"a zero byte ends the word", "table\0x"s, "table", false, true, "\0x"s},
        {"a refused word leaves the space", "  table1", "table", false, false, "  table1"},
        {"quotes count as text unless told", "\"table\"", "table", false, false, "\"table\""},
        {"a quote behind ends the word unless told", "table\" x", "table", false, true, "\" x"},
        {"both quotes go", "\"table\" x", "table", true, true, " x"},
        {"both quotes go at the end", " \"Table\"", "table", true, true, " "},
        {"no quotes are needed", "table x", "table", true, true, " x"},
        {"no quotes at the end", "table", "table", true, true, ""},
        {"only the first quote", "\"table x", "table", true, true, " x"},
        {"only the first quote, at the end", "\"table", "table", true, true, ""},
        {"only the last quote", "table\" x", "table", true, true, " x"},
        {"the word goes on behind the quote", "\"table\"x", "table", true, false, "\"table\"x"},
        {"one quote of two", "\"\"table", "table", true, false, "\"\"table"},
        {"one quote of two behind", "table\"\"", "table", true, true, "\""},
        {"quoted and another word", "\"view\"", "table", true, false, "\"view\""},
        {"a quote alone", "\"", "table", true, false, "\""},
        {"no word before a sign", " ,x", "", false, true, " ,x"},
        {"no word before a letter", "x", "", false, false, "x"},
        {"no word between quotes", " \"\"", "", true, true, " "},
        {"no word and one quote", "\"", "", true, true, ""},
        {"a word of two words", "order by x", "order BY", false, true, " x"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::string s = row.s;
        EXPECT_EQ(kelm::remove_word(s, row.word, row.quoted), row.removed);
        EXPECT_EQ(s, row.after);
    }
}

TEST(string_helpers, a_word_may_be_the_string_itself) {
    std::string s = "table";
    EXPECT_TRUE(kelm::remove_word(s, s, false));
    EXPECT_EQ(s, "");
}

TEST(string_helpers, names_get_their_plural) {
    const change_row rows[] = {
        {"behind x", "Box", "Boxes"},
        {"behind X, in lower case", "BOX", "BOXes"},
        {"for y", "Entity", "Entities"},
        {"for Y, in lower case", "ENTITY", "ENTITies"},
        {"keeps: the vowel before y does not count", "Key", "Keies"},
        {"all others", "Table", "Tables"},
        {"also behind s", "Class", "Classs"},
        {"x alone", "x", "xes"},
        {"Y alone", "Y", "ies"},
        {"empty", "", "s"},
        {"only the last letter counts", "xy ", "xy s"},
        {"a byte from 0x80", "\xFF", "\xFFs"},
    };
    expect_changes(kelm::pluralize_name, rows);
}

TEST(string_helpers, words_get_a_capital_letter) {
    const change_row rows[] = {
        {"empty", "", ""},
        {"two words", "first  SECOND", "First  Second"},
        {"all four kinds of white space", "a\tb\nc\rd e", "A\tB\nC\rD E"},
        {"no other kind", "a\vb\fc", "A\vb\fc"},
        {"nor signs", "AB_CD-EF.GH", "Ab_cd-ef.gh"},
        {"a leading blank", " ab", " Ab"},
        {"a digit takes the place of the first", "1AB", "1ab"},
        {"bytes from 0x80 have no case", "\xE4 \xE4 A\xC4", "\xE4 \xE4 A\xC4"},
    };
    expect_changes(kelm::mixed_case, rows);
}

TEST(string_helpers, only_the_26_letters_become_lower_case) {
    std::string expected = all_bytes();
    for (char& c : expected)
        if (std::strchr("ABCDEFGHIJKLMNOPQRSTUVWXYZ", c) && c != '\0') c = static_cast<char>(c + 32);
    std::string s = all_bytes();
    kelm::lower_case(s);
    EXPECT_EQ(s, expected);

    std::string empty;
    kelm::lower_case(empty);
    EXPECT_EQ(empty, "");
}

} // namespace
