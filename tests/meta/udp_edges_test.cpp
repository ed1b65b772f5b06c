// User-defined properties: definitions that are incomplete, share names, or come to the end of the ids.
// What a whole definition does is udp_test.cpp.
#include "meta/udp_world.h"
#include "object/model_impl.h"

#include <kelm/message.h>
#include <kelm/property_messages.h>
#include <kelm/structure_messages.h>

#include <stdexcept>

namespace {

using namespace kelm;
using namespace kelm::udp_world;
using testing::ElementsAre;

// Incomplete definitions

TEST_F(user_defined_properties, an_incomplete_definition_takes_every_edit_and_makes_nothing) {
    constexpr u32 types = property_id::udp_object_types;
    constexpr u32 choices = property_id::udp_default_value_choices;
    object& it = *definition_;
    const struct {
        const char* why;
        std::function<bool()> edit;
    } edits[] = {
        {"definition", [&] { return it.set_property(property_id::definition, text("x")); }},
        {"default", [&] { return it.set_property(property_id::udp_default_value, text("x")); }},
        {"multiline",
         [&] { return it.set_property(property_id::udp_multiline_value, property<bool>(true)); }},
        {"choices",
         [&] {
             return it.set_property(choices, *texts({"a", "b"}));
         }},
        {"a choice", [&] { return it.append_vector_element(choices, text("c")); }},
        {"another choice", [&] { return it.set_vector_element(choices, text("d"), 0); }},
        {"choices move", [&] { return it.move_vector_element(choices, 0, 1); }},
        {"a choice goes", [&] { return it.delete_vector_element(choices, 0); }},
        {"the choices go", [&] { return it.delete_property(choices); }},
        {"a missing type goes", [&] { return it.delete_property(types); }},
        {"a missing name goes", [&] { return it.delete_property(property_id::name); }},
    };
    const auto take_all = [&](const char* state) {
        SCOPED_TRACE(state);
        for (const auto& row : edits) {
            SCOPED_TRACE(row.why);
            model_->clear_history();
            EXPECT_TRUE(change(row.edit));
            for (std::size_t at = 0; at != model_->message_count(); ++at)
                EXPECT_LT(model_->message_at(at)->type(), message_type::udp_add);
        }
    };
    take_all("neither name nor types");
    ASSERT_TRUE(set(types, *ids({})));
    take_all("no types in the list");
    ASSERT_TRUE(set(types, *ids({table_type})));
    take_all("no name");
    EXPECT_EQ(stored_id(), 0U);
    EXPECT_EQ(next_id(), first_id);
}

TEST_F(user_defined_properties,
       choices_become_the_default_and_end_multiline_before_a_definition_is_complete) {
    ASSERT_TRUE(set(property_id::udp_multiline_value, property<bool>(true)));
    model_->clear_history();
    ASSERT_TRUE(set(property_id::udp_default_value_choices, *texts({"small", "large"})));
    EXPECT_EQ(history(), "1 first  Begin Transaction - Change\n"
                         "7 first Changed User Defined Property  Default Value Choices from NULL to small, "
                         "large\n"
                         "7 first Changed User Defined Property  Default Value from NULL to small\n"
                         "10 first Deleted Multiline Value of User Defined Property \n"
                         "2 first  End Transaction - Change\n");
}

TEST_F(user_defined_properties, an_empty_list_of_choices_makes_no_default) {
    ASSERT_TRUE(set(property_id::udp_default_value_choices, *texts({})));
    EXPECT_FALSE(definition_->has_property(property_id::udp_default_value));
}

TEST_F(user_defined_properties, a_definition_is_still_complete_while_its_last_type_goes) {
    define("Owner", {table_type});
    ASSERT_TRUE(change([&] { return definition_->delete_vector_element(property_id::udp_object_types, 0); }));
    EXPECT_EQ(made_on(table_type), nullptr);
    ASSERT_TRUE(set(property_id::name, text("Keeper"))) << "and incomplete behind it";
    EXPECT_FALSE(type(table_type)->has_property("Keeper"));
    ASSERT_TRUE(append(property_id::udp_object_types, property<unsigned>(table_type)));
    ASSERT_NE(made_on(table_type), nullptr) << "complete again, under its old id";
    EXPECT_EQ(made_on(table_type)->name(), "Keeper");
}

TEST_F(user_defined_properties, replacing_or_moving_a_listed_type_changes_no_type) {
    define("Owner", {table_type, column_type});
    model_->clear_history();
    constexpr u32 types = property_id::udp_object_types;
    EXPECT_TRUE(change([&] { return definition_->move_vector_element(types, 0, 1); }));
    EXPECT_TRUE(
        change([&] { return definition_->set_vector_element(types, property<unsigned>(derived_type), 0); }));
    EXPECT_THAT(elements_of(definition_->get_property(types)),
                ElementsAre(std::to_string(derived_type), std::to_string(table_type)));
    EXPECT_NE(made_on(table_type), nullptr);
    EXPECT_NE(made_on(column_type), nullptr);
    EXPECT_EQ(made_on(derived_type), nullptr);
    EXPECT_EQ(model_->message_count(), 6U) << "two changes of the list";
}

TEST_F(user_defined_properties, a_definition_below_another_object_works_for_its_model) {
    object* const shelf = make(table_type);
    change([&] {
        definition_ = framework::instance().create_object(type_id::user_defined_property, shelf);
        return definition_ != nullptr;
    });
    ASSERT_NE(definition_, nullptr);
    define("Owner", {table_type});
    EXPECT_NE(made_on(table_type), nullptr);
}

// What does not reach the property

TEST_F(user_defined_properties,
       keeps_the_multiline_mark_of_the_property_when_choices_end_that_of_its_definition) {
    define("Owner", {table_type});
    ASSERT_TRUE(set(property_id::udp_multiline_value, property<bool>(true)));
    ASSERT_TRUE(set(property_id::udp_default_value_choices, *texts({"a"})));
    EXPECT_FALSE(definition_->has_property(property_id::udp_multiline_value));
    EXPECT_EQ(text_of(made_on(table_type)->attribute_value(attribute_id::multiline)), "True");
}

TEST_F(user_defined_properties, keeps_what_the_property_has_when_a_value_of_its_definition_is_deleted) {
    ASSERT_TRUE(set(property_id::definition, text("Who")));
    ASSERT_TRUE(set(property_id::udp_default_value_choices, *texts({"a"})));
    define("Owner", {table_type});
    for (const u32 each :
         {property_id::definition, property_id::udp_default_value, property_id::udp_default_value_choices})
        ASSERT_TRUE(change([&] { return definition_->delete_property(each); })) << each;
    EXPECT_EQ(made_on(table_type)->definition(), "Who");
    EXPECT_EQ(text_of(made_on(table_type)->attribute_value(attribute_id::default_value)), "a");
    EXPECT_THAT(elements_of(made_on(table_type)->attribute_value(attribute_id::default_value_choices)),
                ElementsAre("a"));
}

// Names

TEST_F(user_defined_properties, a_definition_may_take_a_name_that_the_application_uses_and_leave_it_again) {
    define("Owner", {column_type});
    const meta_property* const declared = framework::instance()
                                              .application_meta_model()
                                              ->find_meta_object(column_type)
                                              ->find_property(colour_property);
    ASSERT_TRUE(set(property_id::name, text("Colour")));
    EXPECT_EQ(made_on(column_type)->name(), "Colour");
    EXPECT_EQ(type(column_type)->find_property("Colour"), made_on(column_type)) << "its own comes first";
    ASSERT_TRUE(set(property_id::name, text("Shade")));
    EXPECT_EQ(made_on(column_type)->name(), "Shade");
    EXPECT_EQ(declared->name(), "Colour");
}

TEST_F(user_defined_properties, two_models_number_and_change_their_properties_on_their_own) {
    define("Owner", {table_type});
    const meta_property* const mine = made_on(table_type);
    object* const other_root = framework::instance().create_object(type_id::model, nullptr);
    kelm::model& other = *other_root->model();
    meta_property* const theirs = [&] {
        transaction_object guard(&other, "Define");
        object* const it = framework::instance().create_object(type_id::user_defined_property, other_root);
        it->set_property(property_id::name, text("Owner"));
        it->set_property(property_id::udp_object_types, *ids({table_type}));
        it->set_property(property_id::name, text("Keeper"));
        guard.commit();
        return other.meta_model()->find_meta_object(table_type)->find_property(first_id);
    }();
    ASSERT_NE(theirs, nullptr) << "each model begins with the first id";
    EXPECT_NE(theirs, mine);
    EXPECT_EQ(theirs->name(), "Keeper");
    EXPECT_EQ(mine->name(), "Owner");
    other.undo();
    EXPECT_EQ(other.meta_model()->find_meta_object(table_type)->find_property(first_id), nullptr);
    framework::instance().delete_object(other_root);
    EXPECT_EQ(made_on(table_type), mine);
    EXPECT_EQ(mine->name(), "Owner");
}

// Ids

TEST_F(user_defined_properties, an_undone_id_is_not_given_again) {
    define("Owner", {table_type});
    model_->undo();
    EXPECT_EQ(stored_id(), 0U);
    ASSERT_TRUE(set(property_id::udp_object_types, *ids({table_type})));
    EXPECT_EQ(stored_id(), first_id + 1);
    EXPECT_NE(made_on(table_type, first_id + 1), nullptr);
}

TEST_F(user_defined_properties, a_definition_that_brings_its_id_leaves_the_counter_alone) {
    ASSERT_TRUE(set(property_id::udp_id, property<int>(61234)));
    define("Owner", {table_type});
    EXPECT_NE(made_on(table_type, 61234), nullptr);
    EXPECT_EQ(stored_id(), 61234U);
    EXPECT_EQ(next_id(), first_id);
}

TEST_F(user_defined_properties, who_has_the_last_id_goes_on_when_none_is_left) {
    static_cast<model_impl&>(*model_).restore_ids(model_->last_object_id(), 65533);
    define("Last", {table_type, column_type});
    EXPECT_EQ(stored_id(), 65534U);
    EXPECT_NE(made_on(table_type, 65534), nullptr);
    EXPECT_NE(made_on(column_type, 65534), nullptr) << "one id for both";

    object* const last = definition_;
    definition_ = make(type_id::user_defined_property);
    ASSERT_TRUE(set(property_id::name, text("One too many")));
    const std::size_t messages = model_->message_count();
    EXPECT_THROW(framework::instance().set_property_transacted(definition_, property_id::udp_object_types,
                                                               *ids({table_type})),
                 std::runtime_error);
    EXPECT_EQ(model_->message_count(), messages) << "nothing is left of it";
    EXPECT_FALSE(definition_->defines_property(property_id::udp_object_types));
    EXPECT_FALSE(type(table_type)->has_property("One too many"));

    definition_ = last;
    framework::instance().set_in_semantic(false);
    EXPECT_TRUE(append(property_id::udp_object_types, property<unsigned>(derived_type)));
    EXPECT_NE(made_on(derived_type, 65534), nullptr);
}

/// Refuses the number that a definition is given.
class refuses_the_id final : public observer_impl {
public:
    bool update(subject*, message* said) override {
        auto* const changed = message_cast<property_set_message>(said);
        return !changed || changed->property_type() != property_id::udp_id;
    }
};

TEST_F(user_defined_properties, what_was_made_goes_when_the_definition_may_not_take_the_id) {
    refuses_the_id refuses;
    ASSERT_TRUE(definition_->attach(&refuses));
    ASSERT_TRUE(set(property_id::name, text("Owner")));
    EXPECT_FALSE(set(property_id::udp_object_types, *ids({table_type, column_type})));
    EXPECT_EQ(made_on(table_type), nullptr);
    EXPECT_EQ(stored_id(), 0U);
    EXPECT_FALSE(definition_->defines_property(property_id::udp_object_types));
    definition_->detach(&refuses);
}

TEST_F(user_defined_properties, what_follows_of_a_definition_is_not_the_users_work) {
    ASSERT_TRUE(set(property_id::name, text("Owner")));
    model_->clear_history();
    ASSERT_TRUE(set(property_id::udp_object_types, *ids({table_type})));
    std::vector<std::pair<u32, bool>> made;
    for (std::size_t at = 0; at != model_->message_count(); ++at)
        made.emplace_back(model_->message_at(at)->type(), model_->message_at(at)->is_user_created());
    using expected = std::pair<u32, bool>;
    EXPECT_THAT(made, ElementsAre(expected{message_type::tran_begin, true},
                                  expected{message_type::property_set, true},
                                  expected{message_type::udp_add, false},
                                  expected{message_type::property_set, false},
                                  expected{message_type::tran_end, true}));
}

// Defaults

TEST_F(user_defined_properties, a_default_that_is_read_is_a_copy) {
    define("Owner", {table_type});
    made_on(table_type)->set_attribute_value(attribute_id::default_value, property<int>(7));
    object* const table = make(table_type);
    const value_ptr read = table->get_property(first_id);
    auto* const number = dynamic_cast<property<int>*>(read.get());
    ASSERT_NE(number, nullptr) << "of the kind that the default has";
    number->value = 8;
    EXPECT_EQ(text_of(table->get_property(first_id)), "7");
}

TEST_F(user_defined_properties, an_empty_default_is_one) {
    define("Owner", {table_type});
    made_on(table_type)->set_attribute_value(attribute_id::default_value_choices, *texts({"red"}));
    made_on(table_type)->set_attribute_value(attribute_id::default_value, text(""));
    EXPECT_EQ(text_of(make(table_type)->get_property(first_id)), "");
}

TEST_F(user_defined_properties, an_object_reads_the_value_of_its_base_before_the_default) {
    ASSERT_TRUE(set(property_id::udp_default_value, text("Ann")));
    define("Owner", {table_type});
    object* const base = make(table_type);
    object* const heir = make(table_type);
    ASSERT_TRUE(change([&] { return heir->add_inherits_from(base); }));
    EXPECT_EQ(text_of(heir->get_property(first_id)), "Ann");
    ASSERT_TRUE(set(base, first_id, text("Bob")));
    EXPECT_EQ(text_of(heir->get_property(first_id)), "Bob");
}

TEST_F(user_defined_properties, the_first_value_of_an_object_replaces_the_default_and_undo_brings_it_back) {
    ASSERT_TRUE(set(property_id::udp_default_value, text("Ann")));
    define("Owner", {table_type});
    object* const table = make(table_type);
    model_->clear_history();
    ASSERT_TRUE(set(table, first_id, text("Bob")));
    auto* const said = message_cast<property_set_message>(model_->message_at(1));
    ASSERT_NE(said, nullptr);
    EXPECT_EQ(text_of(said->old_value()), "Ann");
    EXPECT_EQ(said->old_owner(), nullptr) << "nobody had it";
    model_->undo();
    EXPECT_FALSE(table->defines_property(first_id));
    EXPECT_EQ(text_of(table->get_property(first_id)), "Ann");
}

TEST_F(user_defined_properties, a_deleted_object_keeps_its_value_through_a_removal_and_comes_back_with_it) {
    define("Owner", {table_type});
    object* const table = make(table_type);
    const u32 id = table->id();
    ASSERT_TRUE(set(table, first_id, text("Ann")));
    ASSERT_TRUE(change([&] { return framework::instance().delete_object(table); }));
    ASSERT_TRUE(change([&] { return definition_->delete_property(property_id::udp_object_types); }));
    model_->undo();
    model_->undo();
    ASSERT_EQ(model_->find_object(id), table);
    EXPECT_EQ(text_of(table->get_own_property(first_id)), "Ann");
}

} // namespace
