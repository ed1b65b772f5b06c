// The stored fields of the messages of values, byte for byte, and reading them back.
// Number, object and flag of a message stand before them and belong to the log.
#include "message/refresh_messages.h"
#include "message/vector_messages.h"
#include "tests/message/record_world.h"

#include <gtest/gtest.h>

namespace kelm::test {
namespace {

class property_record : public record_world {
protected:
    /// The property and the object in which the value lies: what each message of a value begins with.
    stored_fields of(const object* holder, u32 id) const {
        return stored_fields{}.word(id).word(holder->id());
    }
    void give(object* to, u32 id, const abstract_property& value) {
        begin();
        ASSERT_TRUE(to->set_property(id, value));
        end();
    }
    void give_list(object* to, std::initializer_list<int> values) {
        vector_property list;
        for (const int each : values) list.elements.push_back(new property<int>{each});
        give(to, props::list, list);
    }

    object* a = thing("a");
    object* b = thing("b");
};

TEST_F(property_record, first_value_of_a_property) {
    auto& said = after([&] { return a->set_property(props::number, number(5)); });
    expect_bytes(said, of(a, props::number).held_value().word(0).no_value().byte(0));
    expect_same_again(said);
}

TEST_F(property_record, second_value_owns_the_first) {
    give(a, props::number, number(5));
    auto& said = after([&] { return a->set_property(props::number, number(6)); });
    expect_bytes(said, of(a, props::number).held_value().word(a->id()).owned_number(5).byte(0));
    expect_same_again(said);
    const auto again = read(7, a, written(said));
    const auto& set = *message_cast<property_set_message>(again.get());
    EXPECT_EQ(set.new_value()->to_string(), "6");
    EXPECT_EQ(set.old_value()->to_string(), "5");
    EXPECT_EQ(set.old_owner(), a);
    EXPECT_EQ(set.real_owner(), a);
    EXPECT_EQ(set.property_type(), props::number);
}

TEST_F(property_record, inherited_value_is_told_with_its_source) {
    give(b, props::number, number(5));
    begin();
    ASSERT_TRUE(a->add_inherits_from(b));
    end();
    auto& said = after([&] { return a->set_property(props::number, number(6)); });
    expect_bytes(said, of(a, props::number).held_value().word(b->id()).owned_number(5).byte(0));
    expect_same_again(said);
}

TEST_F(property_record, replayed_log_has_the_new_value_in_full) {
    auto& said = after([&] { return a->set_property(props::number, number(5)); });
    expect_bytes(said, of(a, props::number).owned_number(5).word(0).no_value().byte(0), true);
}

TEST_F(property_record, undone_set_owns_the_new_value) {
    give(a, props::number, number(5));
    auto& said = after([&] { return a->set_property(props::number, number(6)); });
    model->undo();
    expect_bytes(said, of(a, props::number).owned_number(6).word(a->id()).held_value().byte(0));
    positions.clear();
    said.register_values(positions, 9);
    ASSERT_EQ(positions.size(), 1U);
    EXPECT_EQ(positions.begin()->first->to_string(), "6");
    EXPECT_EQ(positions.begin()->second, (value_position{9, 0, npos32}));
}

TEST_F(property_record, value_that_a_later_message_owns_is_referred_to) {
    give(a, props::number, number(5));
    auto& first = stored(1);
    ASSERT_EQ(first.type(), message_type::property_set);
    auto& second = after([&] { return a->set_property(props::number, number(6)); });
    second.register_values(positions, 4);
    expect_bytes(first, of(a, props::number).shared_value(4, 0).word(0).no_value().byte(0));
    EXPECT_EQ(second.get_value(0, -1), positions.begin()->first);

    const auto again = read(7, a, written(first));
    ASSERT_EQ(fixups.size(), 1U);
    again->set_value(0, second.get_value(0, -1));
    EXPECT_EQ(message_cast<property_set_message>(again.get())->new_value()->to_string(), "5");
}

TEST_F(property_record, deleted_value_is_owned) {
    give(a, props::text, text("old"));
    auto& said = after([&] { return a->delete_property(props::text); });
    expect_bytes(said, of(a, props::text).owned_text("old").byte(0));
    expect_same_again(said);
    said.register_values(positions, 2);
    EXPECT_EQ(positions.begin()->second, (value_position{2, 0, npos32}));
    EXPECT_EQ(said.get_value(7, -1)->to_string(), "old");
    model->undo();
    positions.clear();
    said.register_values(positions, 2);
    EXPECT_TRUE(positions.empty());
    expect_bytes(said, of(a, props::text).held_value().byte(0));
}

TEST_F(property_record, refresh_owns_both_values_at_all_times) {
    const auto now = number(2);
    const auto before = number(1);
    auto& said = after([&] { return a->refresh_property(props::number, &now, &before); });
    const auto expected = of(a, props::number).owned_number(2).word(0).owned_number(1).byte(1);
    EXPECT_EQ(stored_code(said), message_type::property_refresh_set);
    EXPECT_EQ(said.type(), message_type::property_set);
    expect_bytes(said, expected);
    model->undo();
    expect_bytes(said, expected);
    model->redo();
    expect_bytes(said, expected);
    expect_same_again(said);

    said.register_values(positions, 3);
    EXPECT_EQ(positions.at(said.get_value(1, -1)), (value_position{3, 0, npos32}));
    EXPECT_EQ(positions.at(said.get_value(0, -1)), (value_position{3, 1, npos32}));
}

// The reader asks the other way about than the writer entered them.
TEST_F(property_record, keeps_the_indexes_of_a_refresh_reversed) {
    const auto now = number(2);
    const auto before = number(1);
    auto& said = after([&] { return a->refresh_property(props::number, &now, &before); });
    EXPECT_EQ(said.get_value(0, -1)->to_string(), "1");
    EXPECT_EQ(said.get_value(1, -1)->to_string(), "2");
    EXPECT_EQ(said.get_value(6, -1)->to_string(), "2");
}

TEST_F(property_record, refresh_that_lost_its_value_has_a_code_of_its_own) {
    const auto before = number(1);
    auto& said = after([&] { return a->refresh_property(props::number, nullptr, &before); });
    EXPECT_EQ(stored_code(said), message_type::property_refresh_delete);
    EXPECT_EQ(said.type(), message_type::property_delete);
    expect_bytes(said, of(a, props::number).owned_number(1).byte(1));
    model->undo();
    expect_bytes(said, of(a, props::number).owned_number(1).byte(1));
    expect_same_again(said);
    said.register_values(positions, 3);
    EXPECT_EQ(positions.begin()->second, (value_position{3, 0, npos32}));
}

TEST_F(property_record, stored_refresh_mark_has_the_last_word) {
    const auto bytes = of(a, props::number).owned_number(2).word(0).owned_number(1).byte(0);
    const auto refresh = read(message_type::property_refresh_set, a, bytes.bytes());
    EXPECT_EQ(stored_code(*refresh), message_type::property_set);
    const auto marked = of(a, props::number).owned_number(2).word(0).owned_number(1).byte(1);
    const auto set = read(message_type::property_set, a, marked.bytes());
    EXPECT_EQ(stored_code(*set), message_type::property_refresh_set);
}

TEST_F(property_record, replaced_element) {
    give_list(a, {1, 2, 3});
    auto& said = after([&] { return a->set_vector_element(props::list, number(9), 1); });
    expect_bytes(said, of(a, props::list).word(1).held_value().owned_number(2));
    expect_bytes(said, of(a, props::list).word(1).owned_number(9).owned_number(2), true);
    expect_same_again(said);
    EXPECT_EQ(said.get_value(0, -1)->to_string(), "2");
    model->undo();
    EXPECT_EQ(said.get_value(0, -1)->to_string(), "9");
    expect_bytes(said, of(a, props::list).word(1).owned_number(9).held_value());
}

TEST_F(property_record, replaced_element_finds_its_new_value_in_todays_vector) {
    give_list(a, {1, 2, 3});
    auto& said = after([&] { return a->set_vector_element(props::list, number(9), 1); });
    const auto again = read(8, a, written(said));
    const auto& set = *message_cast<property_set_vec_prop_message>(again.get());
    EXPECT_EQ(set.new_value()->to_string(), "9");
    EXPECT_EQ(set.old_value()->to_string(), "2");
    EXPECT_EQ(set.pos(), 1U);
}

TEST_F(property_record, inserted_element_is_found_by_its_present_place) {
    give_list(a, {1, 2});
    auto& said = after([&] { return a->insert_vector_element(props::list, number(9), 1); });
    expect_bytes(said, of(a, props::list).word(1).word(1).held_value());
    begin();
    ASSERT_TRUE(a->insert_vector_element(props::list, number(0), 0));
    end();
    expect_bytes(said, of(a, props::list).word(1).word(2).held_value());
    expect_same_again(said);
    const auto again = read(9, a, written(said));
    EXPECT_EQ(message_cast<property_insert_vec_prop_message>(again.get())->value()->to_string(), "9");
    EXPECT_EQ(again->get_value(0, -1), nullptr) << "a done insert owns nothing";
}

TEST_F(property_record, keeps_the_first_equal_element_as_the_present_place) {
    give_list(a, {9});
    auto& said = after([&] { return a->insert_vector_element(props::list, number(9), 1); });
    expect_bytes(said, of(a, props::list).word(1).word(0).held_value());
}

TEST_F(property_record, inserted_element_that_was_taken_out_later_is_that_messages) {
    give_list(a, {1});
    auto& inserted = after([&] { return a->insert_vector_element(props::list, number(9), 1); });
    auto& deleted = after([&] { return a->delete_vector_element(props::list, 1); });
    deleted.register_values(positions, 7);
    expect_bytes(inserted, of(a, props::list).word(1).word(npos32).shared_value(7, 0));
    expect_bytes(deleted, of(a, props::list).owned_number(9).word(1));
    expect_same_again(deleted);
    EXPECT_EQ(deleted.get_value(0, -1)->to_string(), "9");
}

TEST_F(property_record, inserted_element_of_a_vector_that_went_is_an_element_of_that_messages_value) {
    give_list(a, {1, 2});
    auto& inserted = after([&] { return a->insert_vector_element(props::list, number(9), 1); });
    auto& deleted = after([&] { return a->delete_property(props::list); });
    deleted.register_values(positions, 7);
    expect_bytes(inserted, of(a, props::list).word(1).word(npos32).shared_value(7, 0, 1));
    EXPECT_EQ(deleted.get_value(0, 1)->to_string(), "9");
}

TEST_F(property_record, undone_insert_owns_its_element) {
    give_list(a, {1});
    auto& said = after([&] { return a->insert_vector_element(props::list, number(9), 1); });
    model->undo();
    expect_bytes(said, of(a, props::list).word(1).word(npos32).owned_number(9));
    said.register_values(positions, 5);
    EXPECT_EQ(positions.at(said.get_value(0, -1)), (value_position{5, 0, npos32}));
}

TEST_F(property_record, element_that_never_came_in_is_stored_with_its_message) {
    give_list(a, {1});
    auto& said = after([&] { return a->insert_vector_element(props::list, number(9), 5); });
    expect_bytes(said, of(a, props::list).word(5).word(npos32).owned_number(9));
    expect_same_again(said);
    const auto again = read(9, a, written(said));
    again->undo();
    again->redo();
    EXPECT_EQ(a->get_property(props::list)->to_string(), "1") << "it stays out";
}

TEST_F(property_record, element_without_a_place_is_none_rather_than_the_whole_vector) {
    give_list(a, {1, 2});
    const auto bytes = of(a, props::list).word(0).word(npos32).held_value().bytes();
    const auto again = read(9, a, bytes);
    EXPECT_EQ(message_cast<property_insert_vec_prop_message>(again.get())->raw_value(), nullptr);
}

TEST_F(property_record, moved_element) {
    give_list(a, {1, 2, 3});
    auto& said = after([&] { return a->move_vector_element(props::list, 2, 0); });
    expect_bytes(said, of(a, props::list).word(2).word(0));
    expect_same_again(said);
}

// An element that was not there was not moved: undo must not take another one away.
TEST_F(property_record, move_of_nothing_takes_nothing_when_it_was_read_and_is_undone) {
    give_list(a, {1, 2, 3});
    auto& said = after([&] { return a->move_vector_element(props::list, 3, 2); });
    const auto again = read(12, a, written(said));
    again->undo();
    EXPECT_EQ(a->get_property(props::list)->to_string(), "1, 2, 3");
    again->redo();
    EXPECT_EQ(a->get_property(props::list)->to_string(), "1, 2, 3");
}

TEST_F(property_record, not_inheritable_mark) {
    auto& said = after([&] { return a->set_property_not_inheritable(props::text, true); });
    expect_bytes(said, stored_fields{}.word(props::text).byte(1));
    expect_same_again(said);
    auto& taken_back = after([&] { return a->set_property_not_inheritable(props::text, false); });
    expect_bytes(taken_back, stored_fields{}.word(props::text).byte(0));
    expect_same_again(taken_back);
}

TEST_F(property_record, holder_that_is_gone_reads_as_none_and_the_message_object_stands_in) {
    give(a, props::number, number(5));
    const auto bytes =
        stored_fields{}.word(props::number).word(999999).held_value().word(999999).no_value().byte(0);
    const auto again = read(7, a, bytes.bytes());
    const auto& set = *message_cast<property_set_message>(again.get());
    EXPECT_EQ(set.real_owner(), nullptr);
    EXPECT_EQ(set.old_owner(), nullptr);
    EXPECT_EQ(set.new_value()->to_string(), "5");
}

TEST_F(property_record, message_read_back_is_undone_and_redone_like_the_one_written) {
    give(a, props::number, number(5));
    auto& said = after([&] { return a->set_property(props::number, number(6)); });
    {
        const auto again = read(7, a, written(said));
        again->undo();
        EXPECT_EQ(a->get_property(props::number)->to_string(), "5");
        again->redo();
        EXPECT_EQ(a->get_property(props::number)->to_string(), "6");
        EXPECT_FALSE(again->is_first_run());
        again->release_values();
    }
    // The values that left the object belong to the message that was read; the one of the log knows them no more.
    model->clear_history();
}

} // namespace
} // namespace kelm::test
