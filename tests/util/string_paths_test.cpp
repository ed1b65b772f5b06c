// The string helpers for quotes, delimiters, '.' in path names and separators in lists.
// Words and characters: string_helpers_test.cpp.
#include <kelm/string_helpers.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;
using texts = std::vector<std::string>;

TEST(string_paths, one_pair_of_quotes_is_stripped) {
    const struct {
        const char* why;
        std::string before, double_only, both;
    } rows[] = {
        {"empty", "", "", ""},
        {"no quotes", "a", "a", "a"},
        {"double", "\"a\"", "a", "a"},
        {"single", "'a'", "'a'", "a"},
        {"one pair only", "\"\"a\"\"", "\"a\"", "\"a\""},
        {"one pair of either kind, single within", "\"'a'\"", "'a'", "'a'"},
        {"one pair of either kind, double within", "'\"a\"'", "'\"a\"'", "\"a\""},
        {"not matching", "\"a'", "\"a'", "\"a'"},
        {"only the first", "\"a", "\"a", "\"a"},
        {"only the last", "a\"", "a\"", "a\""},
        {"a lone double quote is no pair", "\"", "\"", "\""},
        {"a lone single quote is no pair", "'", "'", "'"},
        {"nothing between", "\"\"", "", ""},
        {"nothing between single ones", "''", "''", ""},
        {"other kinds stay", "`a`", "`a`", "`a`"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::string s = row.before;
        kelm::strip_quotes(s, true);
        EXPECT_EQ(s, row.double_only);
        s = row.before;
        kelm::strip_quotes(s, false);
        EXPECT_EQ(s, row.both);
    }
}

TEST(string_paths, four_kinds_of_quotes_are_trimmed) {
    const struct {
        const char* why;
        std::string before, after;
    } rows[] = {
        {"empty", "", ""},
        {"none", "a", "a"},
        {"double", "\"a\"", "a"},
        {"single", "'a'", "a"},
        {"backward", "`a`", "a"},
        {"brackets", "[a]", "a"},
        {"brackets the wrong way", "]a[", "]a["},
        {"two opening brackets", "[a[", "[a["},
        {"two closing brackets", "]a]", "]a]"},
        {"not matching", "\"a'", "\"a'"},
        {"only one pair", "[[a]]", "[a]"},
        {"only one pair of two kinds", "['a']", "'a'"},
        {"a lone quote", "`", "`"},
        {"a lone bracket", "[", "["},
        {"nothing between", "[]", ""},
        {"round brackets stay", "(a)", "(a)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::string s = row.before;
        kelm::trim_quotes(s);
        EXPECT_EQ(s, row.after);
    }
}

TEST(string_paths, every_double_quote_is_removed) {
    const std::pair<std::string, std::string> rows[] = {
        {"", ""}, {"a'b`", "a'b`"}, {"\"a\"\"b\"c", "abc"}, {"\"\"\"", ""}, {"\xE4\"\0\""s, "\xE4\0"s},
    };
    for (const auto& [before, after] : rows) {
        SCOPED_TRACE(before);
        std::string s = before;
        kelm::str_remove_double_quotes(s);
        EXPECT_EQ(s, after);
    }
}

TEST(string_paths, one_pair_of_delimiters_is_stripped) {
    const struct {
        const char* why;
        std::string before;
        char open, close;
        std::string after;
    } rows[] = {
        {"empty", "", '(', ')', ""},
        {"none", "a", '(', ')', "a"},
        {"a pair", "(a)", '(', ')', "a"},
        {"one pair only", "((a))", '(', ')', "(a)"},
        {"nothing between", "()", '(', ')', ""},
        {"only the first", "(a", '(', ')', "(a"},
        {"only the last", "a)", '(', ')', "a)"},
        {"a lone one", "(", '(', ')', "("},
        {"the wrong way", ")a(", '(', ')', ")a("},
        {"zero stands for the same", "|a|", '|', '\0', "a"},
        {"zero stands for the same, not for any", "|a)", '|', '\0', "|a)"},
        {"zero stands for the same, not for itself", "|a\0"s, '|', '\0', "|a\0"s},
        {"a lone one of two that are the same", "|", '|', '\0', "|"},
        {"the same given twice", "|a|", '|', '|', "a"},
        {"two zeros", "\0a\0"s, '\0', '\0', "a"},
        {"bytes from 0x80",
         "\xAB"
         "a\xBB",
         '\xAB', '\xBB', "a"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(kelm::strip_delimiter(row.before, row.open, row.close), row.after);
        std::string s = row.before;
        EXPECT_EQ(kelm::strip_delimiter2(s, row.open, row.close), row.before != row.after);
        EXPECT_EQ(s, row.after);
    }
}

TEST(string_paths, each_part_of_a_path_loses_its_delimiters) {
    const struct {
        const char* why;
        std::string path;
        char open, close;
        std::string after;
    } rows[] = {
        {"empty", "", '[', ']', ""},
        {"one part", "[a]", '[', ']', "a"},
        {"two parts", "[a].[b]", '[', ']', "a.b"},
        {"some parts", "a.[b].c", '[', ']', "a.b.c"},
        {"one pair a part", "[[a]].b", '[', ']', "[a].b"},
        {"empty parts stay", ".[a]..b.", '[', ']', ".a..b."},
        {"points alone stay", "..", '[', ']', ".."},
        {"parts of delimiters only become empty", "[].[]", '[', ']', "."},
        {"half a pair stays", "[a.b]", '[', ']', "[a.b]"},
        {"a lone delimiter stays", "|.a", '|', '\0', "|.a"},
        {"zero stands for the same", "\"a\".\"b\"", '"', '\0', "a.b"},
        {"a point between delimiters parts as well", "\"a.b\".\"c\"", '"', '"', "\"a.b\".c"},
        {"other delimiters stay", "(a).[b]", '[', ']', "(a).b"},
        {"a point as delimiter is always a point", ".a.", '.', '\0', ".a."},
        {"zero bytes stay", "[a\0].b\0"s, '[', ']', "a\0.b\0"s},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(kelm::strip_delimiting_char_from_path_names(row.path, row.open, row.close), row.after);
    }
}

TEST(string_paths, text_is_split_at_separators) {
    const struct {
        const char* why;
        std::string s, separators;
        texts parts;
    } rows[] = {
        {"empty", "", ",", {}},
        {"nothing but separators", ",,,", ",", {}},
        {"no separator in it", "abc", ",", {"abc"}},
        {"empty tokens are dropped, others trimmed", "a, b,,c", ",", {"a", "b", "c"}},
        {"at both ends", ",a,", ",", {"a"}},
        {"every character separates", "[7|4][abc|6]", "[]", {"7|4", "abc|6"}},
        {"not their sequence", "a,;b;,c;d", ",;", {"a", "b", "c", "d"}},
        {"a token of white space stays, empty", "a, ,\t\r\n", ",", {"a", "", ""}},
        {"white space within stays", " a b ", ",", {"a b"}},
        {"only white space", "  ", ",", {""}},
        {"white space as separator", " a  b ", " ", {"a", "b"}},
        {"a vertical tab and a form feed are not trimmed", "\va\f,b", ",", {"\va\f", "b"}},
        {"no separators", "a,b c", "", {"a,b c"}},
        {"punctuation does not separate by itself", "a-b.c", ",", {"a-b.c"}},
        {"separators end at a zero byte", "a;b,c", ",\0;"s, {"a;b", "c"}},
        {"a zero byte in the text stays", "a\0b,c"s, ",", {"a\0b"s, "c"}},
        {"bytes from 0x80", "\xE4\xA7\xF6", "\xA7", {"\xE4", "\xF6"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        texts out = {"left", "over"};
        EXPECT_EQ(kelm::string_to_vector(row.s, row.separators, out), row.parts.size());
        EXPECT_EQ(out, row.parts);
    }
}

TEST(string_paths, text_and_separators_may_come_from_the_result) {
    texts out = {"a, b", ","};
    EXPECT_EQ(kelm::string_to_vector(out[0], out[1], out), 2U);
    EXPECT_EQ(out, (texts{"a", "b"}));
}

TEST(string_paths, random_text_is_split_as_by_hand) {
    constexpr unsigned seed = 3;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 5000; ++round) {
        std::string s(random() % 12, ' ');
        for (char& c : s) c = "ab,; "[random() % 5];

        texts expected;
        std::string token;
        for (const char c : s + ',') {
            if (c != ',' && c != ';') {
                token += c;
                continue;
            }
            if (token.empty()) continue;
            kelm::remove_leading_whitespace(token);
            kelm::remove_trailing_whitespace(token);
            expected.push_back(token);
            token.clear();
        }
        texts out;
        ASSERT_EQ(kelm::string_to_vector(s, ",;", out), expected.size()) << s;
        ASSERT_EQ(out, expected) << s;
    }
}

} // namespace
