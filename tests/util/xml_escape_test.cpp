// Escaping of texts for documents and its undoing, with the places where the way back is another one.
// A slow double that works as the rules are told, one entity after the other, serves as reference.
#include <kelm/xml_helpers.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

namespace {

using kelm::process_xml_data;

const std::pair<char, std::string> table[] = {
    {'&', "&amp;"},   {'<', "&lt;"},  {'>', "&gt;"},  {'"', "&quot;"},
    {'\'', "&apos;"}, {'\r', "&#13"}, {'\n', "&#10"},
};

std::string undone(std::string s) {
    const std::string& answer = kelm::reverse_process_xml_data(s);
    EXPECT_EQ(&answer, &s);
    return s;
}

std::string slowly_escaped(std::string s) {
    for (std::size_t i = 0; i < s.size(); ++i)
        if ((static_cast<unsigned char>(s[i]) & 0x80U) != 0) s.replace(i, 1, "&apos;");
    for (const auto& [character, entity] : table)
        for (auto at = s.find(character); at != std::string::npos; at = s.find(character, at + 1))
            s.replace(at, 1, entity);
    return s;
}

std::string slowly_undone(std::string s) {
    for (const auto& [character, entity] : table)
        for (auto at = s.find(entity); at != std::string::npos; at = s.find(entity, at + 1))
            s.replace(at, entity.size(), 1, character);
    return s;
}

TEST(xml_escape, seven_characters_are_escaped_and_come_back) {
    const struct {
        const char* why;
        std::string text;
        std::string escaped;
    } rows[] = {
        {"nothing", "", ""},
        {"nothing to escape", "Customer 7; #13", "Customer 7; #13"},
        {"an ampersand", "a&b", "a&amp;b"},
        {"less", "<", "&lt;"},
        {"greater", ">", "&gt;"},
        {"a quote", "\"", "&quot;"},
        {"an apostrophe", "'", "&apos;"},
        {"several", "<a b=\"c\">d&e</a>", "&lt;a b=&quot;c&quot;&gt;d&amp;e&lt;/a&gt;"},
        {"ampersands in a row", "&&", "&amp;&amp;"},
        {"a zero byte", std::string("a\0&", 3), std::string("a\0&amp;", 7)},
        {"other control characters stay", "\t\x01\x7F", "\t\x01\x7F"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(process_xml_data(row.text), row.escaped);
        EXPECT_EQ(undone(row.escaped), row.text);
    }
}

TEST(xml_escape, keeps_line_ends_without_a_semicolon) {
    EXPECT_EQ(process_xml_data("\n"), "&#10");
    EXPECT_EQ(process_xml_data("\r"), "&#13");
    EXPECT_EQ(process_xml_data("a\r\nb"), "a&#13&#10b");
    EXPECT_EQ(undone("&#10"), "\n");
    EXPECT_EQ(undone("a&#13&#10b"), "a\r\nb");
    EXPECT_EQ(undone("&#10;"), "\n;") << "a semicolon is a character of the text";
    EXPECT_EQ(undone("&#130"), "\r0") << "and so is a digit";
}

TEST(xml_escape, keeps_an_apostrophe_for_a_byte_beyond_seven_bits) {
    EXPECT_EQ(process_xml_data("\xE4"), "&amp;apos;");
    EXPECT_EQ(process_xml_data("\x80z\xFF"), "&amp;apos;z&amp;apos;");
    EXPECT_EQ(undone(process_xml_data("\x80")), "'");
    EXPECT_EQ(undone(process_xml_data("Stra\xC3\x9F"
                                      "e")),
              "Stra''e")
        << "one for each byte of a letter";
}

TEST(xml_escape, keeps_undoing_one_entity_after_the_other) {
    EXPECT_EQ(undone("&amp;lt;"), "<");
    EXPECT_EQ(undone("&amp;gt;&amp;quot;&amp;apos;&amp;#13&amp;#10"), ">\"'\r\n");
    EXPECT_EQ(undone(process_xml_data("&lt;")), "<") << "the literal text of an entity does not survive";
    EXPECT_EQ(undone("&amp;amp;"), "&amp;")
        << "what has been undone is not looked at by the same entity again";
    EXPECT_EQ(undone("&amp;amp;lt;"), "&amp;lt;");
    EXPECT_EQ(undone(process_xml_data("&amp;")), "&amp;");
}

TEST(xml_escape, what_is_no_whole_entity_stays) {
    for (const char* text :
         {"&", "&am", "&amp", "amp;", "&AMP;", "&lt", "& lt;", "&#1", "&#9", "&nbsp;", "&&", ";"})
        EXPECT_EQ(undone(text), text);
    EXPECT_EQ(undone("&l&lt;t;"), "&l<t;");
}

TEST(xml_escape, both_ways_are_those_of_the_table_for_any_text) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::string pieces[] = {"&",   "amp;", "lt;",   "gt;",  "quot;", "apos;", "#13",
                                  "#10", "<",    ">",     "\"",   "'",     "\r",    "\n",
                                  "x",   ";",    "&amp;", "&lt;", "\x80",  "\xFF",  std::string(1, '\0')};
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (auto left = random() % 12; left != 0; --left) text += pieces[random() % std::size(pieces)];
        EXPECT_EQ(process_xml_data(text), slowly_escaped(text)) << testing::PrintToString(text);
        EXPECT_EQ(undone(text), slowly_undone(text)) << testing::PrintToString(text);
    }
}

TEST(xml_escape, a_megabyte_to_escape_comes_back) {
    const std::string text(1 << 20, '&');
    const std::string escaped = process_xml_data(text);
    EXPECT_EQ(escaped.size(), text.size() * 5);
    EXPECT_TRUE(undone(escaped) == text);
    const std::string high(1 << 20, '\xFF');
    EXPECT_TRUE(undone(process_xml_data(high)) == std::string(1 << 20, '\''));
}

} // namespace
