// Undo, redo and rollbacks while those who are told forget the history, change the model, or walk themselves.
// What the walks do by themselves is history_walk_test.
#include "tests/object/transaction_world.h"
#include "tests/support/consistency.h"

#include <functional>
#include <stdexcept>

namespace kelm::test {
namespace {

struct walk_case {
    const char* why;
    void (kelm::model::*walk)();
    bool undone_before;
    bool left_open;
};

constexpr walk_case walks[] = {
    {"undo", &kelm::model::undo, false, false},
    {"redo", &kelm::model::redo, true, false},
    {"rollback of the last", &kelm::model::rollback_last_transaction, false, false},
    {"rollback of all", &kelm::model::rollback_transaction_all, false, true},
    {"rollback of a level", &kelm::model::rollback_transaction, false, true},
};

class meddled_walk : public transaction_world {
protected:
    /// Changes of every sort, up to where the walk begins.
    void come_before(const walk_case& row) {
        object* const b = part("b");
        change("before");
        begin("walked");
        set("x");
        fw.delete_object(b);
        fw.create_object(types::part, root)->set_property(props::name, text("c"));
        if (!row.left_open) end();
        if (row.undone_before) model->undo();
    }
    /// Walks, and calls `meddle` the moment-th time that something is heard.  \returns whether as much was heard
    bool walk(const walk_case& row, int moment, const std::function<void()>& meddle) {
        recorder every;
        every.watch(root);
        every.watch(a);
        int so_far = 0;
        every.meanwhile = [&](message*) {
            if (so_far++ == moment) meddle();
        };
        (model->*row.walk)();
        every.meanwhile = nullptr;
        return so_far > moment;
    }
};

TEST_F(meddled_walk, who_hears_it_may_forget_the_history_at_any_moment) {
    for (const walk_case& row : walks) {
        bool was_reached = true;
        for (int moment = 0; was_reached; ++moment) {
            SCOPED_TRACE(std::string(row.why) + " at " + std::to_string(moment));
            come_before(row);
            was_reached = walk(row, moment, [&] { model->clear_history(); });
            EXPECT_TRUE(was_reached || moment > 4) << "a walk of few words";
            if (!was_reached) model->clear_history();
            EXPECT_EQ(model->message_count(), 0u);
            EXPECT_FALSE(model->can_redo());
            change("behind");
            EXPECT_EQ(value(), "behind");
            EXPECT_EQ(message_types(), "1 7 2");
            model->undo();
            EXPECT_TRUE(model->can_redo());
            EXPECT_FALSE(model->is_undoing());
            EXPECT_FALSE(model->in_transaction());
            model->clear_history();
        }
    }
}

// Nobody may do so; what it leads to is not promised, but that the walk ends and what comes behind it works.
TEST_F(meddled_walk, who_hears_it_and_changes_the_model_all_the_same_breaks_nothing) {
    object* bystander = nullptr;
    const struct {
        const char* why;
        std::function<void()> change;
    } changes[] = {
        {"a value", [&] { a->set_property(props::number, number(7)); }},
        {"the very value", [&] { set("meanwhile"); }},
        {"an object comes", [&] { fw.create_object(types::part, root); }},
        {"all children go", [&] { root->remove_children(nullptr); }},
        {"a bystander goes", [&] { fw.delete_object(bystander); }},
        {"a whole transaction",
         [&] {
             begin("own");
             a->delete_property(props::text);
             end();
         }},
        {"one that stays open", [&] { begin("left open"); }},
        {"an end", [&] { end(); }},
        {"less to undo", [&] { model->set_undo_levels(1); }},
    };
    for (const walk_case& row : walks)
        for (const auto& meddling : changes) {
            bool was_reached = true;
            for (int moment = 0; was_reached; ++moment) {
                SCOPED_TRACE(std::string(row.why) + ", " + meddling.why + " at " + std::to_string(moment));
                model->set_undo_levels(-1);
                bystander = part("bystander");
                come_before(row);
                was_reached = walk(row, moment, meddling.change);
                EXPECT_TRUE(was_reached || moment > 3) << "a walk of few words";
                EXPECT_EQ(broken_links(*model), "");
                EXPECT_FALSE(model->is_undoing() || model->is_redoing() || model->is_rolling_back());
                model->rollback_transaction_all();
                while (model->can_undo()) model->undo();
                while (model->can_redo()) model->redo();
                EXPECT_EQ(broken_links(*model), "");
                model->clear_history();
                model->set_undo_levels(-1); // undos that were overtaken count against a limit
                change("behind");
                EXPECT_EQ(message_types(), "1 7 2");
                model->undo();
                EXPECT_EQ(message_types(), "");
                root->remove_children(nullptr);
                root->add_child(a);
                model->clear_history();
            }
        }
}

TEST_F(meddled_walk, what_is_thrown_is_not_lost_where_the_history_is_forgotten_behind_it) {
    for (const walk_case& row : walks) {
        SCOPED_TRACE(row.why);
        begin();
        set("x");
        set("y");
        if (!row.left_open) end();
        if (row.undone_before) model->undo();
        recorder of_a;
        of_a.watch(a);
        int told = 0;
        of_a.meanwhile = [&](message*) {
            if (++told == 1) throw std::runtime_error("unheard");
            model->clear_history();
        };
        EXPECT_THROW((model->*row.walk)(), std::runtime_error);
        EXPECT_EQ(told, 2);
        of_a.meanwhile = nullptr;
        EXPECT_EQ(model->message_count(), 0u);
        a->delete_property(props::text);
        model->clear_history();
    }
}

} // namespace
} // namespace kelm::test
