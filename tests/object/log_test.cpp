// Looking through the log of a model: transactions by id, by neighbourhood, their names.
// What gets into the log is transactions_test.
#include "tests/support/world.h"

#include <limits>

namespace kelm::test {
namespace {

class transaction_log : public world {
protected:
    transaction_log() : a(thing("a")) {}

    /// A closed transaction, with a level inside.  \returns its begin
    tran_begin_message* change(const std::string& name) {
        tran_begin_message* const begun = model->begin_transaction(name);
        a->set_property(props::text, text(name));
        begin("inside " + name);
        a->set_property(props::number, number(++changes_));
        end();
        end();
        return begun;
    }
    std::string undo_names(std::size_t max) {
        transaction_names names;
        model->undo_names(names, max);
        return joined(names);
    }
    std::string redo_names(std::size_t max) {
        transaction_names names;
        model->redo_names(names, max);
        return joined(names);
    }
    static std::string joined(const transaction_names& names) {
        std::string out;
        for (const auto& [id, name] : names) out += (out.empty() ? "" : " ") + name;
        return out;
    }

    object* const a;

private:
    int changes_ = 0;
};

constexpr std::size_t all_ones = std::numeric_limits<std::size_t>::max();

TEST_F(transaction_log, an_empty_log_has_no_answers) {
    EXPECT_EQ(model->next_transaction(nullptr), nullptr);
    EXPECT_EQ(model->previous_transaction(nullptr), nullptr);
    EXPECT_EQ(model->last_transaction(), nullptr);
    EXPECT_EQ(model->current_transaction(), nullptr);
    EXPECT_EQ(model->find_transaction(1, nullptr), nullptr);
    EXPECT_TRUE(model->last_transaction_is_empty());
    EXPECT_EQ(undo_names(0), "");
    EXPECT_EQ(redo_names(0), "");
    EXPECT_EQ(model->undo_name(), "");
    EXPECT_EQ(model->redo_name(), "");
}

TEST_F(transaction_log, transactions_are_walked_both_ways_at_the_outermost_level) {
    tran_begin_message* const one = change("1");
    tran_begin_message* const two = change("2");
    tran_begin_message* const three = change("3");
    EXPECT_EQ(model->next_transaction(nullptr), one);
    EXPECT_EQ(model->next_transaction(one), two);
    EXPECT_EQ(model->next_transaction(two), three);
    EXPECT_EQ(model->next_transaction(three), nullptr);
    EXPECT_EQ(model->previous_transaction(nullptr), three) << "what the last message closes";
    EXPECT_EQ(model->previous_transaction(three), two);
    EXPECT_EQ(model->previous_transaction(two), one);
    EXPECT_EQ(model->previous_transaction(one), nullptr);
    EXPECT_EQ(model->last_transaction(), three);
    EXPECT_EQ(model->current_transaction(), three) << "with none open";
}

TEST_F(transaction_log, levels_inside_are_no_neighbours) {
    tran_begin_message* const one = change("1");
    std::size_t index = 0;
    tran_begin_message* const inside = model->find_transaction(one->id() + 1, &index);
    ASSERT_TRUE(inside);
    EXPECT_EQ(inside->name(), "inside 1");
    EXPECT_EQ(index, 2u);
    EXPECT_EQ(model->next_transaction(inside), nullptr);
    EXPECT_EQ(model->previous_transaction(inside), nullptr);
}

TEST_F(transaction_log, a_stray_change_hides_the_transaction_before_it) {
    tran_begin_message* const one = change("1");
    a->set_property(props::text, text("stray"));
    EXPECT_EQ(model->previous_transaction(nullptr), nullptr) << "the last message is no end";
    EXPECT_EQ(model->last_transaction(), nullptr);
    tran_begin_message* const two = change("2");
    EXPECT_EQ(model->previous_transaction(two), nullptr) << "another message stands before it";
    EXPECT_EQ(model->next_transaction(one), two) << "forwards nothing is in the way";
}

TEST_F(transaction_log, a_stray_change_at_the_front_is_no_first_transaction) {
    a->set_property(props::text, text("stray"));
    tran_begin_message* const one = change("1");
    EXPECT_EQ(model->next_transaction(nullptr), nullptr) << "the first message is no begin";
    EXPECT_EQ(model->previous_transaction(one), nullptr);
}

TEST_F(transaction_log, inside_a_transaction_the_outermost_begin_is_the_current_one) {
    change("1");
    tran_begin_message* const open = model->begin_transaction("open");
    EXPECT_EQ(model->current_transaction(), open);
    begin("inner");
    EXPECT_EQ(model->current_transaction(), open);
    EXPECT_EQ(model->last_transaction(), nullptr);
    a->set_property(props::text, text("x"));
    end();
    EXPECT_EQ(model->current_transaction(), open);
    EXPECT_EQ(model->last_transaction()->name(), "inner") << "the end of any level";
    EXPECT_EQ(model->previous_transaction(nullptr)->name(), "inner");
    end();
    EXPECT_EQ(model->current_transaction(), open) << "as the last one";
}

TEST_F(transaction_log, a_transaction_is_found_by_its_id_the_newest_first) {
    tran_begin_message* const one = change("1");
    tran_begin_message* const two = change("2");
    std::size_t index = 99;
    EXPECT_EQ(model->find_transaction(two->id(), &index), two);
    EXPECT_EQ(index, 6u);
    EXPECT_EQ(model->message_at(index)->type(), message_type::tran_begin);
    EXPECT_EQ(model->find_transaction(one->id(), &index), one);
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(model->find_transaction(one->id(), nullptr), one) << "the place is not asked for";
    index = 99;
    EXPECT_EQ(model->find_transaction(4711, &index), nullptr);
    EXPECT_EQ(index, 99u) << "untouched";

    // The only transaction undone, its number is not given again; undone behind another, it is.
    model->undo();
    tran_begin_message* const again = model->begin_transaction("2 again");
    a->set_property(props::text, text("x"));
    end();
    EXPECT_EQ(model->find_transaction(again->id(), nullptr), again);
}

TEST_F(transaction_log, messages_are_counted_and_reached_by_index) {
    change("1");
    EXPECT_EQ(model->message_count(), 6u);
    EXPECT_EQ(message_types(), "1 7 1 7 2 2");
    EXPECT_EQ(model->message_at(6), nullptr);
    EXPECT_EQ(model->message_at(all_ones), nullptr);
}

TEST_F(transaction_log, names_are_listed_newest_first_up_to_a_maximum) {
    for (const char* name : {"1", "2", "3"}) change(name);
    const struct {
        const char* why;
        std::size_t max;
        const char* undone_none;
        const char* undone_two;
    } rows[] = {
        {"0 is all", 0, "3 2 1", "2 3"},
        {"one", 1, "3", "2"},
        {"two", 2, "3 2", "2 3"},
        {"as many as there are", 3, "3 2 1", "2 3"},
        {"more than there are", 4, "3 2 1", "2 3"},
        {"all ones is all", all_ones, "3 2 1", "2 3"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(undo_names(row.max), row.undone_none);
        EXPECT_EQ(redo_names(row.max), "");
        EXPECT_EQ(model->undo_name(), "3");
        EXPECT_EQ(model->redo_name(), "");
        model->undo();
        model->undo();
        EXPECT_EQ(undo_names(row.max), "1");
        EXPECT_EQ(redo_names(row.max), row.undone_two) << "the next to redo first";
        EXPECT_EQ(model->undo_name(), "1");
        EXPECT_EQ(model->redo_name(), "2");
        model->redo();
        model->redo();
    }
}

TEST_F(transaction_log, names_come_with_ids_and_are_appended) {
    tran_begin_message* const one = change("1");
    transaction_names names{{7, "there"}};
    model->undo_names(names, 0);
    EXPECT_EQ(names, (transaction_names{{7, "there"}, {one->id(), "1"}}));
    model->undo();
    model->redo_names(names, 0);
    ASSERT_EQ(names.size(), 3u);
    EXPECT_EQ(names[2].second, "1");
}

TEST_F(transaction_log, there_are_no_names_while_nothing_can_be_undone) {
    change("1");
    begin("open");
    EXPECT_EQ(undo_names(0), "") << "inside a transaction";
    EXPECT_EQ(model->undo_name(), "");
    a->set_property(props::text, text("x"));
    end();
    EXPECT_EQ(undo_names(0), "open 1");
    a->set_property(props::text, text("stray"));
    EXPECT_EQ(undo_names(0), "") << "behind a stray change";
    model->clear_history();
    change("2");
    model->undo();
    model->set_undo_levels(0);
    EXPECT_EQ(redo_names(0), "") << "with undo off";
}

TEST_F(transaction_log, an_empty_last_transaction_is_told_from_one_with_messages) {
    change("1");
    EXPECT_FALSE(model->last_transaction_is_empty());
    begin("open");
    EXPECT_TRUE(model->last_transaction_is_empty()) << "while nothing can be undone";
    end();
    EXPECT_FALSE(model->last_transaction_is_empty()) << "an empty one leaves no trace";
}

} // namespace
} // namespace kelm::test
