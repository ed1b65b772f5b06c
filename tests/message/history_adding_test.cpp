// Adding messages to a history: levels, ends, what empty transactions leave, the limit, and who hears what when.
// Walking the log is history_walk_test and history_rollback_test.
#include "object/model_impl.h"
#include "tests/object/transaction_world.h"

namespace kelm::test {
namespace {

class history_adding : public transaction_world {
protected:
    model_impl& inside() { return static_cast<model_impl&>(*model); }
    message_history_impl& log() { return inside().log(); }
    bool add_end() { return log().add_message(std::make_unique<tran_end_message_impl>(&inside())); }
    /// Answers the first end that is told from now on with a transaction of its own.
    void answer_an_end() {
        listen();
        ear.meanwhile = [this, left = 1](message* what) mutable {
            if (what->type() == message_type::tran_end && left-- > 0) change("answer");
        };
    }
};

TEST_F(history_adding, a_message_of_any_kind_ends_the_possibility_of_redo) {
    object* const b = thing("b");
    const struct {
        const char* why;
        std::function<void()> add;
        const char* types;
    } rows[] = {
        {"a begin", [&] { begin(); }, "1"},
        {"an end of nothing", [&] { add_end(); }, "2"},
        {"a change of a value", [&] { set("stray"); }, "7"},
        {"a mark", [&] { a->set_property_not_inheritable(props::text, true); }, "13"},
        {"an observer that is an object", [&] { b->attach(dynamic_cast<observer*>(a)); }, "24"},
        {"its leaving", [&] { b->detach_object(a); }, "25"},
        {"a user-defined property",
         [&] { model->add_user_defined_property(types::thing, "more", data_type::integer, "", 0); }, "26"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        change("x");
        model->undo();
        ASSERT_TRUE(model->can_redo());
        row.add();
        EXPECT_FALSE(model->can_redo());
        EXPECT_TRUE(log().undone().empty());
        EXPECT_EQ(message_types(), row.types);
        model->rollback_transaction_all();
        model->clear_history();
    }
}

TEST_F(history_adding, an_end_of_nothing_is_stored_below_every_level_and_told_to_nobody) {
    change("x");
    listen();
    recorder of_history;
    model->history()->attach(&of_history);
    EXPECT_FALSE(add_end());
    EXPECT_FALSE(add_end());
    EXPECT_EQ(message_types(), "1 7 2 2 2");
    EXPECT_EQ(message_cast<tran_end_message>(model->message_at(3))->level(), npos32) << "one below 0";
    EXPECT_EQ(message_cast<tran_end_message>(model->message_at(4))->level(), npos32 - 1);
    expect_heard("the model's", "");
    EXPECT_EQ(of_history.take(), "");
    EXPECT_FALSE(model->can_undo()) << "behind it nothing can be undone";
    EXPECT_TRUE(model->in_transaction()) << "as behind every message that is no end of a transaction";
}

TEST_F(history_adding, an_end_closes_the_newest_begin_that_is_open) {
    tran_begin_message* const outer = model->begin_transaction("outer");
    tran_begin_message* const first = model->begin_transaction("first");
    set("1");
    tran_end_message* const of_first = model->end_transaction();
    tran_begin_message* const second = model->begin_transaction("second");
    EXPECT_EQ(second->level(), 1u);
    tran_begin_message* const innermost = model->begin_transaction("innermost");
    EXPECT_EQ(innermost->level(), 2u);
    set("2");
    tran_end_message* const of_innermost = model->end_transaction();
    tran_end_message* const of_second = model->end_transaction();
    EXPECT_EQ(outer->end_message(), nullptr);
    tran_end_message* const of_outer = model->end_transaction();
    const struct {
        tran_begin_message* begin;
        tran_end_message* end;
    } pairs[] = {{outer, of_outer}, {first, of_first}, {second, of_second}, {innermost, of_innermost}};
    for (const auto& pair : pairs) {
        SCOPED_TRACE(pair.begin->name());
        EXPECT_EQ(pair.begin->end_message(), pair.end);
        EXPECT_EQ(pair.end->begin_message(), pair.begin);
        EXPECT_EQ(pair.end->level(), pair.begin->level());
        EXPECT_EQ(pair.end->id(), pair.begin->id());
    }
}

TEST_F(history_adding, an_empty_level_takes_only_itself_away) {
    begin("outer");
    begin("full");
    set("x");
    end();
    begin("empty");
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_EQ(message_types(), "1 1 7 2");
    begin("empty again");
    EXPECT_EQ(model->end_transaction(), nullptr);
    tran_end_message* const outer = model->end_transaction();
    ASSERT_TRUE(outer);
    EXPECT_EQ(outer->level(), 0u);
    EXPECT_EQ(message_types(), "1 1 7 2 2");
}

TEST_F(history_adding, who_makes_a_begin_is_asked_before_it_clears_the_mark) {
    const struct {
        const char* why;
        bool mark;
        const char* user_created;
    } rows[] = {
        {"clear", false, "1 1 1 1 1 "},
        {"set", true, "0 1 1 1 1 "}, // the begin alone: behind it the mark is clear
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        fw.set_in_semantic(row.mark);
        begin();
        EXPECT_FALSE(fw.in_semantic());
        begin();
        set("x");
        end();
        end();
        std::string flags;
        for (std::size_t i = 0; i != model->message_count(); ++i)
            flags += model->message_at(i)->is_user_created() ? "1 " : "0 ";
        EXPECT_EQ(flags, row.user_created);
        model->clear_history();
    }
}

TEST_F(history_adding, only_outermost_transactions_count_as_modifications) {
    EXPECT_EQ(log().trans_executed(), 0u);
    begin();
    begin();
    set("x");
    EXPECT_EQ(log().trans_executed(), 1u);
    end();
    end();
    EXPECT_EQ(log().trans_executed(), 1u);
    change("y");
    EXPECT_EQ(log().trans_executed(), 2u);
    begin();
    end();
    EXPECT_EQ(log().trans_executed(), 2u);
}

TEST_F(history_adding, the_model_hears_an_end_before_the_limit_cuts_and_the_history_tells_it_behind) {
    model->set_undo_levels(1);
    change("1");
    listen();
    recorder of_history;
    model->history()->attach(&of_history);
    const auto with_size = [&](message* what) {
        return std::to_string(what->type()) + " of " + std::to_string(model->message_count());
    };
    ear.line = [&](message* what) { return "model " + with_size(what); };
    of_history.line = [&](message* what) { return "history " + with_size(what); };
    std::string both;
    ear.meanwhile = [&](message*) { both += ear.take(); };
    of_history.meanwhile = [&](message*) { both += of_history.take(); };
    begin("2");
    begin("inner");
    set("2");
    end();
    end();
    EXPECT_EQ(both, "model 1 of 4\n"
                    "history 2 of 7\n"
                    "model 2 of 8\n"
                    "history 2 of 5\n");
}

TEST_F(history_adding, nobody_asks_what_those_answer_who_hear_an_end) {
    listen();
    recorder of_history;
    model->history()->attach(&of_history);
    begin();
    set("x");
    ear.answer = of_history.answer = false;
    tran_end_message* const ended = model->end_transaction();
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->level(), 0u);
    EXPECT_FALSE(of_history.take().empty()) << "the history tells it all the same";
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_TRUE(model->can_undo());

    ear.answer = true;
    begin("empty");
    ear.answer = false;
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_FALSE(model->in_transaction());
}

TEST_F(history_adding, who_hears_an_end_may_answer_with_a_transaction_of_its_own) {
    answer_an_end();
    change("x");
    EXPECT_EQ(message_types(), "1 7 2 1 7 2");
    EXPECT_EQ(model->undo_name(), "answer");
    model->undo();
    EXPECT_EQ(value(), "x");
    EXPECT_EQ(model->undo_name(), "x");
}

TEST_F(history_adding, so_may_who_hears_the_end_of_an_empty_one) {
    answer_an_end();
    begin("empty");
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_EQ(message_cast<tran_begin_message>(model->message_at(0))->level(), 0u);
    EXPECT_FALSE(model->in_transaction());
    EXPECT_TRUE(model->is_modified());
    EXPECT_EQ(model->undo_name(), "answer");
    model->undo();
    EXPECT_EQ(value(), "none");
    EXPECT_FALSE(model->is_modified());
}

TEST_F(history_adding, who_hears_the_end_of_an_empty_one_may_leave_a_stray_change) {
    listen();
    ear.meanwhile = [&](message* what) {
        if (what->type() == message_type::tran_end) set("stray");
    };
    begin("empty");
    EXPECT_EQ(model->end_transaction(), nullptr);
    ear.meanwhile = nullptr;
    EXPECT_EQ(message_types(), "7");
    EXPECT_EQ(value(), "stray");
    EXPECT_FALSE(model->is_modified());
    EXPECT_EQ(model->begin_transaction("next")->level(), 0u);
}

} // namespace
} // namespace kelm::test
