// A model's log in its document: what comes back, what does not, and a log performed on another model.
// The fields of single messages are told by the tests of their documents.
#include "tests/persistence/document_world.h"
#include "tests/persistence/every_change.h"

#include <kelm/message_history.h>
#include <kelm/property_messages.h>
#include <kelm/structure_messages.h>

#include <gtest/gtest.h>

#include <memory>
#include <random>

namespace kelm::test {
namespace {

class history_document : public every_change<document_world> {
protected:
    /// Reads a model with one thing, whose id is 2, and this in its history.  \returns what read() answered
    bool load_history(const std::string& content, const std::string& attributes = "") {
        return load(document_with(R"(<childs><child type="100" id="2"/></childs><message_history_impl )" +
                                  attributes + ">" + content + "</message_history_impl>"));
    }
    bool load_messages(const std::string& messages) {
        return load_history("<transactions>" + messages + "</transactions>");
    }
    static std::string message_of(const std::string& code, const std::string& fields) {
        return "<message><type>" + code + "</type><obj_id>2</obj_id>" + fields + "</message>";
    }
};

TEST_F(history_document, comes_back_message_by_message) {
    change_all_that_stays();
    ASSERT_TRUE(load(saved(true)));
    EXPECT_EQ(told_by(*copy), told_by(*model));
    EXPECT_TRUE(copy->can_undo());
    EXPECT_FALSE(copy->can_redo());
    EXPECT_FALSE(copy->is_modified());
    EXPECT_EQ(copy->last_transaction_id(), model->last_transaction_id());
}

TEST_F(history_document, written_again_is_the_same_but_for_what_reading_resets) {
    change_all_that_stays();
    model->clear_modified(); // a model that was read counts from 0
    const std::string document = saved(true);
    ASSERT_TRUE(load(document));
    EXPECT_EQ(canonical_text(saved(*copy, true)), canonical_text(document));
}

TEST_F(history_document, undo_and_redo_after_reading_do_what_they_would_have_done_before) {
    change_all_that_stays();
    ASSERT_TRUE(load(saved(true)));
    ASSERT_EQ(dump_of(*copy), dump());
    while (model->can_undo()) {
        model->undo();
        copy->undo();
        ASSERT_EQ(dump_of(*copy), dump()) << model->redo_name();
    }
    EXPECT_FALSE(copy->can_undo());
    while (model->can_redo()) {
        model->redo();
        copy->redo();
        ASSERT_EQ(dump_of(*copy), dump());
    }
    EXPECT_FALSE(copy->can_redo());
}

/// Puts elements and attributes that nobody knows into an element and those below it: elements behind what is there, so
/// that texts stay the first of their elements, or in front of other elements.
void add_junk(xercesc::DOMElement& to, std::mt19937& random) {
    const auto chance = [&](unsigned one_in) { return random() % one_in == 0; };
    for (auto* each = to.getFirstElementChild(); each; each = each->getNextElementSibling()) {
        add_junk(*each, random);
        if (chance(4)) to.insertBefore(to.getOwnerDocument()->createElement(u"junk"), each);
    }
    if (chance(3)) to.setAttribute(u"junk", u"7");
    if (chance(3)) to.appendChild(to.getOwnerDocument()->createElement(u"junk"));
    if (chance(3)) to.appendChild(to.getOwnerDocument()->createComment(u"junk"));
    if (to.getFirstElementChild() && chance(3))
        to.appendChild(to.getOwnerDocument()->createTextNode(u" junk "));
}

TEST_F(history_document, comes_back_from_among_what_nobody_knows) {
    change_all_that_stays();
    const std::string whole = canonical_text(saved(true));
    for (unsigned seed = 0; seed != 20; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random{seed};
        const dom_document document{saved(true)};
        add_junk(*document.root_element(), random);
        ASSERT_NE(canonical_text(*document.root_element()), whole);
        make_copy();
        ASSERT_TRUE(copy->read(nullptr, document.root()));
        EXPECT_EQ(dump_of(*copy), dump());
        EXPECT_EQ(told_by(*copy), told_by(*model));
    }
}

TEST_F(history_document, has_what_was_undone_no_more_than_a_stream) {
    change_all_that_stays();
    model->undo();
    model->undo();
    ASSERT_TRUE(load(saved(true)));
    EXPECT_EQ(told_by(*copy), told_by(*model));
    EXPECT_FALSE(copy->can_redo());
}

TEST_F(history_document, is_left_out_where_none_is_asked_for) {
    change_all_that_stays();
    const std::string document = saved(false);
    EXPECT_FALSE(has(document, "message_history_impl"));
    ASSERT_TRUE(load(document));
    EXPECT_EQ(copy->message_count(), 0U);
    EXPECT_FALSE(copy->can_undo());
}

TEST_F(history_document, of_nothing_is_its_counts) {
    const std::string document = saved(true);
    EXPECT_TRUE(has(canonical_text(document), "\n  message_history_impl last_tran_id=\"" +
                                                  std::to_string(model->last_transaction_id()) +
                                                  "\" trans_executed=\""))
        << document;
    EXPECT_FALSE(has(document, "<transactions"));
    EXPECT_FALSE(has(document, "<deleted_objs"));
    ASSERT_TRUE(load(document));
    EXPECT_EQ(copy->last_transaction_id(), model->last_transaction_id());
}

TEST_F(history_document, of_an_older_version_is_not_read) {
    change_all_that_stays();
    const std::string document = saved(true);
    for (const auto& [stamp, is_read] :
         {std::pair{"7\" minor=\"", false}, {"-1\" minor=\"", false}, {"8\" minor=\"", true}}) {
        SCOPED_TRACE(stamp);
        ASSERT_TRUE(load(with(document, R"(version="8")", std::string{R"(version=")"} + stamp + '"')));
        EXPECT_EQ(copy->message_count() != 0, is_read);
        EXPECT_EQ(dump_of(*copy), dump());
    }
    ASSERT_TRUE(load(with(with(document, R"( version="8")", R"( version="7")"), R"(minor_version="0")",
                          R"(minor_version="2")")));
    EXPECT_EQ(told_by(*copy), told_by(*model)) << "all fields are there, whatever the version";
    copy->undo();
}

TEST_F(history_document, in_part_begins_at_its_first_transaction) {
    for (const char* each : {"one", "two", "three", "four", "five"})
        change([&] { ASSERT_TRUE(a->set_property(props::text, text(each))); });
    const std::string lines = canonical_text(saved(true, 2));
    EXPECT_FALSE(has(lines, "value: two\n")) << "what an earlier transaction has";
    EXPECT_TRUE(has(lines, "value: three\n"));
    EXPECT_TRUE(has(lines, "msg_index: 4\n        prop_index: 0\n"))
        << "the set of the second one is the fifth message: " << lines;
    ASSERT_TRUE(load(saved(true, 2)));
    EXPECT_EQ(copy->message_count(), 6U);
    copy->undo();
    copy->undo();
    EXPECT_FALSE(copy->can_undo());
    EXPECT_EQ(as_text(copied(a)->get_property(props::text)), "three");
}

TEST_F(history_document, has_the_deleted_objects_of_its_part_alone) {
    change([&] { ASSERT_TRUE(fw.delete_object(a)); });
    change([&] { ASSERT_TRUE(fw.delete_object(b)); });
    const auto deleted_in = [](const std::string& lines) {
        std::size_t count = 0;
        for (std::size_t at = lines.find("deleted_obj "); at != std::string::npos;
             at = lines.find("deleted_obj ", at + 1))
            ++count;
        return count;
    };
    EXPECT_EQ(deleted_in(canonical_text(saved(true))), 2U);
    const std::string newest = canonical_text(saved(true, 1));
    EXPECT_EQ(deleted_in(newest), 1U);
    EXPECT_TRUE(has(newest, "    deleted_objs\n      deleted_obj id=\"" + std::to_string(b->id()) +
                                "\" type=\"100\"\n        parent_id: 1\n"))
        << newest;
    change([&] { ASSERT_TRUE(c->set_property(props::text, text("x"))); });
    EXPECT_FALSE(has(saved(true, 1), "deleted_objs"));
}

TEST_F(history_document, keeps_deleted_objects_written_and_not_read_back) {
    const u32 id = a->id();
    change([&] { ASSERT_TRUE(fw.delete_object(a)); });
    const std::string document = saved(true);
    EXPECT_TRUE(has(document, "<deleted_obj "));
    ASSERT_TRUE(load(document));
    EXPECT_EQ(copy->message_count(), model->message_count());
    for (std::size_t i = 0; i != copy->message_count(); ++i) {
        const object* const theirs = copy->message_at(i)->object();
        const object* const ours = model->message_at(i)->object();
        EXPECT_EQ(theirs == nullptr, ours == a) << copy->message_at(i)->type();
    }
    const std::string before = dump_of(*copy);
    copy->undo();
    EXPECT_EQ(copied(id), nullptr) << "there is nothing to bring back";
    EXPECT_EQ(dump_of(*copy), before);
    EXPECT_TRUE(copy->can_redo());
    copy->redo();
    EXPECT_EQ(dump_of(*copy), before);
}

TEST_F(history_document, takes_deleted_objects_that_stand_beside_their_list) {
    const std::string object =
        R"(<deleted_obj type="101" id="3"><parent_id>2</parent_id><props><prop id="1"><datatype>6)"
        R"(</datatype><value>gone</value></prop></props></deleted_obj>)";
    const std::string messages =
        "<transactions><message "
        "id=\"1\"><type>1</type><obj_id>1</obj_id><level>0</level><name>t</name></message>"
        "<message><type>5</type><obj_id>3</obj_id><owner_id>2</owner_id></message>"
        "<message><type>16</type><obj_id>2</obj_id><child_id>3</child_id><pos>0</pos></message>"
        "<message><type>6</type><obj_id>3</obj_id><owner_id>2</owner_id></message>"
        "<message><type>2</type><obj_id>1</obj_id><begin_id>1</begin_id></message></transactions>";
    ASSERT_TRUE(load_history("<deleted_objs/>" + object + messages));
    EXPECT_EQ(copied(3), nullptr) << "it is deleted";
    EXPECT_EQ(copy->message_at(1)->object()->id(), 3U);
    EXPECT_EQ(copy->message_at(1)->object()->state(), state::deleted);
    copy->undo();
    ASSERT_TRUE(copied(3));
    EXPECT_EQ(object_name(copied(3)), "gone");
    EXPECT_EQ(copied(3)->owner(), copied(2));
    ASSERT_TRUE(load_history(object + messages));
    EXPECT_EQ(copy->message_at(1)->object(), nullptr) << "not looked for without the list";
}

TEST_F(history_document, keeps_messages_without_a_closed_transaction_in_the_stream) {
    ASSERT_TRUE(a->set_property(props::number, number(5))); // in no transaction
    ASSERT_EQ(model->message_count(), 1U);
    std::ostringstream beside;
    std::ostringstream alone;
    ASSERT_TRUE(model->message_at(0)->write(&alone, {}, nullptr, false));
    const dom_document into;
    ASSERT_TRUE(model->write(&beside, true, 0, false, into.root()));
    const auto word = [](u32 value) {
        std::string bytes;
        for (unsigned shift = 0; shift != 32; shift += 8)
            bytes.push_back(static_cast<char>(value >> shift & 0xFFU));
        return bytes;
    };
    EXPECT_EQ(beside.str(), word(message_type::property_set) + word(a->id()) + '\1' + alone.str())
        << "number, object, who made it, its fields; no counts";
    EXPECT_FALSE(has(into.text(), "<transactions"));
    const std::string lines = canonical_text(saved(true));
    EXPECT_FALSE(has(lines, "transactions\n")) << "without a stream it goes nowhere";
    ASSERT_TRUE(load(into.text()));
    EXPECT_EQ(copy->message_count(), 0U);
    change([&] { ASSERT_TRUE(b->set_property(props::number, number(6))); });
    beside.str("");
    ASSERT_TRUE(model->write(&beside, true, 0, false, dom_document{}.root()));
    EXPECT_EQ(beside.str(), "") << "with a closed one all go to the document";
    ASSERT_TRUE(load(saved(true)));
    EXPECT_EQ(told_by(*copy), told_by(*model));
}

TEST_F(history_document, passes_over_numbers_that_no_message_has) {
    std::string messages;
    for (const char* code : {"0", "3", "31", "4711", "-1", ""}) messages += message_of(code, "<pos>1</pos>");
    messages += "<message/><note/>" + message_of("15", "<child_id>2</child_id>");
    ASSERT_TRUE(load_messages(messages));
    ASSERT_EQ(copy->message_count(), 1U);
    EXPECT_EQ(copy->message_at(0)->type(), message_type::child_pre_remove);
}

TEST_F(history_document, has_users_and_objects_as_far_as_it_tells_of_them) {
    ASSERT_TRUE(
        load_messages("<message><type>15</type></message>"
                      "<message><type>15</type><obj_id>99</obj_id><user_created>0</user_created></message>"
                      "<message><user_created>1</user_created><obj_id>2</obj_id><type>15</type></message>"));
    ASSERT_EQ(copy->message_count(), 3U);
    EXPECT_EQ(copy->message_at(0)->object(), nullptr);
    EXPECT_EQ(copy->message_at(1)->object(), nullptr);
    EXPECT_EQ(copy->message_at(2)->object(), copied(2));
    EXPECT_FALSE(copy->message_at(0)->is_user_created());
    EXPECT_FALSE(copy->message_at(1)->is_user_created());
    EXPECT_TRUE(copy->message_at(2)->is_user_created());
}

TEST_F(history_document, with_an_end_whose_begin_is_not_there_cannot_be_undone) {
    ASSERT_TRUE(load_messages("<message><type>2</type><obj_id>1</obj_id><begin_id>7</begin_id></message>"));
    const auto* const end_message = message_cast<tran_end_message>(copy->message_at(0));
    EXPECT_EQ(end_message->begin_message(), nullptr);
    EXPECT_EQ(end_message->processed_state(), 0U) << "older documents do not tell";
    EXPECT_EQ(end_message->processed_err_msg(), "");
    EXPECT_FALSE(copy->can_undo());
}

TEST_F(history_document, shares_values_that_a_later_message_owns) {
    change([&] { ASSERT_TRUE(a->set_property(props::text, text("first"))); });
    change([&] { ASSERT_TRUE(a->set_property(props::text, text("second"))); });
    ASSERT_TRUE(load(saved(true)));
    const std::string lines = canonical_text(saved(true));
    EXPECT_TRUE(has(lines, "msg_index: 4\n        prop_index: 0\n          prop_sub_index: -1\n")) << lines;
    EXPECT_EQ(lines.find("value: first"), lines.rfind("value: first")) << "written once";
    const auto new_value_of = [&](std::size_t at) {
        return as_text(message_cast<property_set_message>(copy->message_at(at))->new_value());
    };
    EXPECT_EQ(new_value_of(1), "first");
    EXPECT_EQ(new_value_of(4), "second");
    EXPECT_EQ(as_text(message_cast<property_set_message>(copy->message_at(4))->old_value()), "first");
    copy->undo();
    EXPECT_EQ(as_text(copied(a)->get_property(props::text)), "first") << "the value went back";
    EXPECT_EQ(new_value_of(1), "first");
}

TEST_F(history_document, without_the_message_that_has_a_value_has_none) {
    const std::string set = message_of(
        "7", "<property_type>10</property_type><real_owner_id>2</real_owner_id><msg_owned>0</msg_owned>"
             "<msg_index>77</msg_index><prop_index>0<prop_sub_index>-1</prop_sub_index></"
             "prop_index><refresh>0</refresh>");
    ASSERT_TRUE(load_messages(set + set));
    EXPECT_EQ(message_cast<property_set_message>(copy->message_at(0))->new_value(), nullptr);
}

TEST_F(history_document, with_a_value_of_an_unknown_kind_is_refused_with_the_tree_in_place) {
    EXPECT_FALSE(load_messages(message_of("10", "<property_type>10</property_type><msg_owned>1</msg_owned>"
                                                "<datatype>4711</datatype><value/>")));
    EXPECT_TRUE(copied(2));
    EXPECT_EQ(copy->message_count(), 0U);
    EXPECT_FALSE(copy->in_transaction());
}

TEST_F(history_document, references_of_messages_link_nothing_back) {
    change([&] { ASSERT_TRUE(a->set_property(props::reference, reference(b))); });
    change([&] { ASSERT_TRUE(a->set_property(props::reference, reference(c))); });
    ASSERT_TRUE(load(saved(true)));
    EXPECT_TRUE(copied(b)->referencing_objects().empty());
    EXPECT_EQ(copied(c)->referencing_objects(), std::vector{copied(a)});
    copy->undo();
    EXPECT_EQ(copied(b)->referencing_objects(), std::vector{copied(a)});
    EXPECT_TRUE(copied(c)->referencing_objects().empty());
}

TEST_F(history_document, can_be_read_into_a_list_of_the_callers) {
    change([&] { ASSERT_TRUE(a->set_property(props::text, text("x"))); });
    const dom_document into;
    model->history()->write_history(nullptr, true, 0, into.root());
    void* const section = get_xml_elem(into.root(), "message_history_impl");
    ASSERT_TRUE(section);
    std::vector<message*> messages;
    std::vector<object*> deleted;
    io_reference_manager references;
    std::istringstream unused{"stays"};
    EXPECT_TRUE(message_history::read_transactions(section, unused, messages, references, model, version, 0,
                                                   deleted, false));
    EXPECT_EQ(unused.tellg(), 0);
    EXPECT_EQ(messages.size(), 3U);
    EXPECT_TRUE(deleted.empty());
    for (message* each : messages) delete each;
}

/// Two models that say the same; what is done to the first is performed on the second.
class replayed_document : public history_document {
protected:
    replayed_document() {
        load(saved());
        model->clear_history();
    }
    bool perform(std::size_t* count = nullptr) {
        const dom_document log;
        model->history()->write_messages(log.root(), nullptr, 0, true);
        std::istringstream unused;
        std::vector<message*> messages;
        std::vector<object*> deleted;
        io_reference_manager references;
        const bool done = message_history::read_transactions(log.root(), unused, messages, references, copy,
                                                             version, 0, deleted, true);
        if (count) *count = messages.size();
        for (message* each : messages) delete each;
        return done;
    }
};

TEST_F(replayed_document, does_to_another_model_what_was_done_to_the_first) {
    change([&] {
        object* const made = fw.create_object(types::part, a);
        ASSERT_TRUE(made->set_property(props::name, text("made & done")));
        ASSERT_TRUE(made->set_property(props::reference, reference(b)));
    });
    change([&] { ASSERT_TRUE(b->add_inherits_from(a)); });
    change([&] { ASSERT_TRUE(a->append_vector_element(props::list, number(1))); });
    change([&] { ASSERT_TRUE(a->append_vector_element(props::list, number(2))); });
    change([&] { ASSERT_TRUE(a->move_vector_element(props::list, 1, 0)); });
    change([&] { ASSERT_TRUE(a->set_property_not_inheritable(props::text, true)); });
    change([&] { ASSERT_TRUE(fw.delete_object(c)); });
    std::size_t count = 0;
    ASSERT_TRUE(perform(&count));
    EXPECT_EQ(dump_of(*copy), dump());
    EXPECT_LT(count, model->message_count()) << "what follows from other changes is not in the log";
    EXPECT_TRUE(copy->can_undo());
    EXPECT_FALSE(copy->in_transaction());
}

TEST_F(replayed_document, ends_where_the_target_lacks_the_object) {
    change([&] { ASSERT_TRUE(a->set_property(props::text, text("x"))); });
    copy->begin_transaction("t");
    fw.delete_object(copied(a));
    copy->end_transaction();
    EXPECT_FALSE(perform());
}

} // namespace
} // namespace kelm::test
