// User-defined properties: how they go, and what the model itself refuses.
// Making them is udp_test.cpp.
#include "meta/udp_world.h"

#include <kelm/message.h>
#include <kelm/structure_messages.h>
#include <kelm/transaction.h>

#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <vector>

namespace {

using namespace kelm;
using namespace kelm::udp_world;

struct way_to_end {
    const char* why;
    std::function<bool()> edit;
};

/// What makes a definition incomplete, and with it ends its properties.
std::vector<way_to_end> ways_to_end(object* definition) {
    return {
        {"the name is deleted", [=] { return definition->delete_property(property_id::name); }},
        {"the types are deleted", [=] { return definition->delete_property(property_id::udp_object_types); }},
        {"the definition is deleted", [=] { return framework::instance().delete_object(definition); }},
    };
}

// Removing

TEST_F(user_defined_properties, removing_a_type_deletes_the_values_of_exactly_that_type) {
    define("Owner", {table_type, column_type});
    object* const table = make(table_type);
    object* const column = make(column_type);
    object* const derived = make(derived_type);
    for (object* const each : {table, column, derived}) ASSERT_TRUE(set(each, first_id, text("Ann")));

    ASSERT_TRUE(change([&] { return definition_->delete_vector_element(property_id::udp_object_types, 0); }));
    EXPECT_EQ(made_on(table_type), nullptr);
    EXPECT_NE(made_on(column_type), nullptr);
    EXPECT_FALSE(table->defines_property(first_id));
    EXPECT_TRUE(column->defines_property(first_id));
    EXPECT_TRUE(derived->defines_property(first_id));
}

TEST_F(user_defined_properties, values_far_down_the_tree_are_deleted_as_well) {
    define("Owner", {table_type});
    std::vector<object*> chain{root_};
    ASSERT_TRUE(change([&] {
        for (int depth = 0; depth != 300; ++depth) {
            object* const made =
                framework::instance().create_object(depth % 2 ? column_type : table_type, chain.back());
            if (!made || !made->set_property(first_id, text("Ann"))) return false;
            chain.push_back(made);
        }
        return true;
    }));
    ASSERT_TRUE(model_->remove_user_defined_property(table_type, first_id));
    for (std::size_t at = 1; at != chain.size(); ++at)
        EXPECT_EQ(chain[at]->defines_property(first_id), chain[at]->type() == column_type) << at;
}

TEST_F(user_defined_properties, hooks_may_delete_others_while_a_removal_goes_through_the_values) {
    constexpr u32 hooked = test::types::hooked;
    model_->set_undo_levels(0);
    define("Owner", {hooked});
    std::vector<object*> all;
    for (int i = 0; i != 6; ++i) {
        all.push_back(make(hooked));
        ASSERT_TRUE(set(all.back(), first_id, text("Ann")));
    }
    ASSERT_TRUE(change([&] { return all[5]->set_owner(all[4]); })); // goes with its owner
    model_->clear_history();
    int asked = 0;
    test::hook_program& hooks = test::hook_program::instance();
    hooks.on<pre_prop_delete_semantic>([&](test::hook_call& call) {
        if (call.numbers[0] != first_id) return true;
        ++asked;
        if (asked != 1) return true;
        framework& fw = framework::instance();
        for (object* const each : {all[1], all[4]}) EXPECT_TRUE(fw.delete_object(each));
        model_->clear_history(); // nothing keeps them any more
        return make(hooked) != nullptr;
    });
    EXPECT_TRUE(model_->remove_user_defined_property(hooked, first_id));
    hooks.clear();
    EXPECT_EQ(asked, 3 + 3) << "of those that stay, and of each that goes";
    EXPECT_EQ(made_on(hooked), nullptr);
    for (const std::size_t at : {0u, 2u, 3u}) EXPECT_FALSE(all[at]->defines_property(first_id)) << at;
}

TEST_F(user_defined_properties, without_a_name_types_or_definition_the_property_goes) {
    define("Owner", {table_type, column_type});
    object* const table = make(table_type);
    ASSERT_TRUE(set(table, first_id, text("Ann")));
    for (const auto& row : ways_to_end(definition_)) {
        SCOPED_TRACE(row.why);
        EXPECT_TRUE(change(row.edit));
        EXPECT_EQ(made_on(table_type), nullptr);
        EXPECT_EQ(made_on(column_type), nullptr);
        EXPECT_FALSE(table->defines_property(first_id));
        model_->undo();
        ASSERT_NE(made_on(table_type), nullptr);
        EXPECT_NE(made_on(column_type), nullptr);
        EXPECT_EQ(text_of(table->get_own_property(first_id)), "Ann");
    }
}

TEST_F(user_defined_properties, a_removed_id_is_not_given_again_but_its_definition_keeps_it) {
    define("Owner", {table_type});
    ASSERT_TRUE(change([&] { return definition_->delete_vector_element(property_id::udp_object_types, 0); }));
    EXPECT_EQ(next_id(), first_id + 1);
    ASSERT_TRUE(append(property_id::udp_object_types, property<unsigned>(column_type)));
    EXPECT_NE(made_on(column_type), nullptr);
}

TEST_F(user_defined_properties, removing_a_type_without_the_property_is_refused) {
    ASSERT_TRUE(set(property_id::name, text("Owner")));
    ASSERT_TRUE(set(property_id::udp_object_types, *ids({unknown_type, table_type})));
    EXPECT_FALSE(
        change([&] { return definition_->delete_vector_element(property_id::udp_object_types, 0); }));
    EXPECT_EQ(elements_of(definition_->get_property(property_id::udp_object_types)).size(), 2U);
}

TEST_F(user_defined_properties, what_the_application_declared_stays_when_a_definition_of_that_name_goes) {
    define("Colour", {column_type, table_type});
    object* const column = make(column_type);
    ASSERT_TRUE(set(column, colour_property, text("red")));
    for (const auto& row : ways_to_end(definition_)) {
        SCOPED_TRACE(row.why);
        EXPECT_TRUE(change(row.edit));
        EXPECT_TRUE(type(column_type)->has_property(colour_property));
        EXPECT_EQ(text_of(column->get_own_property(colour_property)), "red");
        EXPECT_EQ(made_on(table_type), nullptr) << "its own goes";
        model_->undo();
        EXPECT_NE(made_on(table_type), nullptr);
    }
}

TEST_F(user_defined_properties, keeps_a_type_in_the_list_that_was_passed_over) {
    define("Colour", {column_type, table_type});
    object* const column = make(column_type);
    ASSERT_TRUE(set(column, colour_property, text("red")));
    model_->clear_history();
    // Without a transaction nothing is taken back: what is found afterwards was not touched.
    EXPECT_FALSE(definition_->delete_vector_element(property_id::udp_object_types, 0));
    EXPECT_EQ(text_of(column->get_own_property(colour_property)), "red");
    EXPECT_EQ(history(), "");
    EXPECT_TRUE(set(property_id::udp_object_types, *ids({table_type}))) << "a new list leaves it out";
    EXPECT_EQ(text_of(column->get_own_property(colour_property)), "red");
}

TEST_F(user_defined_properties, a_type_that_is_listed_twice_keeps_the_definition_from_losing_its_types) {
    define("Owner", {table_type, table_type});
    EXPECT_EQ(next_id(), first_id + 1) << "it was made once";
    EXPECT_FALSE(change([&] { return definition_->delete_property(property_id::udp_object_types); }));
    EXPECT_NE(made_on(table_type), nullptr);
    EXPECT_TRUE(definition_->defines_property(property_id::udp_object_types));
}

TEST_F(user_defined_properties, a_value_that_may_not_be_deleted_keeps_the_property) {
    define("Owner", {stubborn_type});
    object* const stubborn = make(stubborn_type);
    ASSERT_TRUE(set(stubborn, first_id, text("Ann")));
    EXPECT_FALSE(change([&] { return definition_->delete_property(property_id::udp_object_types); }));
    EXPECT_NE(made_on(stubborn_type), nullptr);
    EXPECT_EQ(text_of(stubborn->get_own_property(first_id)), "Ann");
    EXPECT_TRUE(definition_->defines_property(property_id::udp_object_types));
}

TEST_F(user_defined_properties, a_new_list_takes_the_property_from_the_types_that_it_leaves_out) {
    define("Owner", {table_type, column_type});
    object* const table = make(table_type);
    object* const column = make(column_type);
    for (object* const each : {table, column}) ASSERT_TRUE(set(each, first_id, text("Ann")));

    ASSERT_TRUE(set(property_id::udp_object_types, *ids({column_type, derived_type})));
    for (int round = 0; round != 2; ++round) {
        SCOPED_TRACE(round);
        EXPECT_EQ(made_on(table_type), nullptr) << "left out";
        EXPECT_NE(made_on(column_type), nullptr) << "stays";
        EXPECT_NE(made_on(derived_type), nullptr) << "new";
        EXPECT_FALSE(table->defines_property(first_id));
        EXPECT_EQ(text_of(column->get_own_property(first_id)), "Ann");
        model_->undo();
        EXPECT_NE(made_on(table_type), nullptr);
        EXPECT_NE(made_on(column_type), nullptr);
        EXPECT_EQ(made_on(derived_type), nullptr);
        for (object* const each : {table, column})
            EXPECT_EQ(text_of(each->get_own_property(first_id)), "Ann");
        model_->redo();
    }
    EXPECT_EQ(next_id(), first_id + 1) << "one id for all";
}

TEST_F(user_defined_properties, what_a_new_list_leaves_out_is_told_in_the_order_of_the_old_one) {
    define("Owner", {table_type, column_type, stubborn_type});
    object* const column = make(column_type);
    ASSERT_TRUE(set(column, first_id, text("Ann")));
    model_->clear_history();
    ASSERT_TRUE(set(property_id::udp_object_types, *ids({derived_type, table_type})));
    EXPECT_EQ(history(), "1 first  Begin Transaction - Change\n"
                         "7 first Changed User Defined Property Owner Object Types from 41001, 41002, 41004 "
                         "to 41003, 41001\n"
                         "10 first Deleted  of Udp Column \n"
                         "27 again UDP Removed : Owner of Udp Column\n"
                         "27 again UDP Removed : Owner of Udp Stubborn\n"
                         "26 again UDP Added : Owner of Udp Derived Table\n"
                         "2 first  End Transaction - Change\n");
}

TEST_F(user_defined_properties, a_type_that_the_old_list_has_twice_loses_the_property_once) {
    define("Owner", {table_type, table_type});
    ASSERT_TRUE(set(property_id::udp_object_types, *ids({column_type})));
    EXPECT_EQ(made_on(table_type), nullptr);
    EXPECT_NE(made_on(column_type), nullptr);
}

TEST_F(user_defined_properties, a_new_list_passes_over_what_the_application_declared) {
    define("Colour", {column_type, unknown_type});
    object* const column = make(column_type);
    ASSERT_TRUE(set(column, colour_property, text("red")));
    ASSERT_TRUE(set(property_id::udp_object_types, *ids({table_type})));
    EXPECT_TRUE(type(column_type)->has_property(colour_property));
    EXPECT_EQ(text_of(column->get_own_property(colour_property)), "red");
    EXPECT_NE(made_on(table_type), nullptr);
}

TEST_F(user_defined_properties, a_new_list_is_refused_when_a_value_may_not_be_deleted) {
    define("Owner", {table_type, stubborn_type});
    ASSERT_TRUE(set(make(stubborn_type), first_id, text("Ann")));
    EXPECT_FALSE(set(property_id::udp_object_types, *ids({column_type})));
    EXPECT_NE(made_on(table_type), nullptr) << "taken back with the rest";
    EXPECT_NE(made_on(stubborn_type), nullptr);
    EXPECT_EQ(made_on(column_type), nullptr);
    EXPECT_EQ(elements_of(definition_->get_property(property_id::udp_object_types)).size(), 2U);
}

TEST_F(user_defined_properties, keeps_the_property_when_the_new_list_is_empty) {
    define("Owner", {table_type});
    object* const table = make(table_type);
    ASSERT_TRUE(set(table, first_id, text("Ann")));
    ASSERT_TRUE(set(property_id::udp_object_types, *ids({})));
    EXPECT_NE(made_on(table_type), nullptr) << "an incomplete definition does nothing";
    EXPECT_EQ(text_of(table->get_own_property(first_id)), "Ann");

    ASSERT_TRUE(set(property_id::udp_object_types, *ids({column_type})));
    EXPECT_NE(made_on(table_type), nullptr) << "no longer listed anywhere";
    ASSERT_NE(made_on(column_type), nullptr) << "under the same id";
    ASSERT_TRUE(set(property_id::udp_object_types, *ids({table_type})));
    EXPECT_EQ(made_on(column_type), nullptr);
    ASSERT_TRUE(change([&] { return definition_->delete_vector_element(property_id::udp_object_types, 0); }));
    EXPECT_EQ(made_on(table_type), nullptr) << "listed again, it can be removed";
}

// The model's own operations

TEST_F(user_defined_properties, the_model_refuses_what_cannot_be) {
    ASSERT_NE(model_->add_user_defined_property(table_type, "Owner", data_type::string, "", 0), nullptr);
    const std::size_t messages = model_->message_count();
    EXPECT_EQ(model_->add_user_defined_property(unknown_type, "Owner", data_type::string, "", 0), nullptr);
    EXPECT_EQ(model_->add_user_defined_property(table_type, "Owner", data_type::string, "", 0), nullptr);
    EXPECT_EQ(model_->add_user_defined_property(table_type, "Name", data_type::string, "", 0), nullptr);
    EXPECT_EQ(model_->add_user_defined_property(table_type, "Taken", data_type::string, "", first_id),
              nullptr);
    EXPECT_FALSE(model_->remove_user_defined_property(unknown_type, first_id));
    EXPECT_FALSE(model_->remove_user_defined_property(table_type, first_id + 1));
    EXPECT_FALSE(model_->remove_user_defined_property(table_type, property_id::name))
        << "the application's own";
    EXPECT_FALSE(model_->set_user_defined_property_attribute(nullptr, made_on(table_type), 7, text("x")));
    EXPECT_FALSE(model_->set_user_defined_property_attribute(type(table_type), nullptr, 7, text("x")));
    EXPECT_EQ(model_->message_count(), messages);
    EXPECT_EQ(next_id(), first_id + 1) << "a refusal takes no id";
}

// In processes of their own, as a type that the application is given stays with it.
TEST_F(user_defined_properties, changes_of_a_type_that_came_late_go_to_the_models_view_of_it) {
    constexpr u32 late_type = 41998;
    const auto come_late = [] {
        return framework::instance().application_meta_model()->add_meta_object(late_type, "Late", "", "");
    };
    const auto adding_stays_in_the_model = [&] {
        meta_object* const late = come_late();
        return type(late_type) == late &&
               model_->add_user_defined_property(late_type, "Owner", data_type::string, "", 0) &&
               made_on(late_type) && !late->has_property("Owner");
    };
    const auto setting_stays_away_from_the_application = [&] {
        meta_property* const colour = come_late()->add_property(colour_property);
        model_->clear_history();
        return !model_->set_user_defined_property_attribute(type(late_type), colour, 7, text("x")) &&
               !colour->attribute_value(7) && model_->message_count() == 0;
    };
    EXPECT_EXIT(std::_Exit(adding_stays_in_the_model() ? 0 : 1), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(std::_Exit(setting_stays_away_from_the_application() ? 0 : 1), testing::ExitedWithCode(0),
                "");
    EXPECT_EQ(type(late_type), nullptr);
}

TEST_F(user_defined_properties, the_model_leaves_alone_what_the_application_declared) {
    object* const column = make(column_type);
    ASSERT_TRUE(set(column, colour_property, text("red")));
    model_->clear_history();
    meta_property* const colour = type(column_type)->find_property(colour_property);
    EXPECT_FALSE(model_->set_user_defined_property_attribute(type(column_type), colour, attribute_id::name,
                                                             text("Shade")));
    EXPECT_FALSE(model_->remove_user_defined_property(column_type, colour_property));
    EXPECT_EQ(colour->name(), "Colour");
    EXPECT_EQ(text_of(column->get_own_property(colour_property)), "red");
    EXPECT_EQ(history(), "");
}

TEST_F(user_defined_properties, a_property_of_another_model_is_none_of_this_one) {
    object* const other_root = framework::instance().create_object(type_id::model, nullptr);
    meta_property* const other =
        other_root->model()->add_user_defined_property(table_type, "Owner", data_type::string, "", 0);
    ASSERT_NE(other, nullptr);
    EXPECT_FALSE(
        model_->set_user_defined_property_attribute(type(table_type), other, attribute_id::name, text("x")));
    EXPECT_EQ(other->name(), "Owner");
    framework::instance().delete_object(other_root);
}

TEST_F(user_defined_properties, what_is_set_is_recorded_of_the_models_own_view_of_the_type) {
    meta_property* const made =
        model_->add_user_defined_property(table_type, "Owner", data_type::string, "", 0);
    meta_object* const declared =
        framework::instance().application_meta_model()->find_meta_object(table_type);
    ASSERT_TRUE(model_->set_user_defined_property_attribute(declared, made, 7, text("Ann")));
    auto* const said =
        message_cast<udp_set_attribute_value_message>(model_->message_at(model_->message_count() - 1));
    ASSERT_NE(said, nullptr);
    EXPECT_EQ(said->owner_meta_type(), type(table_type));
}

TEST_F(user_defined_properties, a_fixed_id_leaves_the_counter_alone) {
    const meta_property* const made =
        model_->add_user_defined_property(table_type, "Fixed", data_type::string, "", 60000);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->id(), 60000U);
    EXPECT_EQ(next_id(), first_id);
}

TEST_F(user_defined_properties, the_last_id_is_65534_and_fixed_ids_go_on) {
    for (u32 id = first_id; id != 65535; ++id) {
        const meta_property* const made =
            model_->add_user_defined_property(table_type, "Passing", data_type::string, "", 0);
        ASSERT_NE(made, nullptr);
        ASSERT_EQ(made->id(), id);
        ASSERT_TRUE(model_->remove_user_defined_property(table_type, id));
    }
    for (int attempt = 0; attempt != 2; ++attempt) {
        try {
            model_->add_user_defined_property(table_type, "One too many", data_type::string, "", 0);
            ADD_FAILURE() << "an id behind the last was given";
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(),
                         "Maximum Number of User Defined Properties Allowed Has Been Reached....");
        }
    }
    EXPECT_FALSE(type(table_type)->has_property("One too many"));
    ASSERT_TRUE(set(property_id::name, text("One too many")));
    const auto complete = [&] {
        transaction_object guard(model_, "Complete");
        definition_->set_property(property_id::udp_object_types, *ids({table_type}));
    };
    EXPECT_THROW(complete(), std::runtime_error);
    EXPECT_FALSE(type(table_type)->has_property("One too many"));
    EXPECT_FALSE(definition_->defines_property(property_id::udp_object_types))
        << "the change did not take place";
    EXPECT_NE(model_->add_user_defined_property(table_type, "Fixed", data_type::string, "", 60000), nullptr);
}

} // namespace
