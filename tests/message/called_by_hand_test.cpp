// Messages that are undone or redone by hand, on the side on which they stand already, and in a model that has moved on.
// What the history does with them, in order, is told elsewhere.
#include "tests/object/value_lines.h"

namespace kelm::test {
namespace {

class called_by_hand : public value_world {};

TEST_F(called_by_hand, redo_of_a_done_set_changes_nothing) {
    object* const a = thing("a");
    ASSERT_TRUE(change([&] { return a->set_property(props::number, number(1)); }));
    message* const said = model->message_at(1);
    EXPECT_TRUE(said->redo());
    EXPECT_EQ(as_text(a->get_own_property(props::number)), "1");
    model->undo();
    EXPECT_FALSE(a->defines_property(props::number));
    model->redo();
    EXPECT_EQ(as_text(a->get_own_property(props::number)), "1");
}

TEST_F(called_by_hand, redo_of_a_done_set_over_another_changes_nothing) {
    object* const a = thing("a");
    prepare([&] { a->set_property(props::number, number(1)); });
    ASSERT_TRUE(change([&] { return a->set_property(props::number, number(2)); }));
    message* const said = model->message_at(1);
    EXPECT_TRUE(said->redo());
    EXPECT_EQ(as_text(a->get_own_property(props::number)), "2");
    model->undo();
    EXPECT_EQ(as_text(a->get_own_property(props::number)), "1");
    EXPECT_TRUE(said->undo());
    EXPECT_EQ(as_text(a->get_own_property(props::number)), "1");
    model->redo();
    EXPECT_EQ(as_text(a->get_own_property(props::number)), "2");
}

TEST_F(called_by_hand, redo_of_a_done_delete_changes_nothing) {
    object* const a = thing("a");
    prepare([&] { a->set_property(props::number, number(1)); });
    ASSERT_TRUE(change([&] { return a->delete_property(props::number); }));
    message* const said = model->message_at(1);
    EXPECT_TRUE(said->redo());
    EXPECT_FALSE(a->defines_property(props::number));
    model->undo();
    EXPECT_EQ(as_text(a->get_own_property(props::number)), "1");
    EXPECT_TRUE(said->undo());
    EXPECT_EQ(as_text(a->get_own_property(props::number)), "1");
    model->redo();
    EXPECT_FALSE(a->defines_property(props::number));
}

TEST_F(called_by_hand, all_kinds_of_elements_twice) {
    object* const a = thing("a");
    give_list(a, {1, 2, 3});
    begin();
    ASSERT_TRUE(a->set_vector_element(props::list, number(8), 0));
    ASSERT_TRUE(a->insert_vector_element(props::list, number(9), 0));
    ASSERT_TRUE(a->delete_vector_element(props::list, 0));
    end();
    const std::string after = list(a);
    for (std::size_t i = 1; i != 4; ++i) model->message_at(i)->redo();
    model->undo();
    EXPECT_EQ(list(a), "['1' '2' '3']");
    model->redo();
    EXPECT_EQ(list(a), after);
}

TEST_F(called_by_hand, keeps_an_element_out_that_is_moved_behind_the_end) {
    object* const a = thing("a");
    give_list(a, {1, 2, 3});
    ASSERT_TRUE(change([&] { return a->move_vector_element(props::list, 0, 2); }));
    message* const moved = model->message_at(1);
    ASSERT_TRUE(change([&] { return a->delete_vector_element(props::list, 0); }));
    EXPECT_EQ(list(a), "['3' '1']");
    EXPECT_TRUE(moved->redo());
    EXPECT_EQ(list(a), "['1']");
}

TEST_F(called_by_hand, a_move_that_moved_nothing_loses_nothing_when_undone) {
    object* const a = thing("a");
    give_list(a, {1, 2, 3});
    ASSERT_TRUE(change([&] { return a->move_vector_element(props::list, 5, 0); }));
    model->undo();
    EXPECT_EQ(list(a), "['1' '2' '3']");
    model->redo();
    EXPECT_EQ(list(a), "['1' '2' '3']");
}

} // namespace
} // namespace kelm::test
