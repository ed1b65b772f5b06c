// Models in documents: what stands where, what a reader makes of it, and what it does not need.
// Histories are history_document_test; documents written by hand are approved_documents_test.
#include "tests/persistence/document_world.h"

#include <gtest/gtest.h>

#include <functional>

namespace kelm::test {
namespace {

class model_document : public document_world {
protected:
    /// \returns the lines of what stands behind the types, history included
    static std::string tree_of(const std::string& document) {
        const std::string lines = canonical_text(document);
        const std::size_t behind = lines.find("\n  ", lines.find("  meta_model") + 3);
        std::size_t at = behind;
        while (at != std::string::npos && lines.compare(at + 1, 4, "    ") == 0)
            at = lines.find('\n', at + 1);
        return at == std::string::npos || at + 1 == lines.size() ? std::string{} : lines.substr(at);
    }
    void give(object* to, u32 id, const abstract_property& value) {
        begin();
        ASSERT_TRUE(to->set_property(id, value));
        end();
    }
    /// Reads a document with this below the model's element.  \returns what read() answered
    bool load_content(const std::string& content) { return load(document_with(content)); }
    /// Reads one object of type thing, whose id is 2, with these items.
    object* load_object(const std::string& items) {
        const bool was_read =
            load_content("<childs><child type=\"100\" id=\"2\">" + items + "</child></childs>");
        EXPECT_TRUE(was_read) << items;
        return copied(2);
    }
    /// \returns whether reading such an object is refused
    bool refuses(const std::string& items) {
        return !load_content("<childs><child type=\"100\" id=\"2\">" + items + "</child></childs>");
    }
    GUID id_of(const kelm::model* of) const {
        GUID id;
        of->model_id(id);
        return id;
    }
};

// Writing

TEST_F(model_document, of_an_empty_model_has_its_identity_its_types_and_nothing_more) {
    const std::string id = property<GUID>{id_of(model)}.to_string();
    EXPECT_EQ(id.size(), 38U);
    const std::string lines = canonical_text(saved());
    EXPECT_TRUE(lines.starts_with("root id=\"1\" last_id=\"" + std::to_string(model->last_object_id()) +
                                  "\" last_udp_id=\"50000\" model_id=\"" + id +
                                  "\"\n  meta_model minor_version=\"0\" version=\"8\"\n    meta_objects\n"
                                  "      meta_object id=\"49999\"\n"))
        << lines;
    EXPECT_EQ(tree_of(saved()), "") << "no childs, no history";
}

TEST_F(model_document, has_an_object_item_by_item) {
    object* const base = thing("base");
    object* const a = thing("a");
    object* const below = part("below", a);
    give(a, props::number, number(-7));
    give(a, props::reference, reference(base));
    begin();
    ASSERT_TRUE(a->add_inherits_from(base));
    ASSERT_TRUE(a->set_property_not_inheritable(props::text, true));
    ASSERT_TRUE(a->set_property_not_inheritable(props::number, true));
    ASSERT_TRUE(a->attach(dynamic_cast<observer*>(below)));
    ASSERT_TRUE(a->attach(dynamic_cast<observer*>(base)));
    end();
    EXPECT_EQ(tree_of(saved()), R"(
  childs
    child id="3" type="100"
      props
        prop id="1"
          datatype: 6
          value: base
    child id="4" type="100"
      props
        prop id="1"
          datatype: 6
          value: a
        prop id="11"
          datatype: 4
          value: -7
        prop id="13"
          datatype: 8
          value: 3
      not_inh_props
        not_inh_prop: 10
        not_inh_prop: 11
      inherits
        inherit: 3
      observers
        observer: 3
        observer: 5
      childs
        child id="5" type="101"
          props
            prop id="1"
              datatype: 6
              value: below
)");
}

TEST_F(model_document, leaves_out_what_a_stream_leaves_out) {
    object* const a = thing("a");
    give(a, 4711, text("of no property"));
    EXPECT_FALSE(has(saved(), "4711"));
    begin();
    meta_property* const made =
        model->add_user_defined_property(types::thing, "Brief", data_type::string, "", 0);
    end();
    give(a, made->id(), text("not for ever"));
    EXPECT_TRUE(has(saved(), "not for ever"));
    begin();
    meta_object* const type = model->meta_model()->find_meta_object(types::thing);
    ASSERT_TRUE(
        model->set_user_defined_property_attribute(type, made, attribute_id::non_persistent, flag(true)));
    end();
    EXPECT_FALSE(has(saved(), "not for ever"));
}

TEST_F(model_document, of_an_object_alone_is_its_record_in_the_element) {
    object* const a = thing("a");
    part("p", a);
    const dom_document into;
    EXPECT_TRUE(a->write(nullptr, into.root()));
    EXPECT_EQ(into.text(),
              R"(<root id="3"><props><prop id="1"><datatype>6</datatype><value>a</value></prop></props>)"
              R"(<childs><child id="4" type="101"><props><prop id="1"><datatype>6</datatype>)"
              R"(<value>p</value></prop></props></child></childs></root>)");
}

TEST_F(model_document, is_put_beside_what_the_element_has_already) {
    const dom_document into{R"(<mine kept="yes"><other/></mine>)"};
    ASSERT_TRUE(model->write(nullptr, false, 0, false, into.root()));
    EXPECT_TRUE(has(into.text(), R"(kept="yes")"));
    EXPECT_TRUE(has(into.text(), "<other/><meta_model"));
    make_copy();
    EXPECT_TRUE(copy->read(nullptr, into.root()));
}

TEST_F(model_document, is_not_written_inside_a_transaction) {
    const GUID before = id_of(model);
    begin();
    const dom_document into;
    EXPECT_FALSE(model->write(nullptr, true, 0, true, into.root()));
    EXPECT_FALSE(model->save_as_new(nullptr, true, 0, into.root()));
    EXPECT_EQ(into.text(), "<root/>");
    EXPECT_EQ(id_of(model), before);
    end();
}

TEST_F(model_document, saved_as_new_has_a_new_identity_and_ends_the_modification) {
    begin();
    thing("a");
    end();
    const GUID before = id_of(model);
    const dom_document into;
    EXPECT_TRUE(model->save_as_new(nullptr, false, 0, into.root()));
    EXPECT_FALSE(id_of(model) == before);
    EXPECT_FALSE(model->is_modified());
    make_copy();
    ASSERT_TRUE(copy->read(nullptr, into.root()));
    EXPECT_EQ(id_of(copy), id_of(model));
}

TEST_F(model_document, modification_ends_only_where_it_is_asked_for) {
    begin();
    thing("a");
    end();
    saved(true);
    EXPECT_TRUE(model->is_modified());
    const dom_document into;
    EXPECT_TRUE(model->write(nullptr, true, 0, true, into.root()));
    EXPECT_FALSE(model->is_modified());
    EXPECT_TRUE(has(into.text(), R"(trans_executed="0")")) << "counted from this save on";
}

TEST_F(model_document, leaves_a_stream_beside_it_alone) {
    thing("a");
    begin();
    part("b");
    end();
    std::ostringstream out;
    const dom_document into;
    EXPECT_TRUE(model->write(&out, true, 0, false, into.root()));
    EXPECT_TRUE(root->write(&out, dom_document{}.root()));
    EXPECT_EQ(out.str(), "");
    out.setstate(std::ios_base::failbit);
    EXPECT_TRUE(model->write(&out, true, 0, true, dom_document{}.root())) << "its state does not matter";
    EXPECT_FALSE(model->is_modified());
    std::istringstream in{"stays"};
    make_copy();
    EXPECT_TRUE(copy->read(&in, into.root()));
    EXPECT_EQ(in.tellg(), 0);
    EXPECT_EQ(dump_of(*copy), dump());
}

TEST_F(model_document, that_cannot_be_read_back_is_not_written) {
    object* const a = thing("a");
    vector_property deep;
    vector_property* at = &deep;
    for (int i = 1; i != 1001; ++i) {
        auto* const inner = new vector_property;
        at->elements.push_back(inner);
        at = inner;
    }
    give(a, props::list, deep);
    EXPECT_TRUE(model->is_modified());
    EXPECT_FALSE(model->write(nullptr, false, 0, true, dom_document{}.root()));
    EXPECT_FALSE(a->write(nullptr, dom_document{}.root()));
    EXPECT_TRUE(model->is_modified());
    give(a, props::list, vector_property{});
    EXPECT_TRUE(model->write(nullptr, false, 0, true, dom_document{}.root()))
        << "the next one is as good as any";
}

// Both ways

TEST_F(model_document, read_back_says_the_same_and_writes_the_same) {
    object* const a = thing("a");
    object* const b = thing("b", a);
    object* const c = part("c", a);
    object* const d = part("d", a);
    give(c, props::text, text("<&> \"'\t \xC3\xA4"));
    give(c, props::real, property<double>{0.25});
    give(c, props::reference, reference(a));
    give(b, props::text, text(""));
    give(d, props::flag, flag(true));
    begin();
    ASSERT_TRUE(b->add_inherits_from(a));
    ASSERT_TRUE(a->set_child_position(d, 0));
    ASSERT_TRUE(a->attach(dynamic_cast<observer*>(d)));
    ASSERT_TRUE(a->set_property_not_inheritable(props::flag, true));
    end();
    const std::string document = saved();
    ASSERT_TRUE(load(document));
    EXPECT_EQ(dump_of(*copy), dump());
    EXPECT_EQ(saved(*copy), document);
    EXPECT_EQ(names_of(copied(a)->children()), "b d c") << "the order of children is that of the document";
    EXPECT_FALSE(copy->is_modified());
    EXPECT_EQ(copy->message_count(), 0U);
    EXPECT_FALSE(copy->can_undo());
    EXPECT_EQ(copied(a)->state(), state::normal);
    EXPECT_EQ(id_of(copy), id_of(model));
    EXPECT_EQ(copy->last_object_id(), model->last_object_id());
}

TEST_F(model_document, has_texts_escaped_where_the_application_wants_it) {
    class handler final : public qdxml {
        owned<qdxml*> clone() const override { return new handler(*this); }
        bool needs_xml_processing(u32 id) const override { return id == props::text; }
    };
    class none final : public qdxml {
        owned<qdxml*> clone() const override { return new none(*this); }
        bool needs_xml_processing(u32) const override { return false; }
    };
    fw.set_xml_handler(handler{});
    object* const a = thing("a&\n");
    give(a, props::text, text("a&\r\n"));
    const std::string document = saved();
    EXPECT_TRUE(has(document, "<value>a&amp;\n</value>")) << document;
    EXPECT_TRUE(has(document, "<value>a&amp;amp;&amp;#13&amp;#10</value>")) << document;
    ASSERT_TRUE(load(document));
    EXPECT_EQ(as_text(copied(a)->get_property(props::text)), "a&\r\n");
    EXPECT_EQ(object_name(copied(a)), "a&\n");
    fw.set_xml_handler(none{});
}

TEST_F(model_document, keeps_user_defined_properties_written_and_not_read_back) {
    begin();
    meta_property* const made =
        model->add_user_defined_property(types::thing, "Colour", data_type::string, "said so", 0);
    end();
    object* const a = thing("a");
    give(a, made->id(), text("red"));
    const std::string document = saved();
    const std::string lines = canonical_text(document);
    const std::string record =
        "      meta_object id=\"100\"\n        udps\n          udp id=\"50001\"\n            atts\n"
        "              att id=\"0\"\n                datatype: 6\n                value: Colour\n"
        "              att id=\"1\"\n                datatype: 6\n                value: said so\n"
        "              att id=\"2\"\n                datatype: 4\n                value: 6\n"
        "            class: ";
    EXPECT_TRUE(has(lines, record)) << lines;
    EXPECT_FALSE(has(lines, "meta_object id=\"101\"")) << "types without one are left out";

    ASSERT_TRUE(load(document));
    EXPECT_EQ(copy->meta_model()->find_meta_object(types::thing)->find_property(made->id()), nullptr);
    EXPECT_TRUE(copied(a)->defines_property(made->id())) << "the value has come";
    EXPECT_FALSE(has(saved(*copy), "red")) << "and does not go again";
    EXPECT_FALSE(has(saved(*copy), "meta_object id=\"100\""));
    begin();
    EXPECT_EQ(copy->add_user_defined_property(types::part, "Size", data_type::string, "", 0)->id(),
              made->id() + 1)
        << "the counter has come";
    end();
}

TEST_F(model_document, with_properties_in_the_models_element_gives_them_to_every_type_that_is_listed) {
    const std::string record =
        R"(<udp id="50007"><atts><att id="0"><datatype>6</datatype><value>Size</value></att>)"
        R"(<att id="2"><datatype>4</datatype><value>4</value></att></atts>)"
        R"(<class>9</class></udp>)";
    const std::string none = R"(<udp id="50008"/>)";
    const std::string two = R"(<udp id="50009"><atts/><x><atts/></x></udp>)";
    const std::string empty = R"(<udp id="50010"><atts/></udp>)";
    const std::string document =
        "<m id=\"1\"><meta_model version=\"8\" minor_version=\"0\"><meta_objects><meta_object id=\"100\"/>"
        "<meta_object id=\"101\"/><meta_object "
        "id=\"4711\"/><meta_object/></meta_objects></meta_model><udps>" +
        record + none + two + empty + "</udps></m>";
    ASSERT_TRUE(load(document));
    for (const u32 type : {types::thing, types::part}) {
        SCOPED_TRACE(type);
        const meta_object* const at = copy->meta_model()->find_meta_object(type);
        ASSERT_TRUE(at->find_property(50007));
        EXPECT_EQ(at->find_property(50007)->name(), "Size");
        EXPECT_EQ(at->find_property(50007)->property_class(), data_type::integer);
        EXPECT_EQ(at->find_property(50008), nullptr) << "without attributes";
        EXPECT_EQ(at->find_property(50009), nullptr) << "with two lists of them";
        EXPECT_TRUE(at->find_property(50010)) << "with an empty list";
    }
    EXPECT_EQ(copy->meta_model()->find_meta_object(types::other)->find_property(50007), nullptr);
    EXPECT_TRUE(has(canonical_text(saved(*copy)), "udp id=\"50007\"")) << "written where it belongs";
}

// Reading

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
