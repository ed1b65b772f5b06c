// The records of meta things in documents.
// Their bytes are records_test; what a model's document has of them is tested with persistence.
#include "support/dom_document.h"
#include "support/meta_types.h"
#include "support/unregistered_value.h"

#include "util/document_state.h"

namespace kelm::test {

namespace {

std::string document_of(const meta_base& thing) {
    const dom_document into;
    thing.write(nullptr, into.root());
    return into.text();
}

/// \returns whether reading ended well
bool read_document(meta_base& thing, const std::string& text) {
    const dom_document from(text);
    if (!from.root_element()) ADD_FAILURE() << "no document: " << text;
    return thing.read(nullptr, from.root());
}

const std::string name_and_class = "<att id=\"0\"><datatype>6</datatype><value>ab</value></att>"
                                   "<att id=\"2\"><datatype>4</datatype><value>6</value></att>";
const std::string property_document =
    "<root id=\"12345\"><atts>" + name_and_class + "</atts><class>0</class></root>";

class meta_documents : public meta_types {};

TEST_F(meta_documents, of_a_property_are_its_id_its_own_attributes_and_its_class) {
    meta_property_impl it(12345);
    it.describe("ab", "");
    it.set_attribute_value(attribute_id::property_class, property<int>(6));
    EXPECT_EQ(document_of(it), property_document);
}

TEST_F(meta_documents, of_a_property_read_what_was_written) {
    meta_property_impl it;
    ASSERT_TRUE(read_document(it, property_document));
    EXPECT_EQ(it.id(), 12345U);
    EXPECT_EQ(it.name(), "ab");
    EXPECT_EQ(it.property_class(), data_type::string);
    EXPECT_EQ(document_of(it), property_document);
}

TEST_F(meta_documents, of_other_things_have_no_class) {
    meta_object_impl type(7, &application);
    EXPECT_EQ(document_of(type), "<root id=\"7\"/>");
    type.describe("ab", "");
    EXPECT_EQ(
        document_of(type),
        "<root id=\"7\"><atts><att id=\"0\"><datatype>6</datatype><value>ab</value></att></atts></root>");
}

TEST_F(meta_documents, have_no_inherited_attributes) {
    meta_property_impl base(1);
    base.describe("ab", "");
    meta_property_impl it(2);
    static_cast<meta_property&>(it).add_base(&base);
    EXPECT_EQ(document_of(it), "<root id=\"2\"><class>0</class></root>");
}

TEST_F(meta_documents, have_vectors_element_by_element) {
    meta_property_impl it(50001);
    vector_property choices;
    choices.elements = {new property<std::string>("one"), new property<unsigned>(2U)};
    it.set_attribute_value(attribute_id::default_value_choices, choices);
    const std::string text = document_of(it);
    EXPECT_EQ(
        text,
        "<root id=\"50001\"><atts><att id=\"8\"><datatype>1</datatype><value>"
        "<elem><datatype>6</datatype><value>one</value></elem>"
        "<elem><datatype>4</datatype><value>2</value></elem></value></att></atts><class>0</class></root>");
    meta_property_impl copy;
    ASSERT_TRUE(read_document(copy, text));
    EXPECT_EQ(text_of(copy, attribute_id::default_value_choices), "one, 2");
}

TEST_F(meta_documents, keeps_writing_a_class_that_is_not_read) {
    std::string bytes{"\x01\0\0\0\0\0\0\0\x2A\0\0\0", 12};
    std::istringstream in(bytes);
    meta_property_impl it;
    ASSERT_TRUE(it.read(&in, nullptr));
    EXPECT_EQ(document_of(it), "<root id=\"1\"><class>42</class></root>");
    meta_property_impl copy;
    ASSERT_TRUE(read_document(copy, "<root id=\"1\"><atts/><class>42</class></root>"));
    EXPECT_EQ(document_of(copy), "<root id=\"1\"><class>0</class></root>");
}

TEST_F(meta_documents, keeps_wanting_one_list_of_attributes_at_any_depth) {
    struct row {
        const char* why;
        std::string content;
        bool reads;
        const char* name;
    };
    const row rows[] = {
        {"none, as a thing without attributes is written", "", false, "No Name!"},
        {"one", "<atts>" + name_and_class + "</atts>", true, "ab"},
        {"an empty one", "<atts/>", true, "No Name!"},
        {"one further down", "<x><y><atts>" + name_and_class + "</atts></y></x>", true, "ab"},
        {"attributes further down in it", "<atts><x>" + name_and_class + "</x></atts>", true, "ab"},
        {"two", "<atts>" + name_and_class + "</atts><atts/>", false, "No Name!"},
        {"one and one further down", "<atts>" + name_and_class + "</atts><x><atts/></x>", false, "No Name!"},
        {"one inside the other", "<atts>" + name_and_class + "<atts/></atts>", false, "No Name!"},
        {"attributes outside", "<atts/>" + name_and_class, true, "No Name!"},
    };
    for (const row& each : rows) {
        SCOPED_TRACE(each.why);
        meta_property_impl it;
        EXPECT_EQ(read_document(it, "<root id=\"7\">" + each.content + "</root>"), each.reads);
        EXPECT_EQ(it.id(), 7U);
        EXPECT_EQ(it.name(), each.name);
    }
}

TEST_F(meta_documents, with_half_a_value_end_there) {
    struct row {
        const char* why;
        const char* attribute;
    };
    const row rows[] = {
        {"no kind", "<att id=\"1\"><value>x</value></att>"},
        {"an unknown kind", "<att id=\"1\"><datatype>4711</datatype><value>x</value></att>"},
        {"no value", "<att id=\"1\"><datatype>6</datatype></att>"},
    };
    for (const row& each : rows) {
        SCOPED_TRACE(each.why);
        meta_property_impl it;
        EXPECT_FALSE(read_document(it, "<root><atts>" + name_and_class + each.attribute + "</atts></root>"));
        EXPECT_EQ(it.name(), "ab") << "what came before it stays";
        meta_property_impl next;
        EXPECT_TRUE(read_document(next, property_document)) << "and the next one is as good as any";
    }
}

TEST_F(meta_documents, with_a_value_that_could_not_be_read_back_fail) {
    meta_property_impl it(1);
    it.set_attribute_value(attribute_id::default_value, unregistered_value{});
    const document_pass pass;
    document_of(it);
    EXPECT_TRUE(document_pass::has_failed());
}

TEST_F(meta_documents, are_preferred_to_a_stream) {
    std::ostringstream out;
    const dom_document document;
    meta_property_impl it(12345);
    it.write(&out, document.root());
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(document.text(), "<root id=\"12345\"><class>0</class></root>");
    std::istringstream in("stays");
    const dom_document from(property_document);
    EXPECT_TRUE(it.read(&in, from.root()));
    EXPECT_EQ(in.tellg(), 0);
    EXPECT_FALSE(it.read(nullptr, nullptr));
}

} // namespace
} // namespace kelm::test
