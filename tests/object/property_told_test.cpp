// What observers hear of changed values: the first time, in undo and in redo; and the descriptions.
// Elements of lists have a test of their own, and so have values that come and go with bases.
#include "tests/object/value_lines.h"

namespace kelm::test {

using property_told = value_world;

TEST_F(property_told, each_change_is_heard_once_and_its_inverse_in_undo) {
    object* const a = thing("a");
    ears.watch(a);
    begin();
    ASSERT_TRUE(a->set_property(props::number, number(1)));
    ASSERT_TRUE(a->set_property(props::number, number(2)));
    ASSERT_TRUE(a->delete_property(props::number));
    end();
    EXPECT_EQ(ears.take(), "7 first user a: 11 in a none of nobody to '1'\n"
                           "7 first user a: 11 in a '1' of a to '2'\n"
                           "10 first user a: 11 in a lost '2'\n");
    for (int round = 0; round != 2; ++round) {
        model->undo();
        EXPECT_EQ(ears.take(), "7 again user a: 11 in a none of a to '2'\n"
                               "7 again user a: 11 in a '2' of a to '1'\n"
                               "10 again user a: 11 in a lost '1'\n");
        model->redo();
        EXPECT_EQ(ears.take(), "7 again user a: 11 in a none of nobody to '1'\n"
                               "7 again user a: 11 in a '1' of a to '2'\n"
                               "10 again user a: 11 in a lost '2'\n");
    }
}

TEST_F(property_told, undo_of_a_value_over_an_inherited_one_is_heard_as_a_deletion) {
    object* const base = thing("base");
    object* const a = thing("a");
    object* const below = thing("below");
    prepare([&] {
        base->set_property(props::text, text("from base"));
        a->add_inherits_from(base);
        below->add_inherits_from(a);
    });
    listen({base, a, below});
    ASSERT_TRUE(change([&] { return a->set_property(props::text, text("own")); }));
    EXPECT_EQ(ears.take(), "7 first user a: 10 in a 'from base' of base to 'own'\n"
                           "7 first user below: 10 in a 'from base' of base to 'own'\n");
    for (int round = 0; round != 2; ++round) {
        model->undo();
        EXPECT_EQ(ears.take(), "10 again user a: 10 in a lost 'own'\n"
                               "10 again user below: 10 in a lost 'own'\n");
        EXPECT_EQ(as_text(below->get_property(props::text)), "from base");
        model->redo();
        EXPECT_EQ(ears.take(), "7 again user a: 10 in a 'from base' of base to 'own'\n"
                               "7 again user below: 10 in a 'from base' of base to 'own'\n");
    }
    EXPECT_EQ(model->message_at(1)->object(), a) << "its own object again";
}

TEST_F(property_told, a_rollback_is_heard_as_undo) {
    object* const a = thing("a");
    ears.watch(a);
    begin();
    ASSERT_TRUE(a->set_property(props::number, number(1)));
    model->rollback_transaction();
    EXPECT_EQ(ears.take(), "7 first user a: 11 in a none of nobody to '1'\n"
                           "10 again user a: 11 in a lost '1'\n");
}

TEST_F(property_told, the_change_stands_and_is_recorded_before_anybody_hears_of_it) {
    object* const a = thing("a");
    ears.watch(a);
    ears.meanwhile = [&](message* said) {
        EXPECT_EQ(last_message(), said);
        EXPECT_EQ(as_text(a->get_property(props::number)), "1");
    };
    EXPECT_TRUE(change([&] { return a->set_property(props::number, number(1)); }));
}

TEST_F(property_told, values_that_a_message_hands_out_are_clones) {
    object* const a = thing("a");
    prepare([&] { a->set_property(props::number, number(1)); });
    begin();
    a->set_property(props::number, number(2));
    const auto* const said = dynamic_cast<property_set_message*>(last_message());
    dynamic_cast<property<int>&>(*said->new_value()).value = 8;
    dynamic_cast<property<int>&>(*said->old_value()).value = 9;
    end();
    EXPECT_EQ(value_text(said->new_value()) + value_text(said->old_value()), "'2''1'");
    EXPECT_EQ(as_text(a->get_property(props::number)), "2");
    model->undo();
    EXPECT_EQ(as_text(a->get_property(props::number)), "1");
}

TEST_F(property_told, a_refresh_changes_nothing_in_any_number_of_undos) {
    object* const a = thing("a");
    ears.watch(a);
    const std::string before = dump();
    begin();
    const property<std::string> now{"now"};
    const property<std::string> then{"then"};
    ASSERT_TRUE(a->refresh_property(props::text, &now, &then));
    ASSERT_TRUE(a->refresh_property(props::text, &now, nullptr));
    ASSERT_TRUE(a->refresh_property(props::text, nullptr, &then));
    end();
    EXPECT_EQ(ears.take(), "7 first user a: 10 in a 'then' of nobody to 'now'\n"
                           "7 first user a: 10 in a none of nobody to 'now'\n"
                           "10 first user a: 10 in a lost 'then'\n");
    for (int round = 0; round != 3; ++round) {
        model->undo();
        EXPECT_EQ(ears.take(), "7 again user a: 10 in a none of nobody to 'then'\n"
                               "10 again user a: 10 in a lost 'now'\n"
                               "7 again user a: 10 in a 'now' of nobody to 'then'\n");
        EXPECT_EQ(dump(), before);
        model->redo();
        EXPECT_EQ(ears.take(), "7 again user a: 10 in a 'then' of nobody to 'now'\n"
                               "7 again user a: 10 in a none of nobody to 'now'\n"
                               "10 again user a: 10 in a lost 'then'\n");
        EXPECT_EQ(dump(), before);
    }
}

TEST_F(property_told, descriptions_name_the_property_the_object_and_the_values) {
    object* const a = thing("a");
    object* const c = part("c", a);
    begin();
    c->set_property(props::number, number(1));
    c->set_property(props::number, number(2));
    c->delete_property(props::number);
    c->append_vector_element(props::list, number(1));
    c->insert_vector_element(props::list, number(2), 1);
    c->set_vector_element(props::list, number(3), 0);
    c->move_vector_element(props::list, 1, 0);
    c->delete_vector_element(props::list, 0);
    c->set_property_not_inheritable(props::text, true);
    c->set_property_not_inheritable(props::text, false);
    const property<int> now{4};
    c->refresh_property(props::number, &now, nullptr);
    c->refresh_property(props::number, nullptr, &now);
    c->set_property(4711, text("of an unknown property"));
    c->move_vector_element(props::list, npos, 0);
    EXPECT_EQ(history(1), "7 Changed Part a.c Number from NULL to 1\n"
                          "7 Changed Part a.c Number from 1 to 2\n"
                          "10 Deleted Number of Part a.c\n"
                          "7 Changed Part a.c List from NULL to 3\n"
                          "9 Inserted List of Part a.c\n"
                          "9 Inserted List of Part a.c\n"
                          "8 Set List of Part a.c\n"
                          "12 Changed List of Part a.c from 1 to 0\n"
                          "11 Deleted List of Part a.c\n"
                          "13 Set Part a.c Text not inheritable.\n"
                          "13 Set Part a.c Text not inheritable.\n"
                          "7 Refresh Set Property - Number of Part a.c\n"
                          "10 Refresh Delete Property - Number of Part a.c\n"
                          "7 Changed Part a.c  from NULL to of an unknown property\n"
                          "12 Changed List of Part a.c from -1 to 0\n");
    end();
}

} // namespace kelm::test
