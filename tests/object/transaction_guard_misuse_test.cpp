// Misuse of the scoped guard in detail: when a complaint comes, where it goes, what a guard still holds behind it, and
// what exceptions do.  What a guard is for, and the words of each complaint, are transaction_guard_test.
#include "object/model_impl.h"
#include "tests/object/transaction_world.h"
#include "util/process_state.h"

#include <optional>
#include <stdexcept>
#include <type_traits>

namespace kelm::test {
namespace {

/// Writes down what is complained of, with the state of things at that moment.
class guard_misuse : public transaction_world {
protected:
    guard_misuse() : channel_(process().complain) {
        test_ = this;
        said_.clear();
        process().complain = [](const std::string& text) {
            said_ += text.substr(0, text.find('\n')) + " [" + test_->value() +
                     (test_->model->in_transaction() ? ", open" : ", closed") +
                     (test_->held_ && test_->held_->id() != 0 ? ", held" : "") + "]\n";
        };
    }
    ~guard_misuse() override { process().complain = channel_; }

    void expect_said(const std::string& lines) { EXPECT_EQ(std::exchange(said_, {}), lines); }

    std::optional<transaction_object> held_;

private:
    static inline guard_misuse* test_;
    static inline std::string said_;
    void (*channel_)(const std::string&);
};

static_assert(std::is_nothrow_destructible_v<transaction_object>);

TEST_F(guard_misuse, a_complaint_comes_before_anything_is_done) {
    held_.emplace(model, "first");
    set("x");
    held_->open(model, "second");
    expect_said("Trying to open new transaction second. But there is already an open transaction first ! "
                "[x, open, held]\n");
    set("y");
    end();
    held_->commit();
    expect_said("Trying to commit transaction second. But the transaction has already been closed! "
                "[y, closed, held]\n");
    EXPECT_EQ(held_->id(), 0u);
}

TEST_F(guard_misuse, a_rollback_of_another_ones_transaction_lets_go_behind_the_complaint) {
    held_.emplace(model, "mine");
    set("x");
    end();
    begin("theirs");
    set("y");
    held_->rollback();
    expect_said(
        "Trying to rollback transaction mine. But the current transaction is theirs! [y, open, held]\n");
    EXPECT_EQ(held_->id(), 0u);
    EXPECT_FALSE(held_->is_open());
    held_->rollback();
    held_->commit();
    held_.reset();
    expect_said("");
    EXPECT_EQ(value(), "y");
}

TEST_F(guard_misuse, a_commit_of_another_ones_transaction_holds_on_and_may_be_tried_again) {
    held_.emplace(model, "mine");
    const u32 id = held_->id();
    set("x");
    end();
    begin("theirs");
    set("y");
    const std::string line =
        "Trying to commit transaction mine. But the current transaction is theirs! [y, open, held]\n";
    held_->commit();
    held_->commit();
    expect_said(line + line);
    EXPECT_EQ(held_->id(), id);
    end();
    held_->commit();
    expect_said("Trying to commit transaction mine. But the transaction has already been closed! "
                "[y, closed, held]\n");
    held_.reset();
    expect_said("");
}

TEST_F(guard_misuse, one_whose_transaction_is_over_still_holds_it_until_it_is_told_otherwise) {
    held_.emplace(model, "first");
    const u32 id = held_->id();
    set("x");
    model->rollback_transaction_all();
    held_->rollback(); // nothing is open: nothing is done
    EXPECT_EQ(held_->id(), id);
    expect_said("");
    held_->open(model, "second");
    expect_said("Trying to open new transaction second. But there is already an open transaction first ! "
                "[none, closed, held]\n");
    EXPECT_TRUE(held_->is_open());
    EXPECT_EQ(held_->id(), id + 1);
    set("y");
    end();
    held_->open(nullptr, "third");
    expect_said("Trying to open new transaction third. But there is already an open transaction second ! "
                "[y, closed, held]\n");
    EXPECT_FALSE(held_->is_open());
    EXPECT_EQ(held_->name(), "third");
    held_->open(model, "fourth"); // it is closed now
    expect_said("");
    held_->commit();
    EXPECT_EQ(value(), "y");
}

TEST_F(guard_misuse, what_somebody_else_has_rolled_back_cannot_be_committed) {
    held_.emplace(model, "work");
    set("x");
    model->rollback_transaction();
    held_->commit();
    expect_said("Trying to commit transaction work. But the transaction has already been closed! "
                "[none, closed, held]\n");
    EXPECT_EQ(held_->id(), 0u);
}

TEST_F(guard_misuse, a_transaction_that_was_given_the_same_number_passes_for_its_own) {
    change("before");
    held_.emplace(model, "mine");
    const u32 id = held_->id();
    set("x");
    end();
    model->undo(); // its number is free again
    begin("theirs");
    EXPECT_EQ(model->last_transaction_id(), id);
    EXPECT_TRUE(held_->is_open());
    set("y");
    held_->commit();
    expect_said("");
    EXPECT_FALSE(model->in_transaction());
    EXPECT_EQ(model->undo_name(), "theirs");
}

TEST_F(guard_misuse, names_are_said_as_they_are) {
    for (const char* name : {"", "two words", "100%d %s", "\xC3\xA4"}) {
        held_.emplace(model, name);
        set("x");
        end();
        EXPECT_EQ(held_->name(), name);
        held_->commit();
        expect_said("Trying to commit transaction " + std::string(name) +
                    ". But the transaction has already been closed! [x, closed, held]\n");
    }
}

TEST_F(guard_misuse, without_a_channel_the_whole_text_goes_to_standard_error_and_the_program_goes_on) {
    process().complain = nullptr;
    held_.emplace(model, "work");
    set("x");
    end();
    testing::internal::CaptureStderr();
    held_->commit();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Trying to commit transaction work. But the transaction has already been closed!\n"
              "Please contact Qordel tech support (mail to support@qordel.com) and let us know that\n"
              "you encountered this message and what you were doing when you encountered it.\n");
    EXPECT_EQ(held_->id(), 0u);
}

TEST_F(guard_misuse, a_hook_that_refuses_the_end_closes_the_guard) {
    at_end = [](kelm::model*) { return false; };
    held_.emplace(model, "unwanted");
    set("x");
    held_->commit();
    EXPECT_FALSE(held_->is_open());
    EXPECT_EQ(held_->id(), 0u);
    EXPECT_EQ(value(), "none");
    EXPECT_EQ(model->redo_name(), "unwanted");
    held_.reset();
    expect_said("");
}

TEST_F(guard_misuse, one_is_not_open_while_its_transaction_is_taken_back) {
    held_.emplace(model, "work");
    EXPECT_TRUE(held_->is_open());
    set("x");
    listen();
    bool open = true;
    ear.meanwhile = [&](message*) { open = held_->is_open(); };
    held_->rollback();
    EXPECT_FALSE(open);
    EXPECT_EQ(held_->id(), 0u);
    expect_said("");
}

TEST_F(guard_misuse, one_opened_behind_a_stray_change_takes_only_its_own_back) {
    set("stray");
    {
        const transaction_object guard(model, "work");
        EXPECT_TRUE(guard.is_open());
        set("x");
    }
    EXPECT_EQ(value(), "stray");
    EXPECT_EQ(message_types(), "7");
    expect_said("");
}

TEST_F(guard_misuse, numbers_that_are_used_up_roll_the_one_around_back) {
    auto& inside = static_cast<model_impl&>(*model);
    inside.log().add_message(std::make_unique<tran_begin_message_impl>(&inside, 0xFFFFFFFD, "high"));
    set("before");
    end();
    model->undo();
    model->redo(); // the counter follows
    try {
        transaction_object outer(model, "outer");
        EXPECT_EQ(outer.id(), 0xFFFFFFFEu);
        set("x");
        transaction_object inner(model, "inner");
        FAIL() << "there is no number left";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Maximum Number of Transaction Allowed Has Been Reached....");
    }
    EXPECT_EQ(value(), "before");
    EXPECT_FALSE(model->in_transaction());
    transaction_object later;
    EXPECT_THROW(later.open(model, "later"), std::runtime_error);
    EXPECT_FALSE(later.is_open());
    EXPECT_EQ(later.id(), 0u);
    EXPECT_EQ(later.name(), "later");
    expect_said("");
}

TEST_F(guard_misuse, a_rollback_that_fails_in_the_destructor_ends_the_process) {
    EXPECT_DEATH(
        {
            listen();
            const transaction_object guard(model, "work");
            set("x");
            ear.meanwhile = [](message*) { throw std::runtime_error("no"); };
        },
        "");
}

} // namespace
} // namespace kelm::test
