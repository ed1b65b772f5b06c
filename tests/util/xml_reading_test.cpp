// Elements, numbers, texts and bytes read from a DOM tree.
// Writing them is in xml_helpers_test.cpp.
#include "tests/util/xml_world.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <string>
#include <vector>

namespace kelm::test {

using xml_helpers = xml_world;

// Elements

TEST_F(xml_helpers, children_are_found_by_name_in_document_order) {
    const dom_document parsed(
        "<r> <a i='1'/> text <b/><!-- a --><a i='2'/><c><a i='9'/></c><a i='3'><a i='8'/></a></r>");
    std::vector<void*> found{nullptr};
    get_child_elems_by_name(parsed.root(), "a", found);
    ASSERT_EQ(found.size(), 4U) << "appended; children of children are not found";
    EXPECT_EQ(found[0], nullptr);
    for (unsigned i = 1; i <= 3; ++i) {
        unsigned number = 0;
        EXPECT_TRUE(get_xml_att(found[i], "i", number));
        EXPECT_EQ(number, i);
    }
    EXPECT_EQ(get_xml_elem(parsed.root(), "a"), found[1]);
}

TEST_F(xml_helpers, children_that_an_entity_stands_for_are_found_in_their_place) {
    const dom_document parsed("<!DOCTYPE r [<!ENTITY two \"<a i='2'/><a i='3'/>\"><!ENTITY none 'text'>"
                              "<!ENTITY three \"&two;<b/><a i='4'/>\">]>"
                              "<r>&none;<a i='1'/>&three;<a i='5'/>&none;<a i='6'/>&none;</r>");
    ASSERT_EQ(parsed.root_element()->getFirstChild()->getNodeType(), xercesc::DOMNode::ENTITY_REFERENCE_NODE);
    std::vector<void*> found;
    get_child_elems_by_name(parsed.root(), "a", found);
    ASSERT_EQ(found.size(), 6U);
    for (unsigned i = 0; i != 6; ++i) {
        unsigned number = 0;
        EXPECT_TRUE(get_xml_att(found[i], "i", number));
        EXPECT_EQ(number, i + 1);
    }
    EXPECT_EQ(get_xml_elem(parsed.root(), "a"), found[0]);
    EXPECT_NE(get_xml_elem(parsed.root(), "b"), nullptr);
    EXPECT_EQ(get_xml_elem(parsed.root(), "c"), nullptr);
}

TEST_F(xml_helpers, an_attribute_may_be_made_of_several_nodes) {
    const dom_document parsed("<r i='12' none=''/>");
    xercesc::DOMAttr* const attribute = parsed.root_element()->getAttributeNode(u"i");
    attribute->appendChild(parsed.dom()->createTextNode(u"34"));
    ASSERT_NE(attribute->getFirstChild()->getNextSibling(), nullptr);
    unsigned number = 0;
    EXPECT_TRUE(get_xml_att(parsed.root(), "i", number));
    EXPECT_EQ(number, 1234U);
    number = 5;
    get_xml_att(parsed.root(), "none", number);
    EXPECT_EQ(number, 0U);
}

TEST_F(xml_helpers, a_child_of_another_name_is_not_found) {
    add_xml_elem(add_xml_elem(root, "child"), "grandchild");
    for (const char* name : {"grandchild", "Child", "chil", "childs", "", "root", "\xFF"}) {
        SCOPED_TRACE(name);
        std::vector<void*> found;
        get_child_elems_by_name(root, name, found);
        EXPECT_TRUE(found.empty());
        EXPECT_EQ(get_xml_elem(root, name), nullptr);
    }
    EXPECT_EQ(get_xml_elem(root, nullptr), nullptr);
}

// Numbers

TEST_F(xml_helpers, numbers_are_read_as_far_as_they_go) {
    const struct {
        const char* why;
        const char* text;
        unsigned long as_long;
        int as_int;
    } rows[] = {
        {"a number", "42", 42, 42},
        {"a sign", "-1", ULONG_MAX, -1},
        {"a plus sign", "+7", 7, 7},
        {"white space in front", " \t\n\r 12", 12, 12},
        {"something behind", "12abc", 12, 12},
        {"an exponent is something behind", "1e9", 1, 1},
        {"no number", "abc", 0, 0},
        {"nothing but white space", "   ", 0, 0},
        {"hexadecimal", "0x10", 0, 0},
        {"digits that are no ASCII ones", "\xD9\xA1\xD9\xA2", 0, 0},
        {"the highest of 32 bits", "4294967295", 4294967295UL, -1},
        {"the highest of 31 bits", "2147483647", 2147483647UL, INT_MAX},
        {"beyond 31 bits", "2147483648", 2147483648UL, INT_MIN},
        {"beyond 64 bits", "99999999999999999999", LONG_MAX, -1},
        {"beyond 64 bits downwards", "-99999999999999999999", 1UL + LONG_MAX, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        void* element = holding(row.text);
        unsigned long number = 5;
        int small = 5;
        bool flag = row.as_int <= 0;
        EXPECT_TRUE(get_xml_text(element, number));
        EXPECT_TRUE(get_xml_text(element, small));
        EXPECT_TRUE(get_xml_text(element, flag));
        EXPECT_EQ(number, row.as_long);
        EXPECT_EQ(small, row.as_int);
        EXPECT_EQ(flag, row.as_int > 0) << "true is what is above 0";

        XMLCh* wide = xercesc::XMLString::transcode(row.text);
        set_attribute(u"n", wide);
        xercesc::XMLString::release(&wide);
        unsigned int positive = 5;
        number = 5;
        small = 5;
        EXPECT_TRUE(get_xml_att(root, "n", number));
        EXPECT_TRUE(get_xml_att(root, "n", small));
        EXPECT_TRUE(get_xml_att(root, "n", positive));
        EXPECT_EQ(number, row.as_long);
        EXPECT_EQ(small, row.as_int);
        EXPECT_EQ(positive, static_cast<unsigned int>(row.as_int));
    }
}

TEST_F(xml_helpers, keeps_a_missing_attribute_readable_as_nothing) {
    unsigned long number = 5;
    int small = 5;
    unsigned int positive = 5;
    EXPECT_TRUE(get_xml_att(root, "none", number));
    EXPECT_TRUE(get_xml_att(root, "none", small));
    EXPECT_TRUE(get_xml_att(root, "none", positive));
    EXPECT_EQ(number, 0U);
    EXPECT_EQ(small, 0);
    EXPECT_EQ(positive, 0U);
    set_attribute(u"none", u"");
    number = 5;
    EXPECT_TRUE(get_xml_att(root, "none", number));
    EXPECT_EQ(number, 0U) << "an empty one is the same";
}

TEST_F(xml_helpers, an_element_without_text_leaves_the_number_alone) {
    void* empty = holding(nullptr);
    void* nested = holding(nullptr);
    add_xml_text(add_xml_elem(nested, "inner"), 9);
    for (void* element : {empty, nested}) {
        unsigned long number = 5;
        int small = 5;
        bool flag = true;
        std::string text = "before";
        EXPECT_FALSE(get_xml_text(element, number));
        EXPECT_FALSE(get_xml_text(element, small));
        EXPECT_FALSE(get_xml_text(element, flag));
        EXPECT_FALSE(get_xml_text(element, text, false));
        EXPECT_FALSE(get_xml_text(element, text, true));
        EXPECT_EQ(number, 5U);
        EXPECT_EQ(small, 5);
        EXPECT_TRUE(flag);
        EXPECT_EQ(text, "before");
    }
}

TEST_F(xml_helpers, the_kind_of_a_value_is_read_from_its_child) {
    unsigned int kind = 5;
    EXPECT_FALSE(get_xml_att(root, kind)) << "there is no such child";
    EXPECT_EQ(kind, 5U);
    add_xml_att(root, 1003U);
    add_xml_att(root, 6U);
    EXPECT_TRUE(get_xml_att(root, kind));
    EXPECT_EQ(kind, 1003U) << "the first child of that name counts";
}

TEST_F(xml_helpers, keeps_a_kind_without_text_a_success) {
    add_xml_elem(root, "datatype");
    unsigned int kind = 5;
    EXPECT_TRUE(get_xml_att(root, kind));
    EXPECT_EQ(kind, 5U);
}

// Texts

TEST_F(xml_helpers, a_text_is_unescaped_when_wanted) {
    add_xml_text(root, process_xml_data("a&b\n'\xE4"));
    std::string text;
    EXPECT_TRUE(get_xml_text(root, text, false));
    EXPECT_EQ(text, "a&amp;b&#10&apos;&amp;apos;");
    EXPECT_TRUE(get_xml_text(root, text, true));
    EXPECT_EQ(text, "a&b\n''");
}

TEST_F(xml_helpers, keeps_to_the_first_child_node) {
    const struct {
        const char* why;
        const char* xml;
        const char* text;
    } rows[] = {
        {"a section", "<r><![CDATA[a<b]]></r>", "a<b"},
        {"text in front of a section", "<r>a<![CDATA[b]]></r>", "a"},
        {"text in front of an element", "<r>a<b/>c</r>", "a"},
        {"a comment in front of text", "<r><!--12-->34</r>", "12"},
        {"an instruction in front of text", "<r><?do 12?>34</r>", "12"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const dom_document parsed{std::string(row.xml)};
        std::string text;
        EXPECT_TRUE(get_xml_text(parsed.root(), text, false));
        EXPECT_EQ(text, row.text);
    }
}

TEST_F(xml_helpers, text_comes_back_from_a_document_that_was_written_and_parsed) {
    const std::string text = "<a> & \"b\" 'c' ]]>\r\n\t\xC3\xA4\xF0\x9F\x98\x80";
    add_xml_text(root, text);
    const dom_document parsed(document.text());
    std::string back;
    EXPECT_TRUE(get_xml_text(parsed.root(), back, false));
    EXPECT_EQ(back, text);
}

TEST_F(xml_helpers, bytes_that_are_no_text_become_replacement_characters) {
    const struct {
        const char* why;
        std::string written;
        std::string read;
    } rows[] = {
        {"a byte of another code page", "M\xFCller", "M\xEF\xBF\xBDller"},
        {"a letter that is cut off", "a\xC3", "a\xEF\xBF\xBD"},
        {"a byte that never stands in text", "\xFF", "\xEF\xBF\xBD"},
        {"a zero byte ends the text", std::string("a\0b", 3), "a"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        void* element = add_xml_elem(root, "e");
        add_xml_text(element, row.written);
        std::string text;
        EXPECT_TRUE(get_xml_text(element, text, false));
        EXPECT_EQ(text, row.read);
    }
}

TEST_F(xml_helpers, half_a_wide_character_is_read_as_a_replacement_character) {
    const XMLCh halves[] = {'a', 0xD800, 'b', 0xDC00, 0};
    document.root_element()->appendChild(document.dom()->createTextNode(halves));
    std::string text;
    EXPECT_TRUE(get_xml_text(root, text, false));
    EXPECT_EQ(text, "a\xEF\xBF\xBD"
                    "b\xEF\xBF\xBD");
}

TEST_F(xml_helpers, a_megabyte_of_text_comes_back) {
    std::string text(1 << 20, 'x');
    text += "&\xC3\xA4";
    add_xml_text(root, text);
    std::string back;
    EXPECT_TRUE(get_xml_text(root, back, false));
    EXPECT_TRUE(back == text);

    void* digits = holding(std::string(1 << 20, '9').c_str());
    int number = 5;
    EXPECT_TRUE(get_xml_text(digits, number));
    EXPECT_EQ(number, -1);
}

// Bytes

TEST_F(xml_helpers, bytes_come_back_in_a_buffer_of_twice_the_text) {
    std::vector<unsigned char> data;
    for (int i = 0; i < 100; ++i) {
        SCOPED_TRACE(i);
        void* element = add_xml_elem(root, "e");
        add_xml_value(element, data.data(), static_cast<long>(data.size()));
        const auto fetched = fetch(element);
        const auto length = (data.size() + 2) / 3 * 4;
        EXPECT_EQ(static_cast<std::size_t>(fetched.size), length);
        for (std::size_t at = 0; at < length * 2; ++at)
            EXPECT_EQ(fetched.bytes.get()[at], at < data.size() ? data[at] : 0) << at;
        data.push_back(static_cast<unsigned char>(255 - i));
    }
}

TEST_F(xml_helpers, keeps_the_length_of_the_text_for_the_size_of_bytes) {
    const unsigned char data[] = {1, 2, 3, 4};
    add_xml_value(root, data, 4);
    EXPECT_EQ(fetch(root).size, 8);
}

TEST_F(xml_helpers, no_text_gives_no_bytes) {
    void* nested = holding(nullptr);
    add_xml_elem(nested, "inner");
    for (void* element : {holding(nullptr), holding(""), nested}) {
        const auto fetched = fetch(element);
        EXPECT_EQ(fetched.bytes, nullptr);
        EXPECT_EQ(fetched.size, 0);
    }
}

TEST_F(xml_helpers, text_that_is_no_encoded_bytes_is_decoded_all_the_same) {
    const struct {
        const char* why;
        const char* text;
        int size;
        std::vector<unsigned char> bytes;
    } rows[] = {
        {"a character alone", "-", 1, {}},
        {"a pad alone", "[", 1, {0}},
        {"a foreign character", "+---", 4, {0x03, 0xFF, 0xFF}},
        {"text behind a pad", "AA[[----", 8, {0}},
        {"wide characters count in their units", "\xF0\x9F\x98\x80--", 4, {0, 0x0F, 0xFF}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto fetched = fetch(holding(row.text));
        EXPECT_EQ(fetched.size, row.size);
        std::vector<unsigned char> expected = row.bytes;
        expected.resize(static_cast<std::size_t>(row.size) * 2);
        EXPECT_EQ(std::vector<unsigned char>(fetched.bytes.get(), fetched.bytes.get() + expected.size()),
                  expected);
    }
}

TEST_F(xml_helpers, a_megabyte_of_bytes_comes_back_from_a_parsed_document) {
    std::vector<unsigned char> data(1 << 20);
    for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<unsigned char>(i * 31 + i / 251);
    add_xml_value(root, data.data(), static_cast<long>(data.size()));
    const dom_document parsed(document.text());
    const auto fetched = fetch(parsed.root());
    ASSERT_GE(static_cast<std::size_t>(fetched.size), data.size());
    EXPECT_TRUE(std::equal(data.begin(), data.end(), fetched.bytes.get()));
}

} // namespace kelm::test
