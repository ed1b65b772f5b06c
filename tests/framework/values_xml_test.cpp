// Values in elements of documents: what each kind writes, what it reads, and what is not there.
// Their bytes are values_binary_test; where values stand in a document is told by the tests of persistence.
#include "tests/support/box.h"
#include "tests/support/dom_document.h"
#include "tests/support/unregistered_value.h"
#include "tests/support/world.h"

#include "util/document_state.h"

#include <kelm/property.h>
#include <kelm/qdxml.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelm::test {
namespace {

constexpr u32 some_property = 10;

/// \returns the root of a document that the value was written into, as text
std::string xml_of(const abstract_property& value, u32 id = some_property) {
    const dom_document document;
    value.write_xml(document.root(), id);
    return document.text();
}

/// \returns what stands between the tags of the root
std::string content_of(const abstract_property& value, u32 id = some_property) {
    const std::string text = xml_of(value, id);
    if (text == "<root/>") return {};
    return text.substr(6, text.size() - 13);
}

/// Lets a value read itself from an element with this content.
void read_from(abstract_property& value, const std::string& content, u32 id = some_property,
               std::vector<reference_record>* references = nullptr, object* holder = nullptr) {
    const dom_document document("<root>" + content + "</root>");
    ASSERT_TRUE(document.root_element()) << content;
    std::vector<reference_record> unused;
    value.read_xml(document.root(), id, references ? *references : unused, holder);
}

class values_xml : public testing::Test {
protected:
    values_xml() { started_framework(); }
};

TEST_F(values_xml, each_kind_is_its_text_and_reads_it) {
    struct row {
        const char* why;
        box value;
        const char* content;
    };
    std::vector<row> rows;
    rows.push_back({"true", boxed<bool>(true), "True"});
    rows.push_back({"false", boxed<bool>(false), "False"});
    rows.push_back({"short", boxed<short>(-2), "-2"});
    rows.push_back({"int", boxed<int>(std::numeric_limits<int>::min()), "-2147483648"});
    rows.push_back({"long has 32 bits", boxed<long>(2147483647), "2147483647"});
    rows.push_back({"unsigned, as the number that has its bits", boxed<unsigned>(0xFFFFFFFFU), "-1"});
    rows.push_back({"long long", boxed<long long>(1099511627776), "1099511627776"});
    rows.push_back({"double", boxed<double>(-0.5), "-0.5"});
    rows.push_back({"double with an exponent", boxed<double>(1e100), "1e+100"});
    rows.push_back({"text", boxed<std::string>("a b"), "a b"});
    rows.push_back(
        {"text that has to be escaped by whoever prints", boxed<std::string>("a<b&c"), "a&lt;b&amp;c"});
    rows.push_back(
        {"text beyond 7 bits", boxed<std::string>("\xC3\xA4\xE2\x82\xAC"), "\xC3\xA4\xE2\x82\xAC"});
    rows.push_back({"blanks", boxed<std::string>("  "), "  "});
    rows.push_back({"model id",
                    boxed<GUID>(GUID{0x04030201, 0x0605, 0x0807, {9, 10, 11, 12, 13, 14, 15, 16}}),
                    "{04030201-0605-0807-090A-0B0C0D0E0F10}"});
    for (const row& each : rows) {
        SCOPED_TRACE(each.why);
        EXPECT_EQ(content_of(*each.value), each.content);
        const box fresh{
            framework::instance().create_value(framework::instance().data_type_of(each.value.get()))};
        if (!fresh) continue; // unsigned has no data type of its own
        read_from(*fresh, each.content);
        EXPECT_TRUE(fresh->equals(each.value.get())) << fresh->to_string();
    }
    property<unsigned> of_32_bits;
    for (const char* content : {"-1", "4294967295"}) {
        read_from(of_32_bits, content);
        EXPECT_EQ(of_32_bits.value, 0xFFFFFFFFU) << content;
    }
}

TEST_F(values_xml, an_empty_text_adds_nothing) {
    EXPECT_EQ(xml_of(property<std::string>{}), "<root/>");
    EXPECT_EQ(xml_of(vector_property{}), "<root/>");
    EXPECT_EQ(xml_of(unregistered_value{}), "<root/>") << "a kind whose text is empty";
}

TEST_F(values_xml, an_element_without_text_leaves_the_value_alone) {
    property<int> seven{7};
    property<bool> yes{true};
    property<std::string> words{"words"};
    property<double> half{0.5};
    for (abstract_property* each : std::initializer_list<abstract_property*>{&seven, &yes, &words, &half}) {
        const std::string before = each->to_string();
        read_from(*each, "");
        read_from(*each, "<other>1</other>");
        EXPECT_EQ(each->to_string(), before);
    }
}

TEST_F(values_xml, bad_texts_read_as_far_as_they_go) {
    property<int> number{7};
    for (const auto& [content, value] :
         {std::pair{"x", 0}, {"12x", 12}, {" 12", 12}, {"1e9", 1}, {"--1", 0}}) {
        read_from(number, content);
        EXPECT_EQ(number.value, value) << content;
    }
    property<bool> truth;
    for (const auto& [content, value] :
         {std::pair{"True", true}, {"true", true}, {"1", false}, {"yes", false}}) {
        read_from(truth, content);
        EXPECT_EQ(truth.value, value) << content;
    }
    property<GUID> id{GUID{1, 2, 3, {}}};
    read_from(id, "no id");
    EXPECT_EQ(id.to_string(), "{00000001-0002-0003-0000-000000000000}");
}

TEST_F(values_xml, keeps_doubles_and_negative_long_longs_as_good_as_their_texts) {
    property<double> third{1.0 / 3.0};
    EXPECT_EQ(content_of(third), "0.333333");
    read_from(third, content_of(third));
    EXPECT_EQ(third.value, 0.333333);
    property<long long> big{-5};
    EXPECT_EQ(content_of(big), "-5");
    read_from(big, "-5");
    EXPECT_EQ(big.value, 0);
}

TEST_F(values_xml, keeps_an_id_map_as_two_words_that_are_dropped) {
    property<id_multimap> map{id_multimap{{1, 2}}};
    EXPECT_EQ(content_of(map), "TO DO");
    read_from(map, "TO DO");
    read_from(map, "1 2");
    property<id_multimap> fresh;
    read_from(fresh, "TO DO");
    EXPECT_TRUE(fresh.value.empty());
}

/// Wants the texts of one property escaped.
class escaping final : public qdxml {
public:
    explicit escaping(u32 id) : id_(id) {}
    owned<qdxml*> clone() const override { return new escaping(*this); }
    bool needs_xml_processing(u32 id) const override { return id == id_; }

private:
    u32 id_;
};

/// Wants nothing escaped, as if there were no handler.
constexpr u32 no_property = 0xFFFFFFFF;

TEST_F(values_xml, texts_are_escaped_for_the_properties_that_the_handler_names) {
    framework::instance().set_xml_handler(escaping{11});
    const property<std::string> words{"a<b\r\n\xC3\xA4"};
    EXPECT_EQ(content_of(words, 11), "a&amp;lt;b&amp;#13&amp;#10&amp;amp;apos;&amp;amp;apos;")
        << "escaped by the library, and again by who prints";
    const dom_document plain;
    words.write_xml(plain.root(), 10);
    EXPECT_EQ(plain.text(), "<root>a&lt;b&#xD;\n\xC3\xA4</root>");

    property<std::string> read;
    read_from(read, content_of(words, 11), 11);
    EXPECT_EQ(read.value, "a<b\r\n''") << "what is beyond 7 bits does not come back";
    read_from(read, "a&amp;lt;b", 10);
    EXPECT_EQ(read.value, "a&lt;b") << "another property is as it stands";
    read_from(read, "a&amp;lt;b", 11);
    EXPECT_EQ(read.value, "a<b");
    framework::instance().set_xml_handler(escaping{no_property});
}

TEST_F(values_xml, elements_are_asked_about_under_the_id_of_their_property) {
    framework::instance().set_xml_handler(escaping{11});
    vector_property list;
    list.elements.push_back(new property<std::string>{"<"});
    EXPECT_EQ(content_of(list, 11), "<elem><datatype>6</datatype><value>&amp;lt;</value></elem>");
    EXPECT_EQ(content_of(list, 10), "<elem><datatype>6</datatype><value>&lt;</value></elem>");
    vector_property read;
    read_from(read, content_of(list, 11), 11);
    EXPECT_TRUE(read.equals(&list));
    framework::instance().set_xml_handler(escaping{no_property});
}

class references_xml : public world {};

TEST_F(references_xml, are_the_ids_of_their_targets) {
    object* const a = thing("a");
    EXPECT_EQ(content_of(property<object*>{a}), std::to_string(a->id()));
    EXPECT_EQ(content_of(property<object*>{}), "") << "null has no text";
}

TEST_F(references_xml, wait_for_their_targets_when_they_are_read) {
    object* const a = thing("a");
    struct row {
        const char* why;
        const char* content;
        u32 id;
    };
    const row rows[] = {
        {"an object", "77", 77},         {"null", "", 0},
        {"null in words", "-1", npos32}, {"the highest id", "4294967294", 0xFFFFFFFE},
        {"no number", "a", 0},
    };
    for (const row& each : rows) {
        SCOPED_TRACE(each.why);
        property<object*> reference{a};
        std::vector<reference_record> references;
        read_from(reference, each.content, some_property, &references, a);
        EXPECT_EQ(reference.value, nullptr);
        ASSERT_EQ(references.size(), 1U);
        EXPECT_EQ(references[0].value, &reference);
        EXPECT_EQ(references[0].target_id, each.id);
        EXPECT_EQ(references[0].holder, a);
        EXPECT_FALSE(references[0].from_message);
    }
}

class vectors_xml : public values_xml {};

TEST_F(vectors_xml, are_elements_with_their_kinds_and_read_them_in_order) {
    auto inner = std::make_unique<vector_property>();
    inner->elements.push_back(new property<int>{1});
    vector_property list;
    list.elements = {new property<int>{7}, new property<std::string>{"x"}, inner.release(),
                     new vector_property, new property<unsigned>{9U}};
    const std::string content = "<elem><datatype>4</datatype><value>7</value></elem>"
                                "<elem><datatype>6</datatype><value>x</value></elem>"
                                "<elem><datatype>1</datatype><value>"
                                "<elem><datatype>4</datatype><value>1</value></elem></value></elem>"
                                "<elem><datatype>1</datatype><value/></elem>"
                                "<elem><datatype>4</datatype><value>9</value></elem>";
    EXPECT_EQ(content_of(list), content);
    vector_property read;
    read.elements.push_back(new property<int>{99});
    read_from(read, content);
    EXPECT_EQ(read.to_string(), list.to_string()) << "the former elements are gone";
    EXPECT_EQ(content_of(read), content);
    ASSERT_EQ(read.elements.size(), 5U);
    EXPECT_EQ(framework::instance().data_type_of(read.elements[4]), data_type::integer);
}

TEST_F(vectors_xml, leave_out_null_elements) {
    vector_property list;
    list.elements = {nullptr, new property<int>{7}, nullptr};
    EXPECT_EQ(content_of(list), "<elem><datatype>4</datatype><value>7</value></elem>");
}

TEST_F(vectors_xml, pass_over_what_is_no_element) {
    struct row {
        const char* why;
        const char* content;
        const char* says;
    };
    const row rows[] = {
        {"an unknown kind", "<elem><datatype>4711</datatype><value>1</value></elem>", ""},
        {"a kind of 0", "<elem><datatype>0</datatype><value>1</value></elem>", ""},
        {"no kind", "<elem><value>1</value></elem>", ""},
        {"a kind without text", "<elem><datatype/><value>1</value></elem>", ""},
        {"no value", "<elem><datatype>4</datatype></elem>", ""},
        {"an empty value", "<elem><datatype>4</datatype><value/></elem>", "0"},
        {"two values", "<elem><datatype>4</datatype><value>1</value><value>2</value></elem>", "1"},
        {"another order", "<elem><value>1</value><datatype>4</datatype></elem>", "1"},
        {"other names", "<element><datatype>4</datatype><value>1</value></element>", ""},
        {"deeper down", "<x><elem><datatype>4</datatype><value>1</value></elem></x>", ""},
        {"between others", "<!-- c --> <elem><datatype>4</datatype><value>1</value></elem> <x/>", "1"},
    };
    for (const row& each : rows) {
        SCOPED_TRACE(each.why);
        vector_property list;
        const document_pass pass;
        read_from(list, std::string(each.content) + "<elem><datatype>4</datatype><value>8</value></elem>");
        const std::string first = each.says;
        EXPECT_EQ(list.to_string(), first.empty() ? "8" : first + ", 8");
        EXPECT_FALSE(document_pass::has_failed());
    }
}

/// \returns the content of a vector with so many levels of vectors
std::string nested(int levels) {
    std::string text;
    for (int i = 1; i < levels; ++i) text += "<elem><datatype>1</datatype><value>";
    for (int i = 1; i < levels; ++i) text += "</value></elem>";
    return text;
}

TEST_F(vectors_xml, inside_vectors_go_a_thousand_levels_deep) {
    const document_pass pass;
    vector_property deep;
    read_from(deep, nested(1000));
    EXPECT_FALSE(document_pass::has_failed());
    EXPECT_EQ(content_of(deep), nested(1000).replace(nested(1000).find("<value></value>"), 15, "<value/>"));
    EXPECT_FALSE(document_pass::has_failed());
}

TEST_F(vectors_xml, deeper_than_that_fail_in_both_directions) {
    {
        const document_pass pass;
        vector_property deep;
        read_from(deep, nested(1001));
        EXPECT_TRUE(document_pass::has_failed());
    }
    vector_property deep;
    vector_property* at = &deep;
    for (int i = 1; i != 1001; ++i) {
        auto* const inner = new vector_property;
        at->elements.push_back(inner);
        at = inner;
    }
    const document_pass pass;
    xml_of(deep);
    EXPECT_TRUE(document_pass::has_failed());
}

TEST_F(vectors_xml, that_fail_alone_leave_the_next_one_alone) {
    vector_property deep;
    read_from(deep, nested(1001));
    vector_property list;
    read_from(list, "<elem><datatype>4</datatype><value>8</value></elem>");
    EXPECT_EQ(list.to_string(), "8");
    EXPECT_EQ(content_of(list), "<elem><datatype>4</datatype><value>8</value></elem>");
}

TEST_F(vectors_xml, with_an_element_that_nobody_could_read_fail) {
    vector_property list;
    list.elements.push_back(new unregistered_value);
    const document_pass pass;
    xml_of(list);
    EXPECT_TRUE(document_pass::has_failed());
}

} // namespace
} // namespace kelm::test
