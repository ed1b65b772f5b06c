// Elements, attributes, texts and bytes written into a DOM tree; names, and calls on no element at all.
// Reading is in xml_reading_test.cpp; escapes and the text of bytes have tests of their own.
#include "tests/util/xml_world.h"

#include <climits>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace kelm::test {

using xml_helpers = xml_world;

// Writing

TEST_F(xml_helpers, a_new_element_comes_last_and_is_handed_out) {
    void* first = add_xml_elem(root, "first");
    void* second = add_xml_elem(root, "second");
    add_xml_elem(first, "inner");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(static_cast<xercesc::DOMElement*>(second), document.root_element()->getLastElementChild());
    EXPECT_EQ(document.text(), "<root><first><inner/></first><second/></root>");
}

TEST_F(xml_helpers, an_attribute_is_written_in_decimal) {
    const struct {
        const char* why;
        long long value;
        const char* text;
    } rows[] = {
        {"nothing", 0, R"(<root a="0"/>)"},
        {"a negative number", -1, R"(<root a="-1"/>)"},
        {"an unsigned number of 32 bits", 4294967295, R"(<root a="4294967295"/>)"},
        {"the highest", std::numeric_limits<long long>::max(), R"(<root a="9223372036854775807"/>)"},
        {"the lowest", std::numeric_limits<long long>::min(), R"(<root a="-9223372036854775808"/>)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        add_xml_att(root, "a", row.value);
        EXPECT_EQ(document.text(), row.text) << "the former attribute is replaced";
    }
    add_xml_att(root, "b", 2);
    EXPECT_EQ(document.text(), R"(<root a="-9223372036854775808" b="2"/>)");
}

TEST_F(xml_helpers, keeps_writing_the_kind_of_a_value_as_a_child) {
    add_xml_att(root, 1001U);
    add_xml_att(root, 4294967295U);
    EXPECT_EQ(document.text(), "<root><datatype>1001</datatype><datatype>4294967295</datatype></root>");
}

TEST_F(xml_helpers, text_is_appended_as_it_stands) {
    void* node = add_xml_text(root, std::string("&amp; &#10"));
    EXPECT_EQ(node, static_cast<void*>(document.root_element()->getFirstChild()));
    EXPECT_EQ(static_cast<xercesc::DOMText*>(node)->getNodeType(), xercesc::DOMNode::TEXT_NODE);
    std::string text;
    EXPECT_TRUE(get_xml_text(root, text, false));
    EXPECT_EQ(text, "&amp; &#10");
    EXPECT_EQ(document.text(), "<root>&amp;amp; &amp;#10</root>")
        << "the writer of the document escapes once more";
}

TEST_F(xml_helpers, a_number_is_appended_as_text) {
    void* node = add_xml_text(root, std::numeric_limits<long long>::min());
    EXPECT_EQ(node, static_cast<void*>(document.root_element()->getFirstChild()));
    EXPECT_EQ(document.text(), "<root>-9223372036854775808</root>");
    add_xml_text(root, 7U);
    EXPECT_EQ(document.root_element()->getChildNodes()->getLength(), 2U) << "a node of its own";
}

TEST_F(xml_helpers, an_empty_text_is_a_node_too) {
    EXPECT_NE(add_xml_text(root, std::string()), nullptr);
    std::string text = "before";
    EXPECT_TRUE(get_xml_text(root, text, true));
    EXPECT_EQ(text, "");
}

TEST_F(xml_helpers, bytes_are_written_as_a_section_of_their_text) {
    unsigned char data[] = {0xFF, 0xFF};
    void* pointer = data;
    add_xml_value(root, pointer, 2);
    EXPECT_EQ(document.root_element()->getFirstChild()->getNodeType(), xercesc::DOMNode::CDATA_SECTION_NODE);
    EXPECT_EQ(document.text(), "<root><![CDATA[--8[]]></root>");
}

TEST_F(xml_helpers, no_bytes_are_written_as_an_empty_section) {
    const unsigned char data[] = {1, 2, 3};
    const struct {
        const char* why;
        const void* data;
        long size;
    } rows[] = {{"a size of nothing", data, 0}, {"below it", data, LONG_MIN}, {"no data", nullptr, 3}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        void* element = add_xml_elem(root, "e");
        add_xml_value(element, row.data, row.size);
        const xercesc::DOMNode* section = static_cast<xercesc::DOMElement*>(element)->getFirstChild();
        ASSERT_NE(section, nullptr);
        EXPECT_EQ(section->getNodeType(), xercesc::DOMNode::CDATA_SECTION_NODE);
        EXPECT_EQ(xercesc::XMLString::stringLen(section->getNodeValue()), 0U);
    }
}

TEST_F(xml_helpers, more_bytes_than_text_can_hold_are_refused_unread) {
    const unsigned char one = 1;
    EXPECT_THROW(add_xml_value(root, &one, LONG_MAX), std::length_error);
    EXPECT_THROW(add_xml_value(root, &one, INT_MAX), std::length_error);
    EXPECT_EQ(document.text(), "<root/>");
}

// Names

TEST_F(xml_helpers, keeps_names_cut_at_ninety_nine_characters) {
    for (const std::size_t length : {98U, 99U, 100U, 101U, 102U, 5000U}) {
        SCOPED_TRACE(length);
        const dom_document own;
        const std::string name(length, 'n');
        const std::string cut = name.substr(0, 99);
        add_xml_att(own.root(), name.c_str(), 4);
        add_xml_elem(own.root(), name.c_str());
        EXPECT_EQ(own.text(), "<root " + cut + "=\"4\"><" + cut + "/></root>");

        int number = 0;
        EXPECT_TRUE(get_xml_att(own.root(), name.c_str(), number));
        EXPECT_EQ(number, 4);
        EXPECT_NE(get_xml_elem(own.root(), name.c_str()), nullptr);
        EXPECT_EQ(get_xml_elem(own.root(), name.c_str()), get_xml_elem(own.root(), cut.c_str()));
    }
}

TEST_F(xml_helpers, a_long_name_that_another_hand_wrote_is_not_found) {
    const std::string name(100, 'n');
    const dom_document parsed("<r><" + name + "/></r>");
    EXPECT_EQ(get_xml_elem(parsed.root(), name.c_str()), nullptr);
}

TEST_F(xml_helpers, characters_are_counted_and_not_bytes) {
    std::string name;
    for (int i = 0; i < 99; ++i) name += "\xC3\xA9";
    void* element = add_xml_elem(root, name.c_str());
    EXPECT_EQ(xercesc::XMLString::stringLen(static_cast<xercesc::DOMElement*>(element)->getNodeName()), 99U);
    EXPECT_EQ(get_xml_elem(root, name.c_str()), element);
    EXPECT_EQ(document.text(), "<root><" + name + "/></root>");
}

TEST_F(xml_helpers, a_name_that_xml_does_not_allow_raises_the_exception_of_the_tree) {
    std::string half_a_character(98, 'n');
    half_a_character += "\xF0\x9F\x98\x80";
    for (const char* name : {"", "a b", "1a", "<", half_a_character.c_str()}) {
        SCOPED_TRACE(name);
        EXPECT_THROW(add_xml_elem(root, name), xercesc::DOMException);
        EXPECT_THROW(add_xml_att(root, name, 1), xercesc::DOMException);
    }
    EXPECT_THROW(add_xml_elem(root, nullptr), xercesc::DOMException);
    EXPECT_THROW(add_xml_att(root, nullptr, 1), xercesc::DOMException);
    EXPECT_EQ(document.text(), "<root/>");
}

TEST_F(xml_helpers, a_wrong_byte_in_a_name_becomes_a_replacement_character) {
    void* element = add_xml_elem(root, "a\xFF");
    EXPECT_EQ(document.text(), "<root><a\xEF\xBF\xBD/></root>");
    EXPECT_EQ(get_xml_elem(root, "a\xFF"), element);
}

// No element

TEST(xml_helpers_on_no_element, nothing_is_added) {
    EXPECT_EQ(add_xml_elem(nullptr, "e"), nullptr);
    EXPECT_EQ(add_xml_text(nullptr, std::string("text")), nullptr);
    EXPECT_EQ(add_xml_text(nullptr, 1), nullptr);
    EXPECT_NO_THROW(add_xml_att(nullptr, "a", 1));
    EXPECT_NO_THROW(add_xml_att(nullptr, 1U));
    EXPECT_NO_THROW(add_xml_value(nullptr, "ab", 2));
}

TEST(xml_helpers_on_no_element, nothing_is_found) {
    std::vector<void*> found;
    get_child_elems_by_name(nullptr, "e", found);
    EXPECT_TRUE(found.empty());
    EXPECT_EQ(get_xml_elem(nullptr, "e"), nullptr);

    unsigned long number = 5;
    int small = 5;
    unsigned int positive = 5;
    bool flag = true;
    std::string text = "before";
    EXPECT_FALSE(get_xml_att(nullptr, "a", number));
    EXPECT_FALSE(get_xml_att(nullptr, "a", small));
    EXPECT_FALSE(get_xml_att(nullptr, "a", positive));
    EXPECT_FALSE(get_xml_att(nullptr, positive));
    EXPECT_FALSE(get_xml_text(nullptr, number));
    EXPECT_FALSE(get_xml_text(nullptr, small));
    EXPECT_FALSE(get_xml_text(nullptr, flag));
    EXPECT_FALSE(get_xml_text(nullptr, text, true));
    EXPECT_EQ(number, 5U);
    EXPECT_EQ(small, 5);
    EXPECT_EQ(positive, 5U);
    EXPECT_TRUE(flag);
    EXPECT_EQ(text, "before");

    const auto fetched = fetch(nullptr);
    EXPECT_EQ(fetched.bytes, nullptr);
    EXPECT_EQ(fetched.size, 0);
}

} // namespace kelm::test
