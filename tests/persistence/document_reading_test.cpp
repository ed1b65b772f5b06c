// What a reader makes of the document of a model, and what it does not need.
// What is written is model_document_test; documents written by hand are approved_documents_test.
#include "tests/persistence/model_document.h"

#include <gtest/gtest.h>

#include <functional>

namespace kelm::test {
namespace {

TEST_F(model_document, has_its_counters_and_its_identity_in_attributes) {
    const std::string types = R"(<meta_model version="8" minor_version="0"><meta_objects/></meta_model></m>)";
    ASSERT_TRUE(load(
        R"(<m id="1" model_id="{00000001-0002-0003-0405-060708090A0B}" last_id="77" last_udp_id="50077">)" +
        types));
    EXPECT_EQ(id_of(copy), (GUID{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}}));
    EXPECT_EQ(copy->last_object_id(), 77U);
    EXPECT_EQ(fw.create_object(types::thing, copy->as_object())->id(), 78U);
    EXPECT_EQ(copy->add_user_defined_property(types::part, "Size", data_type::string, "", 0)->id(), 50078U);
    ASSERT_TRUE(load(R"(<m id="1" last_id="4294967294">)" + types));
    EXPECT_EQ(copy->last_object_id(), 4294967294U);
}

TEST_F(model_document, keeps_missing_attributes_readable_as_zero_but_for_the_identity) {
    make_copy();
    const GUID before = id_of(copy);
    const dom_document from{"<m><meta_model><meta_objects/></meta_model></m>"};
    ASSERT_TRUE(copy->read(nullptr, from.root()));
    EXPECT_EQ(copy->last_object_id(), 0U);
    EXPECT_EQ(copy->as_object()->id(), 0U);
    EXPECT_EQ(id_of(copy), before);
    const dom_document bad{R"(<m id="1" last_id="x" model_id="{0}"><meta_model version="-1"/></m>)"};
    ASSERT_TRUE(copy->read(nullptr, bad.root())) << "version -1 is older than any";
    EXPECT_EQ(copy->last_object_id(), 0U);
    EXPECT_EQ(id_of(copy), before);
}

TEST_F(model_document, without_an_element_nothing_happens) {
    EXPECT_FALSE(model->write(nullptr, true, 0, true, nullptr));
    EXPECT_FALSE(model->save_as_new(nullptr, true, 0, nullptr));
    EXPECT_FALSE(model->read(nullptr, nullptr));
    EXPECT_FALSE(root->write(nullptr, nullptr));
}

TEST_F(model_document, without_types_is_refused_with_its_identity_taken) {
    EXPECT_FALSE(load(R"(<m id="1" last_id="9" model_id="{00000001-0002-0003-0405-060708090A0B}">)"
                      R"(<childs><child type="100" id="2"/></childs><x><meta_model version="8"/></x></m>)"));
    EXPECT_FALSE(copy->as_object()->has_children());
    EXPECT_EQ(copy->last_object_id(), 9U);
    EXPECT_EQ(id_of(copy), (GUID{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}}));
}

TEST_F(model_document, without_a_list_of_types_is_read) {
    ASSERT_TRUE(
        load(R"(<m id="1"><meta_model version="8"/><childs><child type="100" id="2"/></childs></m>)"));
    EXPECT_TRUE(copied(2));
}

TEST_F(model_document, of_a_newer_version_is_refused_with_its_identity_taken) {
    thing("a");
    const std::string document = saved();
    for (const auto& [known, minor, taken] :
         {std::tuple{7U, 0U, false}, {7U, 99U, false}, {8U, 0U, true}, {9U, 0U, true}, {8U, 1U, true}}) {
        SCOPED_TRACE(std::to_string(known) + "." + std::to_string(minor));
        EXPECT_EQ(load(document, known, minor), taken);
        EXPECT_EQ(copy->as_object()->has_children(), taken);
        EXPECT_EQ(id_of(copy), id_of(model));
    }
    EXPECT_FALSE(load(with(document, R"(minor_version="0")", R"(minor_version="1")")));
}

TEST_F(model_document, is_read_whatever_else_is_in_it) {
    object* const a = thing("a");
    object* const b = part("b", a);
    give(b, props::reference, reference(a));
    std::string document = saved();
    document = before(document, "<meta_model", "<!-- one --> words <childz/><props2/>");
    document = with(document, "<childs><child id=\"3\"",
                    "<x><childs/></x> <childs also=\"this\"> w <child more=\"7\" id=\"3\"");
    document = with(document, "<prop id=\"13\">", "<prop2/><prop colour=\"red\" id=\"13\">  <x/>");
    EXPECT_NE(document, saved());
    ASSERT_TRUE(load(document));
    EXPECT_EQ(dump_of(*copy), dump());
}

TEST_F(model_document, counts_the_first_list_of_a_name_alone) {
    object* const a =
        load_object("<props><prop id=\"1\"><datatype>6</datatype><value>first</value></prop></props>"
                    "<props><prop id=\"10\"><datatype>6</datatype><value>second</value></prop></props>"
                    "<childs/><childs><child type=\"101\" id=\"3\"/></childs>");
    EXPECT_EQ(object_name(a), "first");
    EXPECT_FALSE(a->defines_property(props::text));
    EXPECT_FALSE(a->has_children());
}

TEST_F(model_document, has_values_in_any_order_and_none_twice) {
    const std::string ten = "<prop id=\"10\"><datatype>6</datatype><value>ten</value></prop>";
    const std::string one = "<prop id=\"1\"><value>one</value><datatype>6</datatype></prop>";
    object* const a = load_object("<props>" + ten + one + "</props>");
    EXPECT_EQ(object_name(a), "one");
    EXPECT_EQ(as_text(a->get_own_property(props::text)), "ten");
    EXPECT_TRUE(refuses("<props>" + ten + one + ten + "</props>"));
}

TEST_F(model_document, with_half_a_value_is_refused) {
    struct row {
        const char* why;
        const char* prop;
    };
    const row rows[] = {
        {"no kind", "<prop id=\"10\"><value>x</value></prop>"},
        {"a kind without text", "<prop id=\"10\"><datatype/><value>x</value></prop>"},
        {"a kind of 0", "<prop id=\"10\"><datatype>0</datatype><value>x</value></prop>"},
        {"an unknown kind", "<prop id=\"10\"><datatype>4711</datatype><value>x</value></prop>"},
        {"no value", "<prop id=\"10\"><datatype>6</datatype></prop>"},
        {"a value further down", "<prop id=\"10\"><x><datatype>6</datatype><value>x</value></x></prop>"},
        {"nothing", "<prop id=\"10\"/>"},
    };
    for (const row& each : rows) {
        SCOPED_TRACE(each.why);
        EXPECT_TRUE(refuses(std::string{"<props>"} + each.prop + "</props>"));
        EXPECT_TRUE(copy->as_object()->children().size() <= 1);
    }
    EXPECT_FALSE(refuses("<props><prop><datatype>6</datatype><value/></prop></props>")) << "a property 0";
}

TEST_F(model_document, has_empty_values_where_there_is_no_text) {
    object* const a = load_object("<props><prop id=\"10\"><datatype>6</datatype><value/></prop>"
                                  "<prop id=\"11\"><datatype>4</datatype><value/></prop>"
                                  "<prop id=\"13\"><datatype>8</datatype><value/></prop>"
                                  "<prop id=\"14\"><datatype>1</datatype><value/></prop></props>");
    value_map own;
    a->own_properties(own);
    std::string says;
    for (const auto& [id, value] : own) says += dump_text(value.get()) + " ";
    EXPECT_EQ(says, "'' '0' #null [] ");
}

TEST_F(model_document, keeps_repeating_the_number_before_an_item_without_text) {
    object* const a =
        load_object("<not_inh_props><not_inh_prop/><not_inh_prop>10</not_inh_prop><not_inh_prop/>"
                    "<not_inh_prop>11</not_inh_prop></not_inh_props>");
    EXPECT_EQ(a->not_inheritable_properties(), (std::vector<u32>{0, 10, 11}));
    ASSERT_TRUE(
        load_content("<childs><child type=\"100\" id=\"2\"><inherits><inherit>3</inherit><inherit/>"
                     "<inherit>4</inherit></inherits><observers><observer>4</observer><observer/></observers>"
                     "</child><child type=\"100\" id=\"3\"/><child type=\"100\" id=\"4\"/></childs>"));
    EXPECT_EQ(copied(2)->inherits_from_list(0), (std::vector<object*>{copied(3), copied(4)}));
    EXPECT_EQ(copied(2)->observers(), (std::vector<observer*>{dynamic_cast<observer*>(copied(4))}));
}

TEST_F(model_document, with_a_child_of_a_type_that_cannot_be_there_is_refused) {
    for (const char* type : {"", "type=\"0\"", "type=\"1\"", "type=\"3\"", "type=\"104\"", "type=\"4711\""}) {
        SCOPED_TRACE(type);
        const std::size_t models = fw.models().size();
        EXPECT_FALSE(load_content(std::string{"<childs><child id=\"2\" "} + type + "/></childs>"));
        EXPECT_LE(fw.models().size(), models + 1);
        EXPECT_FALSE(copy->as_object()->has_children());
    }
}

TEST_F(model_document, leaves_out_what_leads_nowhere) {
    ASSERT_TRUE(
        load_content("<childs><child type=\"100\" id=\"2\"><props><prop id=\"13\"><datatype>8</datatype>"
                     "<value>99</value></prop></props><inherits><inherit>99</inherit><inherit>2</inherit>"
                     "</inherits><observers><observer>99</observer></observers></child></childs>"));
    EXPECT_EQ(dump_of(*copy),
              "1 type 1 state 0 owner -1\n  children 2\n2 type 100 state 0 owner 1\n  13 = #null\n");
}

TEST_F(model_document, leaves_circles_of_bases_open) {
    ASSERT_TRUE(load_content(
        "<childs><child type=\"100\" id=\"2\"><inherits><inherit>3</inherit></inherits></child>"
        "<child type=\"100\" id=\"3\"><inherits><inherit>2</inherit></inherits></child></childs>"));
    EXPECT_EQ(copied(2)->inherits_from_list(0).size() + copied(3)->inherits_from_list(0).size(), 1U);
}

TEST_F(model_document, finds_the_first_of_two_objects_with_one_id) {
    ASSERT_TRUE(
        load_content("<childs><child type=\"100\" id=\"2\"/><child type=\"101\" id=\"2\"/></childs>"));
    EXPECT_EQ(copied(2)->type(), types::thing);
    EXPECT_EQ(copy->as_object()->children().size(), 2U);
}

TEST_F(model_document, of_trees_deeper_than_the_stack_is_read_and_written) {
    constexpr int depth = 20000;
    const dom_document from{document_with("")};
    void* at = from.root();
    for (u32 id = 2; id != depth + 2; ++id) {
        at = add_xml_elem(add_xml_elem(at, "childs"), "child");
        add_xml_att(at, "type", types::thing);
        add_xml_att(at, "id", id);
    }
    make_copy();
    ASSERT_TRUE(copy->read(nullptr, from.root()));
    EXPECT_TRUE(copied(depth + 1));
    const dom_document into;
    EXPECT_TRUE(copy->write(nullptr, false, 0, false, into.root()));
    int levels = 0;
    for (void* each = into.root(); each; each = get_xml_elem(get_xml_elem(each, "childs"), "child")) ++levels;
    EXPECT_EQ(levels, depth + 1);
}

} // namespace
} // namespace kelm::test
