// Undo and redo, message by message: where the one that acts stands, its flags, what the counts and marks come to.
// What a user of a model sees of it in the large is told by the tests of models.
#include "object/model_impl.h"
#include "tests/object/transaction_world.h"

namespace kelm::test {
namespace {

class history_walk : public transaction_world {
protected:
    model_impl& inside() { return static_cast<model_impl&>(*model); }
    message_history_impl& log() { return inside().log(); }
    void change_twice_nested() {
        begin("outer");
        set("1");
        begin("inner");
        set("2");
        end();
        end();
    }
    /// \returns the numbers of stored messages that no longer speak of a first run
    std::string run_again() const {
        std::string out;
        for (std::size_t i = 0; i != model->message_count(); ++i)
            if (!model->message_at(i)->is_first_run()) out += std::to_string(i) + " ";
        return out;
    }
};

TEST_F(history_walk, only_the_outermost_bracket_is_told_and_takes_the_mark_of_a_first_run_off) {
    change_twice_nested();
    EXPECT_EQ(message_types(), "1 7 1 7 2 2");
    EXPECT_EQ(run_again(), "");
    listen();
    model->undo();
    expect_heard("undo", "1 again  Begin Transaction - \n2 again  End Transaction - \n");
    EXPECT_EQ(value(), "none");
    model->redo();
    expect_heard("redo", "1 again  Begin Transaction - outer\n2 again  End Transaction - outer\n");
    EXPECT_EQ(value(), "2");
    EXPECT_EQ(message_types(), "1 7 1 7 2 2");
    EXPECT_EQ(run_again(), "0 1 3 5 ") << "levels inside are not told, and keep it";
    model->undo();
    EXPECT_FALSE(log().undone().newest()->is_first_run()) << "it does not come back";
    model->redo();
    EXPECT_EQ(run_again(), "0 1 3 5 ");
}

TEST_F(history_walk, a_level_inside_is_silent_by_itself) {
    change_twice_nested();
    listen();
    for (const std::size_t at : {2u, 4u}) {
        EXPECT_TRUE(model->message_at(at)->undo());
        EXPECT_TRUE(model->message_at(at)->redo());
        EXPECT_TRUE(model->message_at(at)->is_first_run());
    }
    expect_heard("nothing", "");
}

TEST_F(history_walk, messages_that_are_only_told_do_nothing) {
    change("x");
    tran_rollback_message_impl rolled_back(&inside(), nullptr, true);
    model_close_message_impl closed(&inside());
    listen();
    for (message* each : {static_cast<message*>(&rolled_back), static_cast<message*>(&closed)}) {
        EXPECT_TRUE(each->undo());
        EXPECT_TRUE(each->redo());
        EXPECT_EQ(each->object(), root);
        EXPECT_TRUE(each->is_first_run());
    }
    EXPECT_EQ(rolled_back.level(), 0u);
    EXPECT_EQ(rolled_back.id(), 0u) << "no begin, no number";
    EXPECT_TRUE(rolled_back.was_closed());
    EXPECT_EQ(closed.model(), model);
    expect_heard("nothing", "");
    EXPECT_EQ(value(), "x");
}

TEST_F(history_walk, what_the_application_notes_in_an_end_stays_through_undo_and_redo) {
    change("x");
    auto* const ended = message_cast<tran_end_message>(last_message());
    ended->set_processed_state(7);
    ended->set_processed_err_msg("late");
    model->undo();
    model->redo();
    EXPECT_EQ(message_cast<tran_end_message>(last_message()), ended);
    EXPECT_EQ(ended->processed_state(), 7u);
    EXPECT_EQ(ended->processed_err_msg(), "late");
}

TEST_F(history_walk, the_message_that_acts_is_the_newest_of_the_log) {
    change_twice_nested();
    ear.watch(root);
    ear.watch(a);
    ear.line = [&](message* what) {
        return std::to_string(what->type()) + (last_message() == what ? " itself " : " of a passing kind ") +
               std::to_string(model->message_count()) + " " + std::to_string(log().undone().size());
    };
    model->undo();
    EXPECT_EQ(ear.take(), "1 of a passing kind 6 0\n"
                          "7 of a passing kind 4 2\n"
                          "10 of a passing kind 2 4\n"
                          "2 of a passing kind 1 5\n");
    model->redo();
    EXPECT_EQ(ear.take(), "1 itself 1 5\n7 itself 2 4\n7 itself 4 2\n2 itself 6 0\n");
}

TEST_F(history_walk, the_mark_holds_until_the_walk_has_ended) {
    change("x");
    listen();
    ear.line = [&](message* what) {
        return std::string(fw.in_semantic() ? "set, " : "clear, ") +
               (what->is_user_created() ? "the user's" : "the library's");
    };
    const auto walk = [&](bool mark, void (kelm::model::*which)()) {
        fw.set_in_semantic(mark);
        (model->*which)();
        EXPECT_FALSE(fw.in_semantic());
        return ear.take();
    };
    EXPECT_EQ(walk(true, &kelm::model::undo), "set, the library's\nset, the library's\n");
    EXPECT_EQ(walk(true, &kelm::model::redo), "set, the user's\nset, the user's\n") << "as stored";
    EXPECT_EQ(walk(false, &kelm::model::undo), "clear, the user's\nclear, the user's\n");
    EXPECT_EQ(walk(false, &kelm::model::redo), "clear, the user's\nclear, the user's\n");

    fw.set_in_semantic(true);
    model->redo(); // there is nothing to redo
    EXPECT_TRUE(fw.in_semantic()) << "a walk that does not start clears nothing";
    model->set_undo_levels(0);
    model->undo();
    EXPECT_TRUE(fw.in_semantic());
    fw.set_in_semantic(false);
}

TEST_F(history_walk, the_count_of_changes_since_the_save_goes_below_zero_and_comes_back) {
    change("x");
    change("y");
    model->clear_modified();
    model->undo();
    EXPECT_EQ(log().trans_executed(), 0xFFFFFFFFu);
    model->undo();
    EXPECT_EQ(log().trans_executed(), 0xFFFFFFFEu);
    model->redo();
    model->redo();
    EXPECT_EQ(log().trans_executed(), 0u);
    model->undo();
    begin();
    EXPECT_FALSE(model->is_modified()) << "the count cannot tell this from the state that was saved";
    set("z");
    end();
    EXPECT_FALSE(model->is_modified());
}

TEST_F(history_walk, an_undo_that_does_not_come_about_still_follows_the_newest_transaction) {
    change("x");
    const u32 id = model->last_transaction_id();
    begin("empty");
    end();
    EXPECT_EQ(model->last_transaction_id(), id + 1);
    model->redo(); // there is nothing to redo
    EXPECT_EQ(model->last_transaction_id(), id) << "the number of the empty one is free again";
    begin("empty");
    end();
    model->set_undo_levels(0);
    model->undo();
    EXPECT_EQ(value(), "x");
    EXPECT_EQ(model->last_transaction_id(), id);
    begin("empty");
    end();
    set("stray");
    model->undo();
    EXPECT_EQ(model->last_transaction_id(), id + 1) << "no end of a transaction is the newest message";
}

TEST_F(history_walk, only_undo_and_redo_touch_the_count_that_the_limit_is_held_against) {
    for (const char* value : {"1", "2", "3", "4"}) change(value);
    model->undo();
    model->undo();
    model->set_undo_levels(2);
    EXPECT_FALSE(model->can_undo()) << "two are undone";
    model->rollback_last_transaction();
    EXPECT_FALSE(model->can_undo());
    model->clear_history();
    change("5");
    EXPECT_FALSE(model->can_undo()) << "two count as undone, although nothing of them is left";
    model->set_undo_levels(3);
    EXPECT_TRUE(model->can_undo());
    model->undo();
    EXPECT_EQ(model->redo_name(), "5");
}

TEST_F(history_walk, the_limit_leaves_the_redo_side_alone) {
    model->set_undo_levels(4);
    for (const char* value : {"1", "2", "3", "4"}) change(value);
    model->undo();
    model->undo();
    model->set_undo_levels(1);
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_EQ(log().undone().size(), 6u);
    EXPECT_FALSE(model->can_undo());
    model->redo();
    model->redo();
    EXPECT_EQ(value(), "4");
    EXPECT_EQ(message_types(), "1 7 2 1 7 2 1 7 2") << "a redo cuts nothing";
    EXPECT_TRUE(model->can_undo());
    model->undo();
    EXPECT_FALSE(model->can_undo()) << "but one is the limit";
    EXPECT_EQ(value(), "3");
}

TEST_F(history_walk, an_open_transaction_counts_against_a_limit_that_is_lowered_inside_it) {
    model->set_undo_levels(4);
    for (const char* value : {"1", "2", "3"}) change(value);
    begin("open");
    set("4");
    model->set_undo_levels(2);
    EXPECT_EQ(message_types(), "1 7 2 1 7") << "the open one and the newest closed one";
    model->rollback_transaction();
    EXPECT_EQ(value(), "3");
    model->undo();
    EXPECT_EQ(value(), "2");
    EXPECT_EQ(model->message_count(), 0u);
}

TEST_F(history_walk, a_limit_that_the_log_just_fills_cuts_nothing) {
    model->set_undo_levels(3);
    for (const char* value : {"1", "2", "3"}) change(value);
    EXPECT_EQ(model->message_count(), 9u);
    model->set_undo_levels(2);
    EXPECT_EQ(model->message_count(), 6u);
    model->set_undo_levels(-1);
    EXPECT_EQ(model->message_count(), 6u) << "no limit cuts nothing";
    model->clear_history();
    model->set_undo_levels(5);
    model->set_undo_levels(1); // with nothing to cut
    EXPECT_EQ(model->message_count(), 0u);
}

// An end whose begin is not in the log cannot come from transactions; a bad file could bring one.
TEST_F(history_walk, a_walk_that_runs_out_of_messages_leaves_its_flag_set_until_the_next_one_ends) {
    tran_begin_message_impl elsewhere(&inside(), 99, "elsewhere");
    set("stray");
    auto made = std::make_unique<tran_end_message_impl>(&inside());
    tran_end_message_impl& end_of_nothing = *made;
    log().add_message(std::move(made));
    end_of_nothing.set_level(0);
    end_of_nothing.set_partner(&elsewhere);
    ASSERT_TRUE(model->can_undo());
    fw.set_in_semantic(true);
    EXPECT_EQ(log().undo(), nullptr);
    EXPECT_TRUE(fw.in_semantic()) << "no walk has come to its end";
    fw.set_in_semantic(false);
    EXPECT_EQ(value(), "none");
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_EQ(log().undone().size(), 2u);
    EXPECT_EQ(log().trans_executed(), 0xFFFFFFFFu);
    EXPECT_TRUE(model->is_undoing());
    EXPECT_FALSE(model->in_transaction());
    model->clear_history();

    change("x");
    EXPECT_FALSE(model->in_transaction());
    model->undo();
    EXPECT_EQ(value(), "none") << "it can be walked all the same";
    EXPECT_FALSE(model->is_undoing());
    model->redo();
    EXPECT_EQ(value(), "x");
}

TEST_F(history_walk, so_does_a_redo) {
    tran_end_message_impl elsewhere(&inside());
    change("x");
    model->undo();
    static_cast<tran_begin_message_impl&>(*log().undone().newest()).set_partner(&elsewhere);
    ASSERT_TRUE(model->can_redo());
    EXPECT_EQ(log().redo(), nullptr);
    EXPECT_EQ(value(), "x");
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_TRUE(log().undone().empty());
    EXPECT_TRUE(model->is_redoing());
    EXPECT_FALSE(model->in_transaction());
    model->clear_history();

    change("y");
    model->undo();
    EXPECT_EQ(value(), "x");
    model->redo();
    EXPECT_EQ(value(), "y");
    EXPECT_FALSE(model->is_redoing());
}

} // namespace
} // namespace kelm::test
