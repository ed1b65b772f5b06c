// Hooks behind the end of an outermost transaction.
// Hooks of single changes are tested with these.
#include "tests/object/transaction_world.h"

#include <functional>

namespace kelm::test {
namespace {

class end_hooks : public transaction_world {};

TEST_F(end_hooks, the_hooks_behind_an_end_run_for_stored_outermost_ones) {
    int calls = 0;
    at_end = [&](kelm::model* which) {
        EXPECT_EQ(which, model);
        EXPECT_TRUE(fw.in_semantic());
        EXPECT_FALSE(model->in_transaction());
        ++calls;
        return true;
    };
    begin("empty");
    end();
    EXPECT_EQ(calls, 0);
    begin("outer");
    begin("inner");
    set("x");
    end();
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(model->end_transaction());
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(fw.in_semantic());
    model->undo();
    model->redo();
    EXPECT_EQ(calls, 1) << "undo and redo call no hooks";
}

TEST_F(end_hooks, a_hook_behind_the_end_that_refuses_has_it_undone) {
    at_end = [](kelm::model*) { return false; };
    begin("unwanted");
    set("x");
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_EQ(value(), "none");
    EXPECT_FALSE(fw.in_semantic());
    EXPECT_FALSE(model->is_modified());
    EXPECT_EQ(model->redo_name(), "unwanted");
    at_end = nullptr;
    model->redo();
    EXPECT_EQ(value(), "x") << "it stays on the redo side";
}

TEST_F(end_hooks, keeps_what_is_refused_behind_the_end_where_it_cannot_be_undone) {
    const struct {
        const char* why;
        std::function<void()> prepare;
    } rows[] = {
        {"undo is off", [&] { model->set_undo_levels(0); }},
        {"the limit is used up",
         [&] {
             change("1");
             model->set_undo_levels(1);
             model->undo();
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        at_end = nullptr;
        model->set_undo_levels(-1);
        row.prepare();
        at_end = [](kelm::model*) { return false; };
        begin();
        set(row.why);
        EXPECT_EQ(model->end_transaction(), nullptr);
        EXPECT_EQ(value(), row.why);
        EXPECT_TRUE(fw.in_semantic()) << "nothing has cleared it";
        EXPECT_FALSE(model->can_undo());
        EXPECT_FALSE(model->can_redo());
    }
}

TEST_F(end_hooks, what_a_hook_behind_the_end_changes_is_stray) {
    at_end = [&](kelm::model*) {
        a->set_property(props::number, number(1));
        return false;
    };
    begin();
    set("x");
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_EQ(message_types(), "1 7 2 7");
    EXPECT_EQ(value(), "x") << "behind a stray change nothing can be undone";
    EXPECT_FALSE(model->message_at(3)->is_user_created());
}

} // namespace
} // namespace kelm::test
