// Parts of histories, logs for replay, and the forms of older versions, written by hand.
// What whole histories say, message by message, is approved_histories_test.
#include "tests/persistence/approved_world.h"

#include <kelm/io_references.h>
#include <kelm/message_history.h>
#include <kelm/property_messages.h>
#include <kelm/structure_messages.h>

#include <gtest/gtest.h>

#include <memory>

namespace kelm::test {
namespace {

/// \returns a vector's elements, joined
std::string list_of(const model_of_stream& model) { return as_text(model[2]->get_own_property(props::list)); }

void expect_same(const model_of_stream& model, const std::string& bytes, const char* when) {
    EXPECT_EQ(first_difference(model.written(true), bytes), "") << when;
}

TEST(approved_logs, in_part_are_written_as_if_nothing_had_been_before) {
    const model_of_stream whole{approved_bytes("history_lifetime")};
    ASSERT_TRUE(whole.was_read());
    const std::string newest = approved_bytes("history_newest");
    EXPECT_EQ(first_difference(whole.written(true, 1), newest), "");
    EXPECT_EQ(first_difference(whole.written(true, 3), approved_bytes("history_lifetime")), "");
    EXPECT_EQ(first_difference(whole.written(true, 4), approved_bytes("history_lifetime")), "");
    const model_of_stream part{newest};
    ASSERT_TRUE(part.was_read());
    expect_same(part, newest, "after reading");
    part->undo();
    EXPECT_FALSE(part->can_undo());
    EXPECT_EQ(part.says(), whole.says()) << "what came and went in one transaction";
}

TEST(approved_logs, that_nobody_closed_stay_as_they_are) {
    const std::string bytes = approved_bytes("history_open");
    const model_of_stream model{bytes};
    ASSERT_TRUE(model.was_read());
    EXPECT_EQ(model.log(), R"(
7 user: Changed Thing a Text from NULL to 1
2 user:  End Transaction - 
7 user: Changed Thing a Text from 1 to 2
1 user:  Begin Transaction - open
13 user: Set Thing a Number not inheritable.
)");
    EXPECT_TRUE(model->in_transaction()) << "the newest message is in no closed one";
    EXPECT_FALSE(model->can_undo());
    EXPECT_EQ(model->last_transaction_id(), 5U);
    expect_same(model, bytes, "after reading");
}

TEST(approved_logs, keep_what_an_application_puts_down_with_an_end) {
    const model_of_stream model{approved_bytes("history_transactions")};
    ASSERT_TRUE(model.was_read());
    const auto* const outer = message_cast<tran_begin_message>(model->message_at(0));
    const auto* const inner = message_cast<tran_begin_message>(model->message_at(1));
    ASSERT_TRUE(outer && inner && outer->end_message() && inner->end_message());
    EXPECT_EQ(outer->id(), 1U);
    EXPECT_EQ(outer->level(), 0U);
    EXPECT_EQ(outer->end_message()->processed_state(), 7U);
    EXPECT_EQ(outer->end_message()->processed_err_msg(), "by Ann");
    EXPECT_EQ(inner->level(), 1U);
    EXPECT_EQ(inner->end_message()->processed_state(), 1U);
    EXPECT_EQ(inner->end_message()->processed_err_msg(), "");
    EXPECT_EQ(model->last_transaction_id(), 3U);
}

TEST(approved_logs, tell_what_a_refresh_changed) {
    const model_of_stream model{approved_bytes("history_refresh")};
    ASSERT_TRUE(model.was_read());
    const auto* const first = message_cast<property_set_message>(model->message_at(1));
    const auto* const second = message_cast<property_set_message>(model->message_at(2));
    const auto* const last = message_cast<property_delete_message>(model->message_at(3));
    ASSERT_TRUE(first && second && last);
    EXPECT_EQ(as_text(first->old_value()), "none");
    EXPECT_EQ(as_text(first->new_value()), "1");
    EXPECT_EQ(as_text(second->old_value()), "1");
    EXPECT_EQ(as_text(second->new_value()), "2");
    EXPECT_EQ(as_text(last->old_value()), "2");
    EXPECT_FALSE(model[2]->defines_property(props::number));
}

TEST(approved_logs, link_references_for_objects_and_not_for_messages) {
    const model_of_stream model{approved_bytes("history_values")};
    ASSERT_TRUE(model.was_read());
    EXPECT_TRUE(model[2]->referencing_objects().empty()) << "the log alone refers to it";
    model->undo();
    model->undo();
    model->redo();
    EXPECT_TRUE(model[2]->referencing_objects().empty());
}

TEST(approved_logs, with_equal_elements_take_back_each_at_its_place) {
    const std::string bytes = approved_bytes("history_equal_elements");
    const model_of_stream model{bytes};
    ASSERT_TRUE(model.was_read());
    expect_same(model, bytes, "after reading");
    for (const char* each : {"2, 3, 2", "2, 3", "2", "none"}) {
        model->undo();
        EXPECT_EQ(list_of(model), each);
    }
    while (model->can_redo()) model->redo();
    EXPECT_EQ(list_of(model), "2, 2, 3, 2");
    expect_same(model, bytes, "after undo and redo");
}

TEST(approved_logs, with_equal_elements_know_none_that_is_gone) {
    const model_of_stream model{approved_bytes("history_equal_elements")};
    ASSERT_TRUE(model.was_read());
    model->undo();
    model->begin_transaction("another way"); // what was undone goes
    ASSERT_TRUE(model[2]->set_property(props::text, text("x")));
    model->end_transaction();
    model.written(true);
    model->undo();
    for (const char* each : {"2, 3", "2", "none"}) {
        model->undo();
        EXPECT_EQ(list_of(model), each);
    }
}

struct version_row {
    const char* file;
    const char* why;
    bool knows_users; ///< of messages, whether a user made them
    u32 type_of_made; ///< what the message of a new object says
    u32 kept_with_end;
    const char* said_at_end;
};

const version_row versions[] = {
    {"version_7_2", "the first with a history, and without a count of messages", false, 0, 0, ""},
    {"version_7_3", "who made a message", true, 0, 0, ""},
    {"version_7_6", "the count", true, 0, 0, ""},
    {"version_7_13", "the type of a new object", true, types::thing, 0, ""},
    {"version_7_14", "what is kept with an end", true, types::thing, 7, "by Ann"},
};

TEST(approved_logs, of_older_versions_are_read_and_written_in_their_form) {
    for (const version_row& row : versions) {
        SCOPED_TRACE(std::string{row.file} + ": " + row.why);
        const std::string bytes = approved_bytes(row.file);
        const model_of_stream model{bytes};
        ASSERT_TRUE(model.was_read());
        ASSERT_EQ(model->message_count(), 5U);
        const auto* const made = message_cast<obj_create_message>(model->message_at(1));
        const auto* const end = message_cast<tran_end_message>(model->message_at(4));
        ASSERT_TRUE(made && end);
        EXPECT_EQ(model->message_at(1)->is_user_created(), row.knows_users);
        EXPECT_FALSE(model->message_at(2)->is_user_created());
        EXPECT_EQ(made->object_type(), row.type_of_made);
        EXPECT_EQ(end->processed_state(), row.kept_with_end);
        EXPECT_EQ(end->processed_err_msg(), row.said_at_end);
        expect_same(model, bytes, "after reading");
        model->undo();
        EXPECT_EQ(model[2], nullptr);
        model->redo();
        expect_same(model, bytes, "after undo and redo");
    }
}

TEST(approved_logs, of_older_versions_are_read_by_newer_applications) {
    const model_of_stream newest{approved_bytes("version_7_14"), 8, 0};
    ASSERT_TRUE(newest.was_read());
    for (const version_row& row : versions) {
        SCOPED_TRACE(row.file);
        const model_of_stream model{approved_bytes(row.file), 8, 0};
        ASSERT_TRUE(model.was_read());
        EXPECT_EQ(model.says(), newest.says());
        if (row.kept_with_end == 7) continue;
        const model_of_stream again{model.written(true)};
        ASSERT_TRUE(again.was_read());
        EXPECT_EQ(again.log(), model.log()) << "in the newest form";
    }
}

TEST(approved_logs, for_replay_have_what_a_user_did_with_all_values) {
    const std::string bytes = approved_bytes("replay_elements");
    const model_of_stream source{approved_bytes("history_elements")};
    ASSERT_TRUE(source.was_read());
    std::ostringstream out;
    source->history()->write_messages(nullptr, &out, 0, true);
    EXPECT_EQ(first_difference(out.str(), bytes), "");

    const model_of_stream target{approved_bytes("history_refresh")};
    ASSERT_TRUE(target.was_read());
    ASSERT_FALSE(target[2]->defines_property(props::list));
    std::istringstream in{bytes};
    std::vector<message*> messages;
    std::vector<object*> deleted;
    io_reference_manager references;
    EXPECT_TRUE(message_history::read_transactions(nullptr, in, messages, references, target.operator->(), 8,
                                                   0, deleted, true));
    const std::vector<std::unique_ptr<message>> owned{messages.begin(), messages.end()};
    EXPECT_EQ(messages.size(), 10U);
    EXPECT_EQ(list_of(target), "2, 3, 6");
    target->undo();
    EXPECT_FALSE(target[2]->defines_property(props::list));
}

} // namespace
} // namespace kelm::test
