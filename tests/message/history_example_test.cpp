// One transaction in full: what is stored, what each observer hears of it undone and redone, and what is freed with it.
// The single rules behind it have tests of their own.
#include "object/model_impl.h"
#include "tests/support/counted_value.h"
#include "tests/support/world.h"

namespace kelm::test {
namespace {

/// An object x is made below a and gets a name; y, another child of a, is deleted.
class history_example : public world {
protected:
    history_example() : a(thing("a")) {
        begin("y");
        y_ = fw.create_object(types::part, a);
        end();
        model->clear_history();
        while (model->last_transaction_id() != 6) { // an empty one uses a number up
            begin();
            end();
        }
        ears_.line = [this](message* what) { return told(what); };
        ears_.watch(root);
        ears_.watch(a);
        values_before_ = counted_value::alive;
        objects_before_ = objects();
        make_transaction();
        ears_.watch(y_); // plain observers have left it with its deletion
        ears_.take();
    }

    static std::size_t objects_of(kelm::model* of) { return static_cast<model_impl*>(of)->pool().size(); }
    std::size_t objects() const { return objects_of(model); }
    std::size_t objects_made() const { return objects() - objects_before_; }
    long values_made() const { return counted_value::alive - values_before_; }

    /// \returns the log: number, subject, level of transaction messages, who made it
    std::string stored() const {
        std::string lines;
        for (std::size_t i = 0; i != model->message_count(); ++i) {
            message* const at = model->message_at(i);
            lines += std::to_string(i) + ": " + kind_and_details(at) +
                     (at->is_user_created() ? ", the user's" : "") + "\n";
        }
        return lines;
    }
    std::string heard() { return ears_.take(); }

    object* const a;
    object* x_ = nullptr;
    object* y_ = nullptr;

private:
    void make_transaction() {
        begin("work");
        x_ = fw.create_object(types::thing, a);
        ears_.watch(x_);
        x_->set_property(props::name, counted_value(1));
        fw.delete_object(y_);
        end();
    }

    std::string name_of(const object* what) const {
        return what == root ? "model" : what == a ? "a" : what == x_ ? "x" : what == y_ ? "y" : "nobody";
    }

    static std::string text_of(const value_ptr& value) { return value ? value->to_string() : "null"; }

    std::string kind_and_details(message* what) const {
        const std::string line = std::to_string(what->type()) + " " + name_of(what->object());
        if (auto* const m = message_cast<tran_begin_message>(what))
            return line + " begin " + std::to_string(m->id()) + " '" + m->name() + "' level " +
                   std::to_string(m->level()) + (m->end_message() ? " with its end" : " alone");
        if (auto* const m = message_cast<tran_end_message>(what))
            return line + " end " + std::to_string(m->id()) + " level " + std::to_string(m->level()) +
                   (m->begin_message() ? " with its begin" : " alone");
        if (auto* const m = message_cast<obj_create_message>(what))
            return line + " made, owner " + name_of(m->owner());
        if (auto* const m = message_cast<obj_pre_delete_message>(what))
            return line + " going, owner " + name_of(m->owner());
        if (auto* const m = message_cast<obj_delete_message>(what))
            return line + " deleted, owner " + name_of(m->owner());
        if (auto* const m = message_cast<child_add_message>(what))
            return line + " has " + name_of(m->child()) + " at " + std::to_string(m->pos());
        if (auto* const m = message_cast<child_pre_remove_message>(what))
            return line + " loses " + name_of(m->child());
        if (auto* const m = message_cast<child_remove_message>(what))
            return line + " has lost " + name_of(m->child()) + " at " + std::to_string(m->pos());
        if (auto* const m = message_cast<property_set_message>(what))
            return line + " value " + std::to_string(m->property_type()) + " is " + text_of(m->new_value()) +
                   ", was " + text_of(m->old_value()) + " in " + name_of(m->old_owner());
        if (auto* const m = message_cast<property_delete_message>(what))
            return line + " value " + std::to_string(m->property_type()) + " gone, was " +
                   text_of(m->old_value());
        return line;
    }

    /// The message; the state of its object when that comes or goes; and where it stands: the message that acts is
    /// always the newest of the log.
    std::string told(message* what) const {
        std::string line = kind_and_details(what) + (what->is_first_run() ? "; first" : "; again");
        if (what->type() == message_type::obj_create || what->type() == message_type::obj_delete)
            line += ", state " + std::to_string(what->object()->state()) +
                    (model->find_object(what->object()->id()) ? ", found" : ", not found");
        const bool is_stored = model->message_at(model->message_count() - 1) == what;
        return line + (is_stored ? ", stored" : ", passing") + ", " + std::to_string(model->message_count());
    }

    recorder ears_;
    long values_before_ = 0;
    std::size_t objects_before_ = 0;
};

TEST_F(history_example, the_log_holds_each_step) {
    EXPECT_EQ(stored(), "0: 1 model begin 7 'work' level 0 with its end, the user's\n"
                        "1: 4 x made, owner a, the user's\n"
                        "2: 14 a has x at 0\n"
                        "3: 7 x value 1 is counted 1, was null in nobody, the user's\n"
                        "4: 5 y going, owner a, the user's\n"
                        "5: 15 a loses y\n"
                        "6: 16 a has lost y at 0\n"
                        "7: 6 y deleted, owner a\n"
                        "8: 2 model end 7 level 0 with its begin, the user's\n");
    EXPECT_EQ(model->find_object(y_->id()), nullptr);
    EXPECT_EQ(y_->state(), state::deleted);
}

// Positions count within the children of one type.
TEST_F(history_example, undo_is_heard_as_the_inverse_steps_in_a_bracket) {
    model->undo();
    EXPECT_EQ(heard(), "1 model begin 7 '' level 0 alone; again, passing, 9\n"
                       "4 y made, owner a; again, state 1, found, passing, 8\n"
                       "14 a has y at 0; again, passing, 7\n"
                       "10 x value 1 gone, was counted 1; again, passing, 4\n"
                       "16 a has lost x at 0; again, passing, 3\n"
                       "6 x deleted, owner a; again, state 2, found, passing, 2\n"
                       "2 model end 0 level 0 alone; again, passing, 1\n");
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_EQ(model->redo_name(), "work");
    EXPECT_EQ(x_->state(), state::deleted);
    EXPECT_EQ(model->find_object(x_->id()), nullptr);
    EXPECT_FALSE(x_->defines_property(props::name));
    EXPECT_EQ(y_->state(), state::normal);
    EXPECT_EQ(model->find_object(y_->id()), y_);
    EXPECT_EQ(a->children(), std::vector<object*>{y_});
    EXPECT_EQ(objects_made(), 1u) << "x lives on";
    EXPECT_EQ(values_made(), 1) << "so does its name";
}

TEST_F(history_example, redo_is_heard_as_the_stored_messages) {
    model->undo();
    heard();
    model->redo();
    EXPECT_EQ(heard(), "1 model begin 7 'work' level 0 with its end; again, stored, 1\n"
                       "4 x made, owner a; again, state 1, found, stored, 2\n"
                       "14 a has x at 0; again, stored, 3\n"
                       "7 x value 1 is counted 1, was null in nobody; again, stored, 4\n"
                       "5 y going, owner a; again, stored, 5\n"
                       "15 a loses y; again, stored, 6\n"
                       "16 a has lost y at 0; again, stored, 7\n"
                       "6 y deleted, owner a; again, state 2, found, stored, 8\n"
                       "2 model end 7 level 0 with its begin; again, stored, 9\n");
    EXPECT_EQ(x_->state(), state::normal);
    EXPECT_EQ(model->find_object(x_->id()), x_);
    EXPECT_EQ(y_->state(), state::deleted);
    EXPECT_EQ(model->find_object(y_->id()), nullptr);
    EXPECT_EQ(a->children(), std::vector<object*>{x_});
    EXPECT_EQ(objects_made(), 1u);
    EXPECT_EQ(values_made(), 1);
}

TEST_F(history_example, any_number_of_undos_and_redos_is_heard_alike) {
    model->undo();
    const std::string undone = heard();
    model->redo();
    const std::string redone = heard();
    for (int i = 0; i != 3; ++i) {
        model->undo();
        EXPECT_EQ(heard(), undone);
        model->redo();
        EXPECT_EQ(heard(), redone);
    }
    EXPECT_EQ(objects_made(), 1u);
    EXPECT_EQ(values_made(), 1);
}

TEST_F(history_example, a_new_transaction_frees_what_only_redo_could_bring_back) {
    model->undo();
    begin("new");
    EXPECT_EQ(objects_made(), 0u) << "x";
    EXPECT_EQ(values_made(), 0) << "and its name";
    end();
    EXPECT_EQ(a->children(), std::vector<object*>{y_}) << "y is the model's again";
    EXPECT_EQ(y_->state(), state::normal);
}

TEST_F(history_example, the_limit_frees_what_only_undo_could_bring_back) {
    model->set_undo_levels(1);
    EXPECT_EQ(objects_made(), 1u) << "nothing yet: there was no limit before";
    begin("new");
    a->set_property(props::text, text("t"));
    end();
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_EQ(objects_made(), 0u) << "y has gone";
    EXPECT_EQ(a->children(), std::vector<object*>{x_}) << "x is the model's";
    EXPECT_EQ(as_text(x_->get_own_property(props::name)), "counted 1");
    EXPECT_EQ(values_made(), 1);
}

} // namespace
} // namespace kelm::test
