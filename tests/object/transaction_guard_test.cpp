// The scoped guard: commit, rollback, misuse and what is said of it.
// Transactions themselves are transactions_test.
#include "tests/support/world.h"
#include "util/process_state.h"

#include <optional>
#include <stdexcept>

namespace kelm::test {
namespace {

class transaction_guard : public world {
protected:
    transaction_guard() : a(thing("a")), channel_(process().complain) {
        said_.clear();
        process().complain = [](const std::string& text) { said_ += text + "\n--\n"; };
    }
    ~transaction_guard() override { process().complain = channel_; }

    void set(const std::string& value) { a->set_property(props::text, text(value)); }
    std::string value() { return as_text(a->get_property(props::text)); }
    static void expect_said(const std::string& first_line) {
        std::string expected;
        if (!first_line.empty()) {
            expected =
                first_line +
                "\nPlease contact Qordel tech support (mail to support@qordel.com) and let us know that\n"
                "you encountered this message and what you were doing when you encountered it.\n--\n";
        }
        EXPECT_EQ(std::exchange(said_, {}), expected);
    }

    object* const a;

private:
    static inline std::string said_;
    void (*channel_)(const std::string&);
};

TEST_F(transaction_guard, a_committed_one_leaves_one_transaction) {
    {
        transaction_object guard(model, "work");
        EXPECT_TRUE(guard.is_open());
        EXPECT_EQ(guard.name(), "work");
        EXPECT_EQ(guard.id(), model->last_transaction_id());
        set("x");
        guard.commit();
        EXPECT_FALSE(guard.is_open());
        EXPECT_EQ(guard.id(), 0u);
        EXPECT_EQ(guard.name(), "work") << "the name stays";
        guard.commit();
        guard.rollback();
    }
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_EQ(value(), "x");
    EXPECT_EQ(model->undo_name(), "work");
    expect_said("");
}

TEST_F(transaction_guard, one_that_goes_without_a_commit_is_rolled_back) {
    {
        const transaction_object guard(model, "work");
        set("x");
    }
    EXPECT_EQ(value(), "none");
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_FALSE(model->in_transaction());
    expect_said("");
}

TEST_F(transaction_guard, an_exception_rolls_back) {
    try {
        const transaction_object guard(model, "work");
        set("x");
        throw std::runtime_error("half-way");
    } catch (const std::runtime_error&) {
        EXPECT_EQ(value(), "none");
        EXPECT_FALSE(model->in_transaction());
    }
}

TEST_F(transaction_guard, rollback_takes_back_the_current_level_only) {
    {
        const transaction_object guard(model, "work");
        set("x");
        begin("inner");
        set("y");
    }
    EXPECT_EQ(value(), "x") << "somebody has left a level open";
    EXPECT_TRUE(model->in_transaction());
    expect_said("");
}

TEST_F(transaction_guard, a_closed_one_is_silent) {
    transaction_object guard;
    EXPECT_FALSE(guard.is_open());
    EXPECT_EQ(guard.id(), 0u);
    EXPECT_EQ(guard.name(), "");
    guard.commit();
    guard.rollback();
    guard.reset();
    transaction_object without_model(nullptr, "nowhere");
    EXPECT_FALSE(without_model.is_open());
    EXPECT_EQ(without_model.name(), "nowhere");
    guard.open(nullptr, "nowhere either");
    EXPECT_FALSE(guard.is_open());
    EXPECT_EQ(guard.name(), "nowhere either");
    guard.commit();
    expect_said("");
    EXPECT_EQ(model->message_count(), 0u);
}

TEST_F(transaction_guard, a_commit_of_what_is_closed_already_is_complained_of) {
    transaction_object guard(model, "work");
    set("x");
    end();
    EXPECT_FALSE(guard.is_open());
    guard.commit();
    expect_said("Trying to commit transaction work. But the transaction has already been closed!");
    EXPECT_EQ(guard.id(), 0u);
    EXPECT_EQ(value(), "x");
    guard.commit();
    expect_said("");
}

TEST_F(transaction_guard, a_stray_change_does_not_pass_for_an_open_transaction) {
    transaction_object guard(model, "work");
    set("x");
    end();
    set("stray");
    EXPECT_FALSE(guard.is_open());
    guard.commit();
    expect_said("Trying to commit transaction work. But the transaction has already been closed!");
    EXPECT_EQ(value(), "stray");
    EXPECT_EQ(message_types(), "1 7 2 7");
}

TEST_F(transaction_guard, one_that_somebody_else_has_ended_goes_in_silence) {
    std::optional<transaction_object> guard;
    guard.emplace(model, "work");
    const u32 id = guard->id();
    set("x");
    end();
    guard->rollback();
    EXPECT_EQ(guard->id(), id) << "with none open the fields stay as they are";
    guard.reset();
    EXPECT_EQ(value(), "x");
    expect_said("");
}

TEST_F(transaction_guard, one_behind_whose_back_another_was_begun_gives_up_with_a_complaint) {
    std::optional<transaction_object> guard;
    guard.emplace(model, "mine");
    set("x");
    end();
    begin("theirs");
    set("y");
    EXPECT_FALSE(guard->is_open());
    guard->commit();
    expect_said("Trying to commit transaction mine. But the current transaction is theirs!");
    EXPECT_NE(guard->id(), 0u) << "it is still held";
    guard.reset();
    expect_said("Trying to rollback transaction mine. But the current transaction is theirs!");
    EXPECT_EQ(value(), "y");
    EXPECT_TRUE(model->in_transaction());
}

TEST_F(transaction_guard, rolling_back_what_is_no_longer_in_the_log_is_silent) {
    std::optional<transaction_object> guard;
    guard.emplace(model, "mine");
    set("x");
    end();
    model->clear_history();
    begin("theirs");
    set("y");
    guard->rollback();
    EXPECT_EQ(guard->id(), 0u);
    guard.reset();
    expect_said("");
    EXPECT_EQ(value(), "y");
    EXPECT_TRUE(model->in_transaction());
}

TEST_F(transaction_guard, one_inside_another_can_neither_commit_nor_roll_back) {
    transaction_object outer(model, "outer");
    set("x");
    {
        transaction_object inner(model, "inner");
        EXPECT_FALSE(inner.is_open()) << "the outermost is another";
        set("y");
        inner.commit();
        expect_said("Trying to commit transaction inner. But the current transaction is outer!");
        EXPECT_NE(inner.id(), 0u);
    }
    expect_said("Trying to rollback transaction inner. But the current transaction is outer!");
    EXPECT_EQ(value(), "y");
    outer.commit(); // ends the inner level, and lets go of the outer one
    EXPECT_TRUE(model->in_transaction());
    expect_said("");
    end();
}

TEST_F(transaction_guard, opening_one_that_is_held_rolls_the_held_one_back_first) {
    transaction_object guard(model, "first");
    set("x");
    guard.open(model, "second");
    expect_said("Trying to open new transaction second. But there is already an open transaction first !");
    EXPECT_EQ(value(), "none");
    EXPECT_TRUE(guard.is_open());
    EXPECT_EQ(guard.name(), "second");
    set("y");
    guard.commit();
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_EQ(model->undo_name(), "second");
    guard.open(model, "third");
    expect_said("");
    guard.open(nullptr, "none");
    expect_said("Trying to open new transaction none. But there is already an open transaction third !");
    EXPECT_FALSE(guard.is_open());
    EXPECT_FALSE(model->in_transaction());
}

TEST_F(transaction_guard, one_whose_begin_was_refused_is_closed_and_leaves_the_transaction_open) {
    recorder ear;
    ear.watch(root);
    ear.answer = false;
    {
        transaction_object guard(model, "refused");
        EXPECT_FALSE(guard.is_open());
        EXPECT_EQ(guard.id(), 0u);
        EXPECT_EQ(guard.name(), "refused");
        guard.commit();
    }
    expect_said("");
    EXPECT_TRUE(model->in_transaction()) << "nobody ends it";
}

TEST_F(transaction_guard, one_that_was_told_to_forget_leaves_the_transaction_open) {
    {
        transaction_object guard(model, "work");
        set("x");
        guard.reset();
        EXPECT_FALSE(guard.is_open());
        EXPECT_EQ(guard.id(), 0u);
        EXPECT_EQ(guard.name(), "work");
    }
    EXPECT_TRUE(model->in_transaction());
    EXPECT_EQ(value(), "x");
    expect_said("");
    end();
}

TEST_F(transaction_guard, an_empty_one_commits_without_a_trace) {
    transaction_object guard(model, "nothing");
    guard.commit();
    EXPECT_FALSE(guard.is_open());
    EXPECT_EQ(model->message_count(), 0u);
    expect_said("");
}

TEST_F(transaction_guard, one_may_outlive_its_model) {
    object* const other = fw.create_object(type_id::model, nullptr);
    transaction_object guard(other->model(), "work");
    transaction_object committed(other->model(), "inner");
    fw.create_object(types::thing, other);
    ASSERT_TRUE(fw.delete_object(other));
    EXPECT_FALSE(guard.is_open());
    committed.commit();
    EXPECT_EQ(committed.id(), 0u);
    guard.rollback();
    fw.set_in_semantic(false);
    expect_said("");
}

TEST_F(transaction_guard, one_whose_level_a_refusal_has_taken_back_goes_in_silence) {
    object* const h = hooked("h");
    hooks.refuse<pre_prop_set_semantic>();
    {
        transaction_object guard(model, "work");
        set("x");
        EXPECT_FALSE(h->set_property(props::text, text("y")));
        EXPECT_FALSE(guard.is_open());
    }
    expect_said("");
    EXPECT_EQ(value(), "none");
    EXPECT_EQ(model->message_count(), 0u);
}

} // namespace
} // namespace kelm::test
