// The fields of messages in documents, by their names, and reading them back.
// Their bytes are property_record_test and structure_record_test; whole logs are tested with persistence.
#include "message/refresh_messages.h"
#include "message/transaction_messages.h"
#include "tests/message/record_world.h"
#include "tests/support/dom_document.h"

#include "util/document_state.h"

#include <kelm/structure_messages.h>

#include <gtest/gtest.h>

#include <functional>

namespace kelm::test {
namespace {

class message_documents : public record_world {
protected:
    /// \returns the element that a message was written into
    std::string document_of(const message& what, bool for_replay = false) const {
        const dom_document into;
        EXPECT_TRUE(what.write(nullptr, positions, into.root(), for_replay));
        return into.text();
    }
    /// \returns a text in which {a} to {d}, {owner} and {p} are the ids of the objects of the test
    std::string with_ids(std::string text) const {
        const std::pair<const char*, const object*> names[] = {
            {"{a}", a}, {"{b}", b}, {"{c}", c}, {"{p}", p}};
        for (const auto& [name, what] : names)
            for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name))
                text.replace(at, 3, std::to_string(what->id()));
        return text;
    }
    void expect_document(const message& what, const std::string& content,
                         const std::string& attribute = "") const {
        EXPECT_EQ(document_of(what), "<root" + attribute + ">" + with_ids(content) + "</root>");
    }
    /// Fills a fresh message from an element with this content.
    std::unique_ptr<message_impl> read(u32 code, object* about, const std::string& content,
                                       const std::string& attributes = "", int version = 8) {
        return read_text(code, about, "<root " + attributes + ">" + with_ids(content) + "</root>", version);
    }
    std::unique_ptr<message_impl> read_text(u32 code, object* about, const std::string& text,
                                            int version = 8) {
        auto made = message_row_of(code)->blank(static_cast<silent_edit*>(about));
        const dom_document from{text};
        if (!from.root_element()) throw std::runtime_error{"no document: " + text};
        EXPECT_TRUE(made->read(nullptr, earlier, model, &references, &fixups, from.root(), version, 0));
        return made;
    }
    /// Expects that reading what a message wrote and writing it again gives the same document.
    void expect_same_again(const message_impl& what) {
        const std::string text = document_of(what);
        const auto again = read_text(stored_code(what), what.object(), text);
        EXPECT_EQ(document_of(*again), text) << message_row_of(stored_code(what))->name;
        EXPECT_EQ(again->type(), what.type());
    }
    void give(object* to, u32 id, const abstract_property& value) {
        begin();
        ASSERT_TRUE(to->set_property(id, value));
        end();
    }
    message_impl& first_of(u32 type) const {
        for (std::size_t i = 0; i != model->message_count(); ++i)
            if (model->message_at(i)->type() == type) return stored(i);
        throw std::runtime_error{"no such message"};
    }

    object* a = thing("a");
    object* b = thing("b");
    object* c = thing("c");
    object* p = part("p", a);
};

TEST_F(message_documents, of_each_structural_change_have_its_fields_by_name) {
    struct row {
        const char* why;
        std::function<bool()> change;
        const char* content;
    };
    const row rows[] = {
        {"a base", [&] { return a->add_inherits_from(b); }, "<inherits_from>{b}</inherits_from><pos>0</pos>"},
        {"a base in front", [&] { return a->insert_inherits_from(c, 0); },
         "<inherits_from>{c}</inherits_from><pos>0</pos>"},
        {"their order", [&] { return a->set_inherits_from_position(c, 1); },
         "<inherits_from>{c}</inherits_from><pos>1</pos><old_pos>0</old_pos>"},
        {"a base gone", [&] { return a->cancel_inherits_from(b); },
         "<inherits_from>{b}</inherits_from><pos>0</pos>"},
        {"a base for another", [&] { return a->replace_inherits_from(b, c); },
         "<inherits_from>{b}</inherits_from><old_inherits_from>{c}</old_inherits_from><pos>0</pos>"},
        {"an observer", [&] { return a->attach(message_cast<observer>(b)); }, "<obsv_id>{b}</obsv_id>"},
        {"an observer gone", [&] { return a->detach_object(b); }, "<obsv_id>{b}</obsv_id>"},
        {"order of children", [&] { return root->set_child_position(c, 0); },
         "<child_id>{c}</child_id><new_pos>0</new_pos><old_pos>2</old_pos>"},
        {"another owner", [&] { return p->set_owner(b); },
         "<owner_id>{b}</owner_id><old_owner>{a}</old_owner>"},
        {"a mark", [&] { return a->set_property_not_inheritable(props::text, true); },
         "<property_type>10</property_type><not_inh>1</not_inh>"},
        {"a mark gone", [&] { return a->set_property_not_inheritable(props::text, false); },
         "<property_type>10</property_type><not_inh>0</not_inh>"},
    };
    for (const row& each : rows) {
        SCOPED_TRACE(each.why);
        auto& said = after(each.change);
        expect_document(said, each.content);
        expect_same_again(said);
    }
}

TEST_F(message_documents, of_transactions_have_the_id_as_an_attribute_of_the_begin) {
    begin("outer & \"more\"");
    begin("inner");
    ASSERT_TRUE(a->set_property(props::number, number(1)));
    end();
    end();
    const std::string outer = std::to_string(model->last_transaction_id() - 1);
    const std::string inner = std::to_string(model->last_transaction_id());
    expect_document(stored(0), "<level>0</level><name>outer &amp;amp; &amp;quot;more&amp;quot;</name>",
                    " id=\"" + outer + "\"");
    expect_document(stored(1), "<level>1</level><name>inner</name>", " id=\"" + inner + "\"");
    expect_document(stored(3), "<level>1</level><begin_id>" + inner +
                                   "</begin_id><processed_state>1</processed_state><processed_err_msg/>");
    for (const std::size_t at : {0U, 1U}) expect_same_again(stored(at));
    const auto again = read_text(1, root, document_of(stored(0)));
    EXPECT_EQ(message_cast<tran_begin_message>(again.get())->name(), "outer & \"more\"");
    EXPECT_EQ(message_cast<tran_begin_message>(again.get())->id(), model->last_transaction_id() - 1);
}

TEST_F(message_documents, keep_names_in_seven_bits_and_what_an_application_put_down_as_it_stands) {
    begin("gr\xC3\xBCn\n");
    ASSERT_TRUE(a->set_property(props::number, number(1)));
    end();
    auto& end_message = *message_cast<tran_end_message>(model->message_at(2));
    end_message.set_processed_state(7);
    end_message.set_processed_err_msg("by J\xC3\xBC & &lt;");
    expect_document(stored(0), "<level>0</level><name>gr&amp;amp;apos;&amp;amp;apos;n&amp;#10</name>",
                    " id=\"" + std::to_string(model->last_transaction_id()) + "\"");
    const auto opening = read_text(1, root, document_of(stored(0)));
    EXPECT_EQ(message_cast<tran_begin_message>(opening.get())->name(), "gr''n\n");
    const auto closing = read_text(2, root, document_of(stored(2)));
    EXPECT_EQ(message_cast<tran_end_message>(closing.get())->processed_err_msg(), "by J\xC3\xBC & &lt;");
    EXPECT_EQ(message_cast<tran_end_message>(closing.get())->processed_state(), 7U);
}

TEST_F(message_documents, of_ends_find_the_newest_begin_and_may_lack_what_older_ones_lack) {
    const auto older = read(1, root, "<level>0</level>", "id=\"5\"");
    const auto newer = read(1, root, "<level>0</level><name>n</name>", "id=\"5\"");
    earlier = {older.get(), newer.get()};
    for (const int version : {6, 8}) {
        SCOPED_TRACE(version);
        const auto closing = read(2, root, "<begin_id>5</begin_id>", "", version);
        const auto* const said = message_cast<tran_end_message>(closing.get());
        EXPECT_EQ(said->begin_message(), message_cast<tran_begin_message>(newer.get()));
        EXPECT_EQ(said->processed_state(), 0U);
        EXPECT_EQ(said->processed_err_msg(), "");
        const auto whole = read(2, root,
                                "<processed_state>3</processed_state><processed_err_msg>e</processed_err_msg>"
                                "<level>2</level><begin_id>6</begin_id>",
                                "", version);
        const auto* const lonely = message_cast<tran_end_message>(whole.get());
        EXPECT_EQ(lonely->begin_message(), nullptr);
        EXPECT_EQ(lonely->processed_state(), 3U) << "read where it is, in every version";
        EXPECT_EQ(lonely->processed_err_msg(), "e");
        EXPECT_EQ(lonely->level(), 2U);
    }
}

TEST_F(message_documents, of_a_creation_have_the_type_as_an_attribute) {
    begin();
    object* const made = fw.create_object(types::part, a);
    end();
    auto& said = first_of(message_type::obj_create);
    expect_document(said, "<owner_id>{a}</owner_id>", " otype=\"101\"");
    expect_document(first_of(message_type::child_add),
                    "<child_id>" + std::to_string(made->id()) + "</child_id><pos>1</pos>");
    expect_same_again(said);
    expect_same_again(first_of(message_type::child_add));
    const auto type_of = [&](const std::string& attributes, int version) {
        const auto again = read(4, made, "<owner_id>{a}</owner_id>", attributes, version);
        EXPECT_EQ(message_cast<obj_create_message>(again.get())->owner(), a);
        return message_cast<obj_create_message>(again.get())->object_type();
    };
    EXPECT_EQ(type_of("otype=\"101\"", 8), types::part);
    EXPECT_EQ(type_of("otype=\"101\"", 6), types::part) << "in every version";
    EXPECT_EQ(type_of("", 8), 0U);
}

TEST_F(message_documents, of_a_deletion_have_owners_and_children) {
    begin();
    ASSERT_TRUE(fw.delete_object(p));
    end();
    expect_document(first_of(message_type::obj_pre_delete), "<owner_id>{a}</owner_id>");
    expect_document(first_of(message_type::child_pre_remove), "<child_id>{p}</child_id>");
    expect_document(first_of(message_type::child_remove), "<child_id>{p}</child_id><pos>0</pos>");
    expect_document(first_of(message_type::obj_delete), "<owner_id>{a}</owner_id>");
}

TEST_F(message_documents, of_a_set_have_the_old_value_inside_and_none_where_there_is_none) {
    auto& first = after([&] { return a->set_property(props::number, number(5)); });
    const std::string held = "<property_type>11</property_type><real_owner_id>{a}</real_owner_id>"
                             "<msg_owned>0</msg_owned><msg_index>-1</msg_index>";
    expect_document(first, held + "<old_owner>0</old_owner><refresh>0</refresh>");
    expect_same_again(first);
    auto& second = after([&] { return a->set_property(props::number, number(6)); });
    const std::string old =
        "<old_owner>{a}</old_owner><old_prop><msg_owned>1</msg_owned><datatype>4</datatype>"
        "<value>5</value></old_prop><refresh>0</refresh>";
    expect_document(second, held + old);
    expect_same_again(second);
    const auto again = read_text(7, a, document_of(second));
    const auto& set = *message_cast<property_set_message>(again.get());
    EXPECT_EQ(as_text(set.new_value()), "6") << "what the object has";
    EXPECT_EQ(as_text(set.old_value()), "5");
    EXPECT_EQ(set.old_owner(), a);
    EXPECT_EQ(document_of(second, true),
              with_ids("<root><property_type>11</property_type><real_owner_id>{a}</real_owner_id>"
                       "<msg_owned>1</msg_owned><datatype>4</datatype><value>6</value>" +
                       old + "</root>"))
        << "for replay in full";
    model->undo();
    expect_document(
        second, "<property_type>11</property_type><real_owner_id>{a}</real_owner_id><msg_owned>1</msg_owned>"
                "<datatype>4</datatype><value>6</value><old_owner>{a}</old_owner><old_prop>"
                "<msg_owned>0</msg_owned><msg_index>-1</msg_index></old_prop><refresh>0</refresh>");
}

TEST_F(message_documents, of_a_value_that_another_message_has_say_where) {
    give(a, props::number, number(5));
    auto& first = stored(1);
    auto& second = after([&] { return a->set_property(props::number, number(6)); });
    second.register_values(positions, 4);
    expect_document(
        first, "<property_type>11</property_type><real_owner_id>{a}</real_owner_id><msg_owned>0</msg_owned>"
               "<msg_index>4</msg_index><prop_index>0<prop_sub_index>-1</prop_sub_index></prop_index>"
               "<old_owner>0</old_owner><refresh>0</refresh>");
    const auto again = read_text(7, a, document_of(first));
    ASSERT_EQ(fixups.size(), 1U);
    EXPECT_EQ(fixups.begin()->first, (std::pair<message*, int>{again.get(), 0}));
    EXPECT_EQ(fixups.begin()->second, (value_position{4, 0, npos32}));
    const auto element = read(9, a,
                              "<msg_owned>0</msg_owned><msg_index>3</msg_index><prop_index>1<prop_sub_index>2"
                              "</prop_sub_index></prop_index>");
    EXPECT_EQ((fixups[{element.get(), 0}]), (value_position{3, 1, 2}));
    const auto half = read(9, a, "<msg_owned>0</msg_owned><msg_index>3</msg_index>");
    EXPECT_EQ((fixups[{half.get(), 0}]), (value_position{3, npos32, npos32}))
        << "what is not told is nothing";
}

TEST_F(message_documents, of_a_deleted_value_have_it) {
    give(a, props::text, text("old"));
    auto& said = after([&] { return a->delete_property(props::text); });
    expect_document(
        said, "<property_type>10</property_type><real_owner_id>{a}</real_owner_id><msg_owned>1</msg_owned>"
              "<datatype>6</datatype><value>old</value><refresh>0</refresh>");
    expect_same_again(said);
}

TEST_F(message_documents, of_a_refresh_have_all_values_and_say_so) {
    const auto now = number(2);
    const auto before = number(1);
    auto& set = after([&] { return a->refresh_property(props::number, &now, &before); });
    expect_document(
        set,
        "<property_type>11</property_type><real_owner_id>{a}</real_owner_id><msg_owned>1</msg_owned>"
        "<datatype>4</datatype><value>2</value><old_owner>0</old_owner><old_prop><msg_owned>1</msg_owned>"
        "<datatype>4</datatype><value>1</value></old_prop><refresh>1</refresh>");
    expect_same_again(set);
    auto& deleted = after([&] { return a->refresh_property(props::number, nullptr, &now); });
    expect_document(
        deleted, "<property_type>11</property_type><real_owner_id>{a}</real_owner_id><msg_owned>1</msg_owned>"
                 "<datatype>4</datatype><value>2</value><refresh>1</refresh>");
    expect_same_again(deleted);
    EXPECT_EQ(stored_code(*read(29, a, "")), message_type::property_refresh_set) << "as its number says";
    EXPECT_EQ(stored_code(*read(29, a, "<refresh>0</refresh>")), message_type::property_set);
}

TEST_F(message_documents, of_elements_have_places_and_values) {
    vector_property list;
    for (const int each : {1, 2}) list.elements.push_back(new property<int>{each});
    give(a, props::list, list);
    const std::string of = "<property_type>14</property_type><real_owner_id>{a}</real_owner_id>";
    const std::string held = "<msg_owned>0</msg_owned><msg_index>-1</msg_index>";
    auto& set = after([&] { return a->set_vector_element(props::list, number(7), 1); });
    expect_document(
        set, of + "<pos>1</pos>" + held +
                 "<old_prop><msg_owned>1</msg_owned><datatype>4</datatype><value>2</value></old_prop>");
    expect_same_again(set);
    auto& inserted = after([&] { return a->insert_vector_element(props::list, number(8), 0); });
    expect_document(inserted, of + "<pos>0</pos><cur_pos>0</cur_pos>" + held);
    expect_same_again(inserted);
    inserted.register_values(positions, 3);
    EXPECT_TRUE(positions.empty()) << "the list has it";
    EXPECT_EQ(document_of(inserted, true),
              with_ids("<root>" + of +
                       "<pos>0</pos><cur_pos>0</cur_pos><msg_owned>1</msg_owned><datatype>4</datatype>"
                       "<value>8</value></root>"));
    auto& moved = after([&] { return a->move_vector_element(props::list, 0, 2); });
    expect_document(moved, of + "<old_pos>0</old_pos><new_pos>2</new_pos>");
    expect_same_again(moved);
    auto& gone = after([&] { return a->delete_vector_element(props::list, 0); });
    expect_document(gone, of + "<msg_owned>1</msg_owned><datatype>4</datatype><value>1</value><pos>0</pos>");
    expect_same_again(gone);
    const auto empty = read(8, a, of + "<pos>0</pos>");
    expect_document(*empty, of + "<pos>0</pos><old_prop/>");
}

TEST_F(message_documents, of_user_defined_properties_have_their_type_and_name) {
    begin();
    meta_property* const made =
        model->add_user_defined_property(types::thing, "A & B", data_type::string, "", 0);
    end();
    const std::string id = std::to_string(made->id());
    const std::string of = "<owner_meta_type>100</owner_meta_type><udp_type>" + id + "</udp_type>";
    auto& added = first_of(message_type::udp_add);
    expect_document(added, of + "<udp_name>A &amp;amp; B</udp_name><udp_class>6</udp_class>");
    expect_same_again(added);
    const auto set_default = [&](const char* value) {
        return model->set_user_defined_property_attribute(model->meta_model()->find_meta_object(types::thing),
                                                          made, attribute_id::default_value, text(value));
    };
    auto& first = after([&] { return set_default("red"); });
    const std::string red = "<msg_owned>1</msg_owned><datatype>6</datatype><value>red</value>";
    expect_document(first, of + "<udp_att>7</udp_att>" + red);
    expect_same_again(first);
    auto& second = after([&] { return set_default("blue"); });
    expect_document(
        second, of +
                    "<udp_att>7</udp_att><msg_owned>1</msg_owned><datatype>6</datatype><value>blue</value>"
                    "<old_att>" +
                    red + "</old_att>");
    expect_same_again(second);
    auto& removed = after([&] { return model->remove_user_defined_property(types::thing, made->id()); });
    ASSERT_EQ(removed.type(), message_type::udp_remove);
    expect_document(removed, of + "<udp_name>A &amp;amp; B</udp_name><udp_class>6</udp_class>"
                                  "<msg_owned>1</msg_owned><datatype>6</datatype><value>blue</value>");
    expect_same_again(removed);
}

TEST_F(message_documents, write_the_places_that_nothing_has_as_minus_one) {
    for (const char* code : {"-1", "4294967295"}) {
        SCOPED_TRACE(code);
        const auto moved =
            read(17, a,
                 std::string{"<child_id>{p}</child_id><new_pos>"} + code + "</new_pos><old_pos>1</old_pos>");
        EXPECT_EQ(message_cast<child_order_message>(moved.get())->new_pos(), npos32);
        expect_document(*moved, "<child_id>{p}</child_id><new_pos>-1</new_pos><old_pos>1</old_pos>");
    }
}

// A message that was made for reading, and found no fields.
TEST_F(message_documents, without_fields_are_as_fresh_messages_are) {
    struct row {
        u32 code;
        const char* content;
        const char* attribute;
    };
    const row rows[] = {
        {1, "<level>0</level><name/>", " id=\"0\""},
        {2, "<level>0</level><begin_id>0</begin_id><processed_state>0</processed_state><processed_err_msg/>",
         ""},
        {8, "<property_type>0</property_type><real_owner_id>0</real_owner_id><pos>-1</pos><old_prop/>", ""},
        {9,
         "<property_type>0</property_type><real_owner_id>0</real_owner_id><pos>-1</pos><cur_pos>-1</cur_pos>",
         ""},
        {11, "<property_type>0</property_type><real_owner_id>0</real_owner_id><pos>-1</pos>", ""},
        {12,
         "<property_type>0</property_type><real_owner_id>0</real_owner_id><old_pos>-1</old_pos><new_pos>-1</"
         "new_pos>",
         ""},
        {13, "<property_type>0</property_type><not_inh>1</not_inh>", ""},
        {14, "<child_id>0</child_id><pos>0</pos>", ""},
        {16, "<child_id>0</child_id><pos>-1</pos>", ""},
        {17, "<child_id>0</child_id><new_pos>-1</new_pos><old_pos>-1</old_pos>", ""},
        {19, "<inherits_from>0</inherits_from><pos>-1</pos>", ""},
        {22, "<inherits_from>0</inherits_from><pos>-1</pos><old_pos>-1</old_pos>", ""},
        {23, "<inherits_from>0</inherits_from><old_inherits_from>0</old_inherits_from><pos>-1</pos>", ""},
        {26, "<owner_meta_type>0</owner_meta_type><udp_type>0</udp_type><udp_name/><udp_class>0</udp_class>",
         ""},
    };
    for (const row& each : rows) {
        SCOPED_TRACE(each.code);
        const auto made = read(each.code, a, "<other>5</other><x><pos>5</pos></x>");
        expect_document(*made, each.content, each.attribute);
    }
}

TEST_F(message_documents, with_a_value_that_cannot_be_written_fail_their_document) {
    auto& said = after([&] { return a->set_property(props::number, number(5)); });
    {
        const document_pass pass;
        read_text(10, a, "<root><msg_owned>1</msg_owned><datatype>4711</datatype><value/></root>");
        EXPECT_TRUE(document_pass::has_failed());
    }
    {
        const document_pass pass;
        read_text(10, a, "<root><msg_owned>1</msg_owned><datatype>6</datatype></root>");
        EXPECT_TRUE(document_pass::has_failed()) << "a kind without its value";
    }
    read_text(10, a, "<root><msg_owned>1</msg_owned><datatype>4711</datatype><value/></root>");
    expect_same_again(said); // a failure outside a document leaves the next message alone
}

} // namespace
} // namespace kelm::test
