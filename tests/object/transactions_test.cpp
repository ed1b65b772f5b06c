// Transactions of a model: what is stored, what is told, levels, empty ones, the mark.
// Undo, rollback, stray changes and the hooks behind an end have tests of their own.
#include "tests/object/transaction_world.h"

namespace kelm::test {
namespace {

class transactions : public transaction_world {};

TEST_F(transactions, one_that_changes_something_is_stored_and_told) {
    listen();
    tran_begin_message* const begun = model->begin_transaction("one");
    ASSERT_TRUE(begun);
    EXPECT_EQ(begun->level(), 0u);
    EXPECT_EQ(begun->name(), "one");
    EXPECT_EQ(begun->end_message(), nullptr);
    EXPECT_EQ(begun->id(), model->last_transaction_id());
    EXPECT_TRUE(model->in_transaction());
    EXPECT_TRUE(model->is_modified()) << "from its begin on";
    EXPECT_FALSE(model->can_undo()) << "not inside one";
    set("x");
    tran_end_message* const ended = model->end_transaction();
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->begin_message(), begun);
    EXPECT_EQ(begun->end_message(), ended);
    EXPECT_EQ(ended->level(), 0u);
    EXPECT_EQ(ended->id(), begun->id());
    EXPECT_EQ(ended->processed_state(), 1u);
    EXPECT_EQ(ended->processed_err_msg(), "");
    ended->set_processed_state(7);
    ended->set_processed_err_msg("late");
    EXPECT_EQ(ended->processed_state(), 7u);
    EXPECT_EQ(ended->processed_err_msg(), "late");
    EXPECT_FALSE(model->in_transaction());
    EXPECT_TRUE(model->can_undo());
    EXPECT_TRUE(model->is_modified());
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_EQ(model->message_at(0)->object(), root);
    expect_heard("both ends", "1 first  Begin Transaction - one\n2 first  End Transaction - one\n");
}

TEST_F(transactions, an_empty_one_leaves_no_trace_but_is_heard) {
    change("before");
    const std::size_t messages = model->message_count();
    model->clear_modified();
    listen();
    const u32 id = model->last_transaction_id();
    ear.meanwhile = [&](message* what) {
        const auto* const end = message_cast<tran_end_message>(what);
        if (!end) return;
        ASSERT_TRUE(end->begin_message());
        EXPECT_EQ(end->begin_message()->name(), "nothing");
        EXPECT_EQ(end->level(), 0u);
    };
    fw.set_in_semantic(true);
    begin("nothing");
    EXPECT_FALSE(fw.in_semantic()) << "an outermost begin clears it";
    EXPECT_TRUE(model->is_modified());
    fw.set_in_semantic(true);
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_FALSE(fw.in_semantic()) << "so does the end of an empty one";
    EXPECT_EQ(model->message_count(), messages);
    EXPECT_FALSE(model->is_modified());
    EXPECT_FALSE(model->in_transaction());
    EXPECT_EQ(model->last_transaction_id(), id + 1) << "its number is used up";
    expect_heard("both ends", "1 first  Begin Transaction - nothing\n2 first  End Transaction - nothing\n");
}

TEST_F(transactions, an_empty_one_ends_the_possibility_of_redo) {
    change("x");
    model->undo();
    ASSERT_TRUE(model->can_redo());
    begin();
    EXPECT_FALSE(model->can_redo());
    end();
    EXPECT_FALSE(model->can_redo());
    EXPECT_EQ(model->message_count(), 0u);
}

TEST_F(transactions, empty_levels_vanish_in_silence) {
    listen();
    begin("outer");
    ear.take();
    fw.set_in_semantic(true);
    EXPECT_EQ(model->begin_transaction("inner")->level(), 1u);
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_TRUE(fw.in_semantic()) << "a level inside touches nothing";
    fw.set_in_semantic(false);
    expect_heard("inside", "");
    EXPECT_EQ(message_types(), "1");
    EXPECT_TRUE(model->in_transaction());
    set("x");
    EXPECT_TRUE(model->end_transaction()) << "the outer one goes on";
    EXPECT_EQ(message_types(), "1 7 2");
}

TEST_F(transactions, nested_empty_ones_collapse_together) {
    begin("outer");
    begin("middle");
    begin("inner");
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_FALSE(model->is_modified());
    EXPECT_FALSE(model->in_transaction());
}

TEST_F(transactions, levels_are_stored_and_only_the_outermost_is_told) {
    listen();
    recorder of_history;
    model->history()->attach(&of_history);
    begin("outer");
    begin("inner");
    set("x");
    tran_end_message* const inner = model->end_transaction();
    ASSERT_TRUE(inner);
    EXPECT_EQ(inner->level(), 1u);
    EXPECT_EQ(inner->begin_message()->name(), "inner");
    EXPECT_TRUE(model->in_transaction());
    tran_end_message* const outer = model->end_transaction();
    EXPECT_EQ(outer->level(), 0u);
    EXPECT_EQ(outer->begin_message()->name(), "outer");
    EXPECT_EQ(message_types(), "1 1 7 2 2");
    expect_heard("by the model", "1 first  Begin Transaction - outer\n2 first  End Transaction - outer\n");
    EXPECT_EQ(of_history.take(), "2 first  End Transaction - inner\n2 first  End Transaction - outer\n")
        << "the history tells of each end that is stored";
    begin("nothing");
    end();
    EXPECT_EQ(of_history.take(), "");
    EXPECT_TRUE(model->history()->detach(&of_history));
    EXPECT_FALSE(model->history()->detach(&of_history));
}

TEST_F(transactions, keeps_open_what_was_begun_and_refused) {
    listen();
    ear.answer = false;
    const u32 id = model->last_transaction_id();
    EXPECT_EQ(model->begin_transaction("refused"), nullptr);
    EXPECT_TRUE(model->in_transaction());
    EXPECT_EQ(model->last_transaction_id(), id + 1);
    EXPECT_EQ(message_types(), "1");
    EXPECT_TRUE(model->begin_transaction("inner")) << "inner levels ask nobody";
    end();
    set("x");
    EXPECT_TRUE(model->end_transaction()) << "what is said to an end is not asked";
    EXPECT_EQ(message_types(), "1 7 2");
}

TEST_F(transactions, the_mark_is_cleared_by_outermost_begins_and_survives_stored_ends) {
    begin();
    set("x");
    fw.set_in_semantic(true);
    begin("inner");
    EXPECT_TRUE(fw.in_semantic());
    a->set_property(props::number, number(1));
    end();
    end();
    EXPECT_TRUE(fw.in_semantic()) << "only the end of an empty one clears it";
    begin();
    EXPECT_FALSE(fw.in_semantic());
    end();
}

TEST_F(transactions, forgetting_the_history_closes_what_is_open) {
    begin();
    begin();
    set("x");
    model->clear_history();
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_FALSE(model->in_transaction());
    EXPECT_TRUE(model->is_modified()) << "the count since the save stays";
    EXPECT_EQ(value(), "x");
    EXPECT_EQ(model->begin_transaction("next")->level(), 0u);
    end();
}

TEST_F(transactions, an_observer_may_forget_the_history_while_it_is_told) {
    listen();
    ear.meanwhile = [&](message* what) {
        if (what->type() == message_type::tran_end) model->clear_history();
    };
    begin("x");
    set("x");
    end();
    EXPECT_EQ(model->message_count(), 0u);
    begin("empty");
    end();
    EXPECT_EQ(model->message_count(), 0u);
    ear.meanwhile = nullptr;
    EXPECT_EQ(value(), "x");
}

TEST_F(transactions, what_an_observer_has_dropped_is_not_handed_out) {
    listen();
    ear.meanwhile = [&](message* what) {
        if (what->type() == message_type::tran_begin) model->rollback_transaction();
    };
    EXPECT_EQ(model->begin_transaction("rolled back at once"), nullptr);
    EXPECT_FALSE(model->in_transaction());
    {
        const transaction_object guard(model, "rolled back at once");
        EXPECT_FALSE(guard.is_open());
        EXPECT_EQ(guard.id(), 0u);
    }
    ear.meanwhile = [&](message* what) {
        if (what->type() == message_type::tran_end) model->clear_history();
    };
    begin();
    set("x");
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_EQ(value(), "x");
}

} // namespace
} // namespace kelm::test
