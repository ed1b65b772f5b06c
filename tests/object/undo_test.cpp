// Undo and redo: what they tell, what they count, and limits.
// What a transaction is stored as is transactions_test.
#include "tests/object/transaction_world.h"

namespace kelm::test {
namespace {

class undo_and_redo : public transaction_world {};

TEST_F(undo_and_redo, undo_and_redo_move_one_and_tell_a_bracket) {
    change("x");
    const u32 id = model->last_transaction_id();
    listen();
    u32 told_id = 0;
    ear.meanwhile = [&](message* what) {
        EXPECT_FALSE(model->in_transaction()) << "a walk is under way";
        EXPECT_EQ(model->is_undoing(), !what->is_first_run() && !model->is_redoing());
        if (const auto* const begun = message_cast<tran_begin_message>(what)) told_id = begun->id();
        const auto* const ended = message_cast<tran_end_message>(what);
        EXPECT_TRUE(!ended || !model->is_undoing() || !ended->begin_message()) << "it stands for a begin";
    };
    fw.set_in_semantic(true);
    model->undo();
    EXPECT_FALSE(fw.in_semantic());
    EXPECT_EQ(told_id, id);
    expect_heard("undo", "1 again  Begin Transaction - \n2 again  End Transaction - \n");
    EXPECT_EQ(value(), "none");
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_FALSE(model->can_undo());
    EXPECT_TRUE(model->can_redo());
    EXPECT_FALSE(model->is_modified());
    model->undo(); // nothing left
    expect_heard("nothing", "");

    fw.set_in_semantic(true);
    model->redo();
    EXPECT_FALSE(fw.in_semantic());
    EXPECT_EQ(told_id, id);
    expect_heard("redo", "1 again  Begin Transaction - x\n2 again  End Transaction - x\n");
    EXPECT_EQ(value(), "x");
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_TRUE(model->is_modified());
    EXPECT_FALSE(model->is_undoing());
    EXPECT_FALSE(model->is_redoing());
    model->redo();
    expect_heard("nothing more", "");
}

TEST_F(undo_and_redo, no_walk_starts_inside_another) {
    change("x");
    change("y");
    listen();
    ear.meanwhile = [&](message*) {
        model->undo();
        model->redo();
        model->rollback_last_transaction();
        model->rollback_transaction_all();
    };
    model->undo();
    EXPECT_EQ(value(), "x");
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_EQ(model->redo_name(), "y");
    model->redo();
    EXPECT_EQ(value(), "y");
    EXPECT_EQ(message_types(), "1 7 2 1 7 2");
    model->rollback_last_transaction();
    EXPECT_EQ(value(), "x");
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_TRUE(model->can_undo());
}

TEST_F(undo_and_redo, undo_behind_a_save_makes_it_modified) {
    change("x");
    model->clear_modified();
    model->undo();
    EXPECT_TRUE(model->is_modified());
    model->redo();
    EXPECT_FALSE(model->is_modified());
}

TEST_F(undo_and_redo, keeps_giving_the_number_of_an_undone_one_again_when_one_is_left_before_it) {
    change("x");
    const u32 first = model->last_transaction_id();
    change("y");
    model->undo();
    EXPECT_EQ(model->last_transaction_id(), first);
    model->undo();
    EXPECT_EQ(model->last_transaction_id(), first) << "with none left the counter stays";
    model->redo();
    model->redo();
    EXPECT_EQ(model->last_transaction_id(), first + 1);
    model->undo();
    begin();
    EXPECT_EQ(model->last_transaction_id(), first + 1) << "again";
    end();
}

TEST_F(undo_and_redo, a_new_change_forgets_what_was_undone) {
    change("x");
    change("y");
    model->undo();
    EXPECT_TRUE(model->can_redo());
    set("stray");
    EXPECT_FALSE(model->can_redo());
    EXPECT_EQ(message_types(), "1 7 2 7");
}

TEST_F(undo_and_redo, without_undo_nothing_can_be_undone_or_redone) {
    change("x");
    change("y");
    model->undo();
    model->set_undo_levels(0);
    EXPECT_EQ(model->undo_levels(), 0);
    EXPECT_FALSE(model->can_undo());
    EXPECT_FALSE(model->can_redo());
    model->undo();
    model->redo();
    EXPECT_EQ(value(), "x");
    EXPECT_EQ(model->undo_name(), "");
    EXPECT_EQ(model->redo_name(), "");
    EXPECT_TRUE(model->last_transaction_is_empty()) << "when nothing can be undone, for whatever reason";
    change("z");
    change("zz");
    EXPECT_EQ(message_types(), "1 7 2") << "one of them is kept";
    model->set_undo_levels(-1);
    EXPECT_EQ(model->undo_levels(), -1);
    EXPECT_TRUE(model->can_undo()) << "no limit, and no count";
}

TEST_F(undo_and_redo, a_limit_drops_the_oldest) {
    model->set_undo_levels(2);
    EXPECT_EQ(model->undo_levels(), 2);
    change("1");
    change("2");
    change("3");
    EXPECT_EQ(message_types(), "1 7 2 1 7 2");
    EXPECT_EQ(message_cast<tran_begin_message>(model->message_at(0))->name(), "2");
    model->undo();
    model->undo();
    EXPECT_EQ(value(), "1");
    EXPECT_FALSE(model->can_undo());
}

TEST_F(undo_and_redo, what_comes_before_the_oldest_kept_one_goes_with_the_dropped) {
    model->set_undo_levels(1);
    set("stray");
    change("1");
    EXPECT_EQ(message_types(), "1 7 2");
    change("2");
    EXPECT_EQ(message_types(), "1 7 2");
    begin("outer");
    set("a");
    begin("inner");
    set("b");
    end();
    EXPECT_EQ(message_types(), "1 7 2 1 7 1 7 2") << "levels inside drop nothing";
    end();
    EXPECT_EQ(message_types(), "1 7 1 7 2 2");
}

TEST_F(undo_and_redo, keeps_all_until_the_next_end_when_the_first_limit_is_set_late) {
    for (const char* value : {"1", "2", "3", "4"}) change(value);
    model->set_undo_levels(3);
    EXPECT_EQ(model->message_count(), 12u) << "coming from no limit";
    change("5");
    EXPECT_EQ(model->message_count(), 9u) << "the next end does it";
    model->set_undo_levels(5);
    EXPECT_EQ(model->message_count(), 9u);
    model->set_undo_levels(2);
    EXPECT_EQ(model->message_count(), 6u);
    model->set_undo_levels(0);
    EXPECT_EQ(model->message_count(), 3u) << "one is kept";
    model->set_undo_levels(-7);
    EXPECT_EQ(model->undo_levels(), -1) << "no limit";
}

TEST_F(undo_and_redo, keeps_counting_what_was_undone_and_not_redone) {
    for (const char* value : {"1", "2", "3"}) change(value);
    model->set_undo_levels(2);
    model->undo();
    model->undo();
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_FALSE(model->can_undo()) << "although one is left";
    model->redo();
    EXPECT_TRUE(model->can_undo());
    model->undo();
    change("new");
    EXPECT_FALSE(model->can_redo());
    EXPECT_FALSE(model->can_undo()) << "only a redo lowers the count, and none can come";
    EXPECT_EQ(value(), "new");
}

TEST_F(undo_and_redo, a_dropped_deletion_is_final) {
    object* const b = thing("b");
    model->set_undo_levels(1);
    begin();
    fw.delete_object(b);
    end();
    change("x"); // drops the deletion, and with it the object
    EXPECT_EQ(message_types(), "1 7 2");
    model->undo();
    EXPECT_EQ(names_of(root->children()), "a");
}

TEST_F(undo_and_redo, an_undone_creation_is_freed_with_the_redo_side) {
    begin();
    const object* const made = fw.create_object(types::thing, root);
    const u32 id = made->id();
    end();
    model->undo();
    model->clear_history();
    EXPECT_EQ(model->find_object(id), nullptr);
    EXPECT_FALSE(model->can_redo());
}

} // namespace
} // namespace kelm::test
