// Rollback: of a level, of all that is open, of the last closed transaction.
// The guard that rolls back by itself is transaction_guard_test.
#include "tests/object/transaction_world.h"

namespace kelm::test {
namespace {

class rollback : public transaction_world {};

TEST_F(rollback, a_rollback_with_none_open_only_clears_the_mark) {
    change("x");
    listen();
    for (const bool all : {true, false}) {
        fw.set_in_semantic(true);
        all ? model->rollback_transaction_all() : model->rollback_transaction();
        EXPECT_FALSE(fw.in_semantic());
        EXPECT_EQ(message_types(), "1 7 2");
        EXPECT_EQ(value(), "x");
    }
    expect_heard("nothing", "");
}

TEST_F(rollback, rollback_takes_back_the_whole_open_one) {
    change("x");
    model->clear_modified();
    listen();
    begin("bad");
    const u32 id = model->last_transaction_id();
    set("y");
    object* const made = fw.create_object(types::thing, root);
    begin("inner");
    set("z");
    end();
    ear.take();
    ear.line = [](message* what) { return std::to_string(what->type()); };
    int told = 0;
    ear.meanwhile = [&](message* what) {
        EXPECT_TRUE(model->is_rolling_back());
        EXPECT_FALSE(model->in_transaction());
        const auto* const back = message_cast<tran_rollback_message>(what);
        if (!back) return;
        ++told;
        EXPECT_EQ(back->begin_message()->name(), "bad");
        EXPECT_EQ(back->id(), id);
        EXPECT_EQ(back->level(), 0u);
        EXPECT_FALSE(back->was_closed());
        EXPECT_EQ(value(), "x");
    };
    model->rollback_transaction_all();
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(model->is_rolling_back());
    EXPECT_EQ(value(), "x");
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_FALSE(model->is_modified());
    EXPECT_FALSE(model->can_redo()) << "it cannot be had again";
    EXPECT_EQ(made->state(), state::deleted) << "and stays readable";
    EXPECT_EQ(made->model(), model);
    EXPECT_EQ(model->last_transaction_id(), id + 1) << "its numbers are used up";
    expect_heard("the bracket ends, then the news", "16\n2\n3\n");
}

TEST_F(rollback, rollback_of_a_level_leaves_what_is_around_it) {
    begin("0");
    set("0");
    begin("1");
    set("1");
    begin("2");
    set("2");
    listen();
    model->rollback_transaction();
    EXPECT_EQ(value(), "1");
    EXPECT_TRUE(model->in_transaction());
    EXPECT_EQ(message_types(), "1 7 1 7");
    expect_heard("inner levels make no sound", "");
    EXPECT_EQ(model->begin_transaction("2 again")->level(), 2u) << "level 1 is the current one";
    model->rollback_transaction();
    model->rollback_transaction();
    EXPECT_EQ(value(), "0");
    EXPECT_TRUE(model->end_transaction());
    EXPECT_EQ(message_types(), "1 7 2");
}

TEST_F(rollback, rollback_of_all_reaches_the_outermost_level) {
    begin("0");
    set("0");
    begin("1");
    set("1");
    model->rollback_transaction_all();
    EXPECT_EQ(value(), "none");
    EXPECT_FALSE(model->in_transaction());
    EXPECT_EQ(model->begin_transaction("next")->level(), 0u);
    end();
}

TEST_F(rollback, a_refusing_hook_takes_back_the_innermost_level_alone) {
    begin("outer");
    set("kept");
    begin("inner");
    a->set_property(props::number, number(1));
    hooks.refuse<post_prop_set_semantic>();
    EXPECT_FALSE(a->set_property(props::flag, flag(true)));
    EXPECT_FALSE(fw.in_semantic());
    EXPECT_FALSE(a->defines_property(props::flag));
    EXPECT_FALSE(a->defines_property(props::number));
    EXPECT_EQ(value(), "kept");
    EXPECT_TRUE(model->in_transaction());
    EXPECT_TRUE(model->end_transaction());
    EXPECT_FALSE(model->in_transaction());
}

TEST_F(rollback, the_last_closed_one_can_be_rolled_back) {
    change("x");
    change("y");
    model->undo();
    model->clear_modified();
    listen();
    int told = 0;
    ear.meanwhile = [&](message* what) {
        EXPECT_TRUE(model->is_rolling_back());
        const auto* const back = message_cast<tran_rollback_message>(what);
        if (!back) return;
        ++told;
        EXPECT_TRUE(back->was_closed());
        EXPECT_EQ(back->begin_message()->name(), "x");
    };
    model->rollback_last_transaction();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(value(), "none");
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_FALSE(model->is_rolling_back());
    EXPECT_TRUE(model->is_modified()) << "it counts against the save";
    EXPECT_TRUE(model->can_redo()) << "the redo side is not touched";
    expect_heard("with both ends of the bracket",
                 "1 again  Begin Transaction - \n2 again  End Transaction - \n"
                 "3 first *******   Rollback Transaction - Level 0, " +
                     std::to_string(model->last_transaction_id()) + "\n");
    model->rollback_last_transaction(); // none left
    EXPECT_EQ(told, 1);
}

TEST_F(rollback, only_a_closed_one_is_rolled_back_as_the_last) {
    change("x");
    begin();
    set("y");
    model->rollback_last_transaction();
    EXPECT_EQ(value(), "y");
    EXPECT_EQ(message_types(), "1 7 2 1 7");
    end();
    set("stray");
    model->rollback_last_transaction();
    EXPECT_EQ(value(), "stray");
}

// While an inheritor is told, the message speaks of the inheritor; what goes back is the object that was changed.
TEST_F(rollback, rollback_by_an_observer_of_an_inheritor_takes_back_the_object_that_was_changed) {
    object* const base = thing("base");
    object* const heir = thing("heir");
    const struct {
        const char* why;
        std::function<void()> change;
    } rows[] = {
        {"a value is set", [&] { base->set_property(props::text, text("new")); }},
        {"a value goes", [&] { base->delete_property(props::number); }},
        {"an element comes", [&] { base->append_vector_element(props::list, number(2)); }},
        {"an element changes", [&] { base->set_vector_element(props::list, number(2), 0); }},
        {"an element goes", [&] { base->delete_vector_element(props::list, 0); }},
        {"a mark comes", [&] { base->set_property_not_inheritable(props::flag, true); }},
    };
    begin();
    base->set_property(props::number, number(1));
    base->set_property(props::list, vector_property{});
    base->append_vector_element(props::list, number(1));
    heir->add_inherits_from(base);
    end();
    const std::string before = dump();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        recorder at_heir;
        at_heir.watch(heir);
        std::vector<object*> told_of;
        at_heir.meanwhile = [&](message* what) {
            if (!what->is_first_run()) return;
            told_of.push_back(what->object());
            model->rollback_transaction();
            told_of.push_back(what->object());
        };
        begin();
        row.change();
        EXPECT_FALSE(model->in_transaction());
        EXPECT_EQ(told_of, (std::vector<object*>{heir, heir}))
            << "those that are told after it hear the same";
        EXPECT_EQ(dump(), before);
    }
}

} // namespace
} // namespace kelm::test
