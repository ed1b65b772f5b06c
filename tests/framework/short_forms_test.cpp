// Mutations in a transaction of their own: names, joining, failures.
// What each mutation does is tested with the mutation.
#include "tests/support/model_hooks.h"

#include <functional>

namespace kelm::test {
namespace {

class short_forms : public hooked_model_world {
protected:
    short_forms() : a(hooked("a")) {}

    /// \returns the names of the transactions that can be undone, newest first
    std::string names() {
        transaction_names all;
        model->undo_names(all, 0);
        std::string out;
        for (const auto& [id, name] : all) out += name + "\n";
        return out;
    }
    initial_values* values() { return &values_; }
    /// The four of them, and the name of the transaction that each opens.
    struct form {
        const char* name;
        std::function<bool()> run;
    };
    std::vector<form> all_forms() {
        return {
            {"Change Hooked Text", [this] { return fw.set_property_transacted(a, props::text, text("x")); }},
            {"Delete Hooked Text", [this] { return fw.delete_property_transacted(a, props::text); }},
            {"Create Part",
             [this] { return fw.create_object_transacted(types::part, a, values()) != nullptr; }},
            {"Delete Hooked", [this] { return fw.delete_object_transacted(a); }},
        };
    }

    object* const a;

private:
    initial_values values_;
};

TEST_F(short_forms, each_makes_one_transaction_with_a_name_of_its_own) {
    std::string expected;
    for (const form& each : all_forms()) {
        SCOPED_TRACE(each.name);
        EXPECT_TRUE(each.run());
        expected = std::string{each.name} + "\n" + expected;
        EXPECT_EQ(names(), expected);
        EXPECT_FALSE(model->in_transaction());
    }
}

TEST_F(short_forms, inside_an_open_transaction_they_join_it) {
    begin("outer");
    for (const form& each : all_forms()) EXPECT_TRUE(each.run()) << each.name;
    end();
    EXPECT_EQ(names(), "outer\n");
    EXPECT_EQ(message_types().find(" 1 "), std::string::npos) << "no second begin";
}

TEST_F(short_forms, behind_a_change_outside_any_transaction_they_open_their_own) {
    a->set_property(props::number, number(1));
    ASSERT_TRUE(model->in_transaction()) << "the newest message is in no closed transaction";
    EXPECT_TRUE(fw.set_property_transacted(a, props::text, text("x")));
    EXPECT_EQ(names(), "Change Hooked Text\n");
    EXPECT_EQ(message_types(), "7 1 7 2");
}

TEST_F(short_forms, a_refusal_takes_back_the_transaction_opened_for_it) {
    a->set_property(props::text, text("before"));
    model->clear_history();
    hooks.refuse<post_prop_set_semantic>();
    hooks.refuse<post_prop_delete_semantic>();
    hooks.refuse<post_add_child_semantic>();
    hooks.refuse<obj_delete_semantic>();
    const std::string before = dump();
    for (const form& each : all_forms()) {
        SCOPED_TRACE(each.name);
        EXPECT_FALSE(each.run());
        EXPECT_EQ(model->message_count(), 0u);
        EXPECT_FALSE(model->is_modified());
        EXPECT_FALSE(fw.in_semantic());
        EXPECT_EQ(dump(), before);
    }
}

TEST_F(short_forms, the_refusal_of_an_observer_is_taken_back_by_the_guard) {
    recorder ear;
    ear.watch(a);
    ear.answer = false;
    EXPECT_FALSE(fw.set_property_transacted(a, props::text, text("x")));
    EXPECT_FALSE(a->defines_property(props::text));
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_FALSE(model->in_transaction());
}

TEST_F(short_forms, the_refusal_of_an_observer_is_left_to_an_outer_transaction) {
    recorder ear;
    ear.watch(a);
    ear.answer = false;
    begin("outer");
    EXPECT_FALSE(fw.set_property_transacted(a, props::text, text("x")));
    EXPECT_TRUE(a->defines_property(props::text));
    EXPECT_TRUE(model->in_transaction());
    EXPECT_EQ(message_types(), "1 7");
}

TEST_F(short_forms, a_refused_value_takes_the_whole_creation_back) {
    hooks.refuse<pre_prop_set_semantic>();
    initial_values given{{props::text, text("x").clone()}};
    EXPECT_EQ(fw.create_object_transacted(types::hooked, root, &given), nullptr);
    EXPECT_EQ(given[0].second, nullptr);
    EXPECT_EQ(model->find_object(model->last_object_id()), nullptr);
    EXPECT_EQ(model->message_count(), 0u);
}

TEST_F(short_forms, a_creation_with_values_is_one_transaction) {
    initial_values given{{props::name, text("new").clone()}, {props::number, number(3).clone()}};
    object* const made = fw.create_object_transacted(types::thing, root, &given);
    ASSERT_TRUE(made);
    EXPECT_EQ(message_types(), "1 4 14 7 7 2");
    model->undo();
    EXPECT_EQ(made->state(), state::deleted);
}

TEST_F(short_forms, what_is_in_no_model_is_refused) {
    object* const bare = fw.instantiate_object(types::thing, model, false);
    for (object* const nowhere : {static_cast<object*>(nullptr), bare}) {
        SCOPED_TRACE(nowhere ? "bare" : "null");
        EXPECT_FALSE(fw.set_property_transacted(nowhere, props::text, text("x")));
        EXPECT_FALSE(fw.delete_property_transacted(nowhere, props::text));
        EXPECT_FALSE(fw.delete_object_transacted(nowhere));
        initial_values given{{props::text, text("x").clone()}};
        EXPECT_EQ(fw.create_object_transacted(types::thing, nowhere, &given), nullptr);
        EXPECT_EQ(given[0].second, nullptr) << "consumed all the same";
    }
}

TEST_F(short_forms, an_unknown_property_or_type_leaves_its_place_in_the_name_empty) {
    recorder ear;
    ear.watch(root);
    EXPECT_TRUE(fw.set_property_transacted(a, 777, text("x")));
    EXPECT_EQ(names(), "Change Hooked \n");
    ear.take();
    EXPECT_EQ(fw.create_object_transacted(77777, root, nullptr), nullptr);
    EXPECT_EQ(ear.take().substr(0, 36), "1 first  Begin Transaction - Create ");
    EXPECT_EQ(names(), "Change Hooked \n");
}

TEST_F(short_forms, closing_a_model_is_begun_as_a_transaction_that_goes_with_it) {
    object* const other = fw.create_object(type_id::model, nullptr);
    recorder ear;
    ear.watch(other);
    EXPECT_TRUE(fw.delete_object_transacted(other));
    EXPECT_EQ(ear.take(), "1 first  Begin Transaction - Delete Model\n"
                          "0 first ***********  Model Close **********\n");
    fw.set_in_semantic(false);
}

TEST_F(short_forms, what_the_hooks_of_a_model_do_before_they_keep_it_open_is_taken_back) {
    object* const other = fw.create_object(type_id::model, nullptr);
    at_pre_delete = [&](object* closing) {
        fw.create_object(types::thing, closing);
        return false;
    };
    EXPECT_FALSE(fw.delete_object_transacted(other));
    EXPECT_FALSE(other->has_children());
    EXPECT_FALSE(other->model()->in_transaction());
    EXPECT_FALSE(other->model()->is_modified());
    EXPECT_EQ(other->state(), state::normal);
    at_pre_delete = nullptr;
    EXPECT_TRUE(fw.delete_object(other));
}

} // namespace
} // namespace kelm::test
