// Rollback, message by message: what it drops and what it keeps, what the counts come to, and who is told.
// What a user of a model sees of it in the large is told by the tests of models.
#include "object/model_impl.h"
#include "tests/object/transaction_world.h"
#include "tests/support/counted_value.h"

namespace kelm::test {
namespace {

class history_rollback : public transaction_world {
protected:
    model_impl& inside() { return static_cast<model_impl&>(*model); }
    std::size_t objects() { return inside().pool().size(); }
};

TEST_F(history_rollback, the_news_come_when_all_is_back_but_still_counted_as_modified) {
    change("x");
    model->clear_modified();
    begin("bad");
    set("y");
    listen();
    int told = 0;
    ear.meanwhile = [&](message* what) {
        if (what->type() != message_type::tran_rollback) return;
        ++told;
        EXPECT_TRUE(what->is_first_run());
        EXPECT_EQ(what->object(), root);
        EXPECT_EQ(value(), "x");
        EXPECT_EQ(message_types(), "1 7 2") << "its begin has gone as well";
        EXPECT_TRUE(model->is_rolling_back());
        EXPECT_TRUE(model->is_modified()) << "the count falls behind the news";
        EXPECT_FALSE(model->in_transaction());
    };
    model->rollback_transaction();
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(model->is_modified());
    EXPECT_FALSE(model->is_rolling_back());
}

TEST_F(history_rollback, who_hears_it_cannot_stop_it) {
    begin();
    set("y");
    ear.watch(root);
    ear.watch(a);
    ear.answer = false;
    model->rollback_transaction();
    expect_heard("all of it", "10 again Deleted Text of Hooked a\n2 again  End Transaction - \n"
                              "3 first *******   Rollback Transaction - Level 0, " +
                                  std::to_string(model->last_transaction_id()) + "\n");
    EXPECT_EQ(value(), "none");
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_EQ(model->begin_transaction("next"), nullptr) << "this is refused";
    EXPECT_EQ(message_cast<tran_begin_message>(model->message_at(0))->level(), 0u);
}

TEST_F(history_rollback, the_mark_is_cleared_before_anything_is_taken_back) {
    begin();
    set("y");
    listen();
    bool mark = true;
    ear.meanwhile = [&](message*) { mark = fw.in_semantic(); };
    fw.set_in_semantic(true);
    model->rollback_transaction();
    EXPECT_FALSE(mark);
    EXPECT_FALSE(fw.in_semantic());
}

TEST_F(history_rollback, of_the_last_closed_one_leaves_the_mark_alone) {
    for (const bool mark : {true, false}) {
        change("x");
        fw.set_in_semantic(mark);
        model->rollback_last_transaction();
        EXPECT_EQ(fw.in_semantic(), mark);
        EXPECT_EQ(value(), "none");
        fw.set_in_semantic(false);
    }
}

TEST_F(history_rollback, of_levels_leaves_made_objects_readable_and_gives_deleted_ones_back) {
    const struct {
        const char* why;
        void (kelm::model::*take_back)();
    } rows[] = {
        {"the innermost", &kelm::model::rollback_transaction},
        {"all", &kelm::model::rollback_transaction_all},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        object* const b = part("b");
        const long values = counted_value::alive;
        a->set_property(props::text, counted_value(1));
        model->clear_history();
        const std::size_t before = objects();
        begin();
        begin();
        object* const made = fw.create_object(types::part, a);
        made->set_property(props::text, counted_value(2));
        a->set_property(props::text, counted_value(3));
        fw.delete_object(b);
        EXPECT_EQ(counted_value::alive - values, 3);
        (model->*row.take_back)();
        EXPECT_EQ(counted_value::alive - values, 1) << "values are freed";
        EXPECT_EQ(value(), "counted 1");
        EXPECT_EQ(objects(), before + 1) << "the object that was made is not";
        EXPECT_EQ(made->state(), state::deleted);
        EXPECT_EQ(made->owner(), a);
        EXPECT_EQ(model->find_object(made->id()), nullptr);
        EXPECT_EQ(b->state(), state::normal);
        EXPECT_EQ(model->find_object(b->id()), b);
        EXPECT_EQ(b->owner(), root);
        model->rollback_transaction_all();
        a->delete_property(props::text);
        model->clear_history();
        EXPECT_EQ(objects(), before + 1) << "nor by anything later";
        EXPECT_EQ(counted_value::alive, values);
    }
}

TEST_F(history_rollback, closed_levels_inside_go_with_what_is_around_them) {
    const auto fill = [&] {
        begin("outer");
        set("1");
        begin("inner");
        set("2");
        begin("innermost");
        set("3");
        end();
        end();
        set("4");
    };
    ear.line = [&](message* what) { return std::to_string(what->type()) + " " + value(); };
    change("0");
    fill();
    ear.watch(a);
    model->rollback_transaction();
    expect_heard("each step back once", "7 3\n7 2\n7 1\n7 0\n");
    EXPECT_EQ(message_types(), "1 7 2");
    fill();
    end();
    ear.take();
    model->rollback_last_transaction();
    expect_heard("each step back once", "7 3\n7 2\n7 1\n7 0\n");
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_EQ(model->begin_transaction("next")->level(), 0u);
}

TEST_F(history_rollback, of_two_levels_one_behind_the_other_only_the_open_one_goes) {
    begin("outer");
    begin("closed");
    set("1");
    end();
    begin("open");
    set("2");
    model->rollback_transaction();
    EXPECT_EQ(value(), "1");
    EXPECT_EQ(message_types(), "1 1 7 2");
    model->rollback_transaction();
    EXPECT_EQ(value(), "none") << "the level is 0 now";
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_FALSE(model->is_modified());
}

TEST_F(history_rollback, of_an_empty_one_is_told_as_well) {
    begin("outer");
    set("x");
    begin("inner");
    listen();
    model->rollback_transaction();
    expect_heard("a level inside", "");
    EXPECT_EQ(message_types(), "1 7");
    model->rollback_transaction_all();
    begin("empty");
    ear.take();
    model->rollback_transaction();
    expect_heard("the outermost",
                 "2 again  End Transaction - \n3 first *******   Rollback Transaction - Level 0, " +
                     std::to_string(model->last_transaction_id()) + "\n");
    EXPECT_EQ(model->message_count(), 0u);
}

TEST_F(history_rollback, of_the_last_closed_one_keeps_its_number_used_up) {
    change("x");
    change("y");
    const u32 id = model->last_transaction_id();
    model->rollback_last_transaction();
    EXPECT_EQ(model->last_transaction_id(), id);
    EXPECT_EQ(model->begin_transaction("next")->id(), id + 1);
}

TEST_F(history_rollback, of_the_last_closed_one_counts_below_the_save) {
    change("x");
    model->clear_modified();
    model->rollback_last_transaction();
    EXPECT_EQ(inside().log().trans_executed(), 0xFFFFFFFFu);
    EXPECT_FALSE(model->can_redo());
}

} // namespace
} // namespace kelm::test
