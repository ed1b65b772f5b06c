// Models in documents: what stands where, and that it comes back.
// What a reader makes of documents that others have written is document_reading_test; histories are history_document_test.
#include "tests/persistence/model_document.h"

#include <gtest/gtest.h>

#include <functional>

namespace kelm::test {
namespace {

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

} // namespace
} // namespace kelm::test
