// A model's log in its stream: what comes back, what it can undo, and a log performed on another model.
// The fields of single messages are told by the tests of their records.
#include "tests/persistence/every_change.h"
#include "tests/persistence/stream_world.h"

#include <kelm/message_history.h>
#include <kelm/property_messages.h>
#include <kelm/structure_messages.h>

#include <gtest/gtest.h>

namespace kelm::test {
namespace {

class history_stream : public every_change<stream_world> {};

TEST_F(history_stream, comes_back_message_by_message) {
    change_everything();
    ASSERT_TRUE(load(saved(true)));
    EXPECT_EQ(told_by(*copy), told_by(*model));
    EXPECT_TRUE(copy->can_undo());
    EXPECT_FALSE(copy->can_redo());
    EXPECT_FALSE(copy->is_modified());
    EXPECT_EQ(copy->last_transaction_id(), model->last_transaction_id());
}

TEST_F(history_stream, written_again_is_the_same_but_for_what_reading_resets) {
    change_everything();
    model->clear_modified(); // a model that was read counts from 0
    const std::string bytes = saved(true);
    ASSERT_TRUE(load(bytes));
    EXPECT_EQ(hex(saved(*copy, true)), hex(bytes));
}

TEST_F(history_stream, undo_and_redo_after_reading_do_what_they_would_have_done_before) {
    change_everything();
    ASSERT_TRUE(load(saved(true)));
    ASSERT_EQ(dump_of(*copy), dump());
    std::vector<std::string> dumps;
    while (model->can_undo()) {
        model->undo();
        copy->undo();
        dumps.push_back(dump());
        ASSERT_EQ(dump_of(*copy), dumps.back()) << model->redo_name() << dumps.size();
    }
    EXPECT_FALSE(copy->can_undo());
    while (model->can_redo()) {
        EXPECT_EQ(dump_of(*copy), dumps.back());
        dumps.pop_back();
        model->redo();
        copy->redo();
        ASSERT_EQ(dump_of(*copy), dump());
    }
    EXPECT_FALSE(copy->can_redo());
}

TEST_F(history_stream, without_history_there_is_nothing_to_undo) {
    change_everything();
    ASSERT_TRUE(load(saved(false)));
    EXPECT_EQ(copy->message_count(), 0U);
    EXPECT_FALSE(copy->can_undo());
}

TEST_F(history_stream, of_an_older_version_has_none_and_ends_behind_the_tree) {
    model->meta_model()->set_version(7);
    model->meta_model()->set_minor_version(1);
    change_everything();
    std::istringstream in{saved(true)};
    ASSERT_TRUE(load(in.str()));
    EXPECT_EQ(copy->message_count(), 0U);
    EXPECT_EQ(dump_of(*copy), dump());
}

TEST_F(history_stream, of_every_older_version_that_has_one_is_read_back) {
    change([&] { ASSERT_TRUE(fw.create_object(types::part, a)); });
    change([&] { ASSERT_TRUE(a->set_property(props::text, text("x"))); });
    for (const u32 minor : {2U, 3U, 5U, 6U, 12U, 13U, 14U, 20U}) {
        SCOPED_TRACE(minor);
        model->meta_model()->set_version(7);
        model->meta_model()->set_minor_version(minor);
        ASSERT_TRUE(load(saved(true)));
        EXPECT_EQ(copy->message_count(), model->message_count());
        copy->undo();
        copy->undo();
        EXPECT_FALSE(copy->can_undo());
        EXPECT_TRUE(copied(a)->children().empty());
    }
}

TEST_F(history_stream, newest_transactions_alone_can_be_written) {
    for (const char* each : {"1", "2", "3", "4", "5"})
        change([&] { ASSERT_TRUE(a->set_property(props::text, text(each))); });
    ASSERT_TRUE(load(saved(true, 2)));
    EXPECT_EQ(copy->message_count(), 6U);
    copy->undo();
    copy->undo();
    EXPECT_FALSE(copy->can_undo());
    EXPECT_EQ(as_text(copied(a)->get_property(props::text)), "3");
}

TEST_F(history_stream, keeps_counting_the_whole_by_ends_and_a_part_by_begins) {
    begin();
    ASSERT_TRUE(a->set_property(props::text, text("x"))); // the transaction stays open
    const auto transactions = [&](u32 count) {
        std::ostringstream out;
        model->history()->write_messages(nullptr, &out, count, false);
        return static_cast<u32>(
            static_cast<unsigned char>(out.str()[4])); // behind the number of deleted objects
    };
    EXPECT_EQ(transactions(0), 0U);
    EXPECT_EQ(transactions(1), 1U);
    end();
    EXPECT_EQ(transactions(0), 1U);
}

TEST_F(history_stream, part_of_a_log_has_only_the_objects_that_it_deleted) {
    object* const first = thing("first");
    object* const second = thing("second");
    change([&] { ASSERT_TRUE(fw.delete_object(first)); });
    change([&] { ASSERT_TRUE(fw.delete_object(second)); });
    std::ostringstream out;
    model->history()->write_messages(nullptr, &out, 1, false);
    const std::string head =
        stored_fields{}.word(1).word(root->id()).word(types::thing).word(second->id()).bytes();
    EXPECT_EQ(hex(out.str().substr(0, head.size())), hex(head));
}

TEST_F(history_stream, deleted_objects_leave_the_ids_once_the_log_has_been_read) {
    change([&] { ASSERT_TRUE(fw.delete_object(a)); });
    const u32 id = a->id();
    ASSERT_TRUE(load(saved(true)));
    EXPECT_EQ(copy->find_object(id), nullptr);
    copy->undo();
    ASSERT_TRUE(copy->find_object(id));
    EXPECT_EQ(object_name(copy->find_object(id)), "a");
    copy->redo();
    EXPECT_EQ(copy->find_object(id), nullptr);
}

TEST_F(history_stream, deleted_trees_deeper_than_the_stack_come_back) {
    constexpr int levels = 50000;
    begin();
    object* lowest = root;
    for (int i = 0; i != levels; ++i) lowest = fw.create_object(types::thing, lowest);
    ASSERT_TRUE(lowest->set_property(props::name, text("lowest")));
    end();
    object* above = lowest;
    while (above->owner() != root) above = above->owner();
    model->clear_history();
    begin();
    ASSERT_TRUE(fw.delete_object(above));
    end();
    ASSERT_TRUE(load(saved(true)));
    EXPECT_EQ(copy->find_object(lowest->id()), nullptr);
    copy->undo();
    object* const back = copy->find_object(lowest->id());
    ASSERT_TRUE(back);
    EXPECT_EQ(object_name(back), "lowest");
    EXPECT_EQ(back->owner()->id(), lowest->owner()->id());
}

TEST_F(history_stream, refresh_comes_back_as_what_it_was) {
    const auto now = number(2);
    change([&] { ASSERT_TRUE(a->refresh_property(props::number, &now, nullptr)); });
    ASSERT_TRUE(load(saved(true)));
    message* const back = copy->message_at(1);
    EXPECT_EQ(back->type(), message_type::property_set);
    const std::string before = dump_of(*copy);
    copy->undo();
    EXPECT_EQ(dump_of(*copy), before);
}

TEST_F(history_stream, cut_short_is_refused_with_the_tree_in_place) {
    change_everything();
    const std::string bytes = saved(true);
    const std::size_t tree = saved(false).size();
    for (std::size_t length = tree; length < bytes.size(); length += 7) {
        SCOPED_TRACE(length);
        EXPECT_FALSE(load(bytes.substr(0, length)));
        EXPECT_EQ(copy->message_count(), 0U);
        EXPECT_FALSE(copy->in_transaction());
        EXPECT_EQ(dump_of(*copy), dump());
    }
}

/// Two models that say the same; what is done to the first is performed on the second.
class replay : public history_stream {
protected:
    replay() {
        load(saved());
        target = copy;
        model->clear_history();
    }
    std::string log_of_all() {
        std::ostringstream out;
        model->history()->write_messages(nullptr, &out, 0, true);
        return out.str();
    }
    bool perform(std::size_t* count = nullptr) { return perform(log_of_all(), count); }
    bool perform(const std::string& log, std::size_t* count = nullptr) {
        std::istringstream in{log};
        std::vector<message*> messages;
        std::vector<object*> deleted;
        io_reference_manager references;
        const bool done = message_history::read_transactions(nullptr, in, messages, references, target,
                                                             newest_version, 0, deleted, true);
        if (count) *count = messages.size();
        for (message* each : messages) delete each;
        return done;
    }

    kelm::model* target = nullptr;
};

TEST_F(replay, does_to_another_model_what_was_done_to_the_first) {
    change([&] {
        object* const made = fw.create_object(types::part, a);
        ASSERT_TRUE(made->set_property(props::name, text("made")));
        ASSERT_TRUE(made->set_property(props::reference, reference(b)));
    });
    change([&] { ASSERT_TRUE(b->add_inherits_from(a)); });
    change([&] { ASSERT_TRUE(a->append_vector_element(props::list, number(1))); });
    change([&] { ASSERT_TRUE(a->append_vector_element(props::list, number(2))); });
    change([&] { ASSERT_TRUE(a->move_vector_element(props::list, 1, 0)); });
    change([&] { ASSERT_TRUE(a->set_property_not_inheritable(props::text, true)); });
    change([&] { ASSERT_TRUE(c->attach(dynamic_cast<observer*>(b))); });
    change([&] { ASSERT_TRUE(fw.delete_object(c)); });
    std::size_t count = 0;
    ASSERT_TRUE(perform(&count));
    EXPECT_EQ(dump_of(*target), dump());
    EXPECT_LT(count, model->message_count()) << "what follows from other changes is not in the log";
    EXPECT_TRUE(target->can_undo());
    EXPECT_FALSE(target->in_transaction());
}

TEST_F(replay, ends_where_the_target_lacks_the_object) {
    change([&] { ASSERT_TRUE(a->set_property(props::text, text("x"))); });
    target->begin_transaction("t");
    fw.delete_object(copied(a));
    target->end_transaction();
    EXPECT_FALSE(perform());
}

TEST_F(replay, refuses_to_delete_the_model_that_it_runs_on) {
    change([&] { ASSERT_TRUE(fw.delete_object(c)); });
    std::string log = log_of_all();
    const std::string said = stored_fields{}.word(message_type::obj_pre_delete).word(c->id()).bytes();
    ASSERT_NE(log.find(said), std::string::npos);
    log.replace(log.find(said), said.size(),
                stored_fields{}.word(message_type::obj_pre_delete).word(target->as_object()->id()).bytes());
    const std::string before = dump_of(*target);
    EXPECT_FALSE(perform(log));
    target->rollback_transaction();
    EXPECT_EQ(dump_of(*target), before);
}

TEST_F(replay, keeps_making_texts_of_all_user_defined_properties) {
    change([&] {
        ASSERT_TRUE(model->add_user_defined_property(types::thing, "Size", data_type::integer, "how big", 0));
    });
    ASSERT_TRUE(perform());
    const meta_property* const made =
        target->meta_model()->find_meta_object(types::thing)->find_property("Size");
    ASSERT_TRUE(made);
    EXPECT_EQ(made->property_class(), data_type::string);
    EXPECT_EQ(made->definition(), "");
}

} // namespace
} // namespace kelm::test
