// User-defined properties: what a definition makes of types, and what objects then read.
// Removal and undo are tested in files of their own.
#include "meta/udp_world.h"

namespace {

using namespace kelm;
using namespace kelm::udp_world;
using testing::ElementsAre;

// Making

TEST_F(user_defined_properties, nothing_is_made_until_there_is_a_type) {
    ASSERT_TRUE(set(property_id::name, text("Owner")));
    EXPECT_FALSE(type(table_type)->has_property("Owner"));
    EXPECT_FALSE(definition_->has_property(property_id::udp_id));
    EXPECT_EQ(stored_id(), 0U);

    ASSERT_TRUE(append(property_id::udp_object_types, property<unsigned>(table_type)));
    ASSERT_NE(made_on(table_type), nullptr);
    EXPECT_EQ(made_on(table_type)->name(), "Owner");
    EXPECT_EQ(made_on(table_type)->property_class(), data_type::string);
    EXPECT_EQ(stored_id(), first_id);
    const value_ptr stored = definition_->get_own_property(property_id::udp_id);
    EXPECT_NE(dynamic_cast<property<int>*>(stored.get()), nullptr);
}

TEST_F(user_defined_properties, the_name_may_be_the_last_piece) {
    ASSERT_TRUE(set(property_id::udp_object_types, *ids({table_type})));
    EXPECT_EQ(made_on(table_type), nullptr);
    ASSERT_TRUE(set(property_id::name, text("Owner")));
    ASSERT_NE(made_on(table_type), nullptr);
    EXPECT_EQ(made_on(table_type)->name(), "Owner");
}

TEST_F(user_defined_properties, an_empty_list_of_types_does_not_complete_a_definition) {
    define("Owner", {});
    EXPECT_EQ(stored_id(), 0U);
    EXPECT_EQ(next_id(), first_id);
}

TEST_F(user_defined_properties, all_types_get_one_id_and_the_counter_moves_once) {
    define("Owner", {table_type, column_type});
    ASSERT_NE(made_on(table_type), nullptr);
    ASSERT_NE(made_on(column_type), nullptr);
    EXPECT_EQ(stored_id(), first_id);
    EXPECT_EQ(next_id(), first_id + 1);
}

TEST_F(user_defined_properties, a_type_that_comes_later_gets_the_same_id) {
    define("Owner", {table_type});
    ASSERT_TRUE(append(property_id::udp_object_types, property<int>(static_cast<int>(column_type))));
    EXPECT_NE(made_on(column_type), nullptr);
    EXPECT_EQ(next_id(), first_id + 1);
}

TEST_F(user_defined_properties, the_plan_of_a_definition_reaches_the_property_when_it_is_made) {
    ASSERT_TRUE(set(property_id::definition, text("Who owns it")));
    ASSERT_TRUE(set(property_id::udp_default_value_choices, *texts({"red", "green"})));
    ASSERT_TRUE(set(property_id::udp_multiline_value, property<bool>(true)));
    define("Owner", {table_type});
    const meta_property* const made = made_on(table_type);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->definition(), "Who owns it");
    EXPECT_EQ(text_of(made->attribute_value(attribute_id::default_value)), "red");
    EXPECT_THAT(elements_of(made->attribute_value(attribute_id::default_value_choices)),
                ElementsAre("red", "green"));
    const value_ptr multiline = made->attribute_value(attribute_id::multiline);
    const auto* const flag = dynamic_cast<const property<bool>*>(multiline.get());
    EXPECT_TRUE(flag && flag->value);
}

TEST_F(user_defined_properties, a_type_with_a_property_of_that_name_is_passed_over) {
    define("Colour", {column_type, table_type});
    EXPECT_EQ(type(column_type)->find_property("Colour")->id(), colour_property);
    EXPECT_EQ(made_on(column_type), nullptr);
    EXPECT_NE(made_on(table_type), nullptr);
}

TEST_F(user_defined_properties,
       a_type_with_a_property_of_that_name_is_passed_over_also_when_the_name_comes_last) {
    ASSERT_TRUE(set(property_id::udp_object_types, *ids({column_type, table_type})));
    ASSERT_TRUE(set(property_id::name, text("Colour")));
    EXPECT_EQ(made_on(column_type), nullptr);
    EXPECT_NE(made_on(table_type), nullptr);
    EXPECT_EQ(stored_id(), first_id);
}

TEST_F(user_defined_properties, what_the_application_declared_keeps_its_name_when_a_definition_is_renamed) {
    define("Colour", {column_type, table_type});
    const meta_property* const declared = type(column_type)->find_property(colour_property);
    ASSERT_TRUE(set(property_id::name, text("Shade")));
    EXPECT_EQ(declared->name(), "Colour") << "all models see it";
    EXPECT_EQ(made_on(table_type)->name(), "Shade");
    EXPECT_EQ(made_on(column_type), nullptr) << "a rename makes nothing";
}

TEST_F(user_defined_properties, what_the_application_declared_takes_no_values_of_a_definition) {
    define("Colour", {column_type});
    const meta_property* const declared = type(column_type)->find_property(colour_property);
    const auto before = declared->attributes().size();
    EXPECT_TRUE(set(property_id::definition, text("words"))) << "passed over, which is no error";
    EXPECT_TRUE(set(property_id::udp_default_value_choices, *texts({"red"})));
    EXPECT_TRUE(append(property_id::udp_default_value_choices, text("blue")));
    EXPECT_TRUE(set(property_id::udp_multiline_value, property<bool>(true)));
    EXPECT_EQ(declared->definition(), "");
    EXPECT_EQ(declared->attributes().size(), before);

    ASSERT_TRUE(append(property_id::udp_object_types, property<unsigned>(unknown_type)));
    EXPECT_FALSE(set(property_id::definition, text("more words"))) << "now there is another cause";
}

TEST_F(user_defined_properties, keeps_taking_the_property_of_another_definition_when_the_name_comes_last) {
    define("Owner", {table_type});
    object* const first = definition_;
    definition_ = make(type_id::user_defined_property);
    ASSERT_TRUE(set(property_id::udp_object_types, *ids({column_type, table_type})));
    ASSERT_TRUE(set(property_id::name, text("Owner")));
    EXPECT_FALSE(type(column_type)->has_property("Owner")) << "one was found, so none was made";
    EXPECT_EQ(stored_id(), 0U);

    ASSERT_TRUE(change([&] { return framework::instance().delete_object(definition_); }));
    EXPECT_EQ(made_on(table_type), nullptr) << "it goes with either";
    EXPECT_EQ(framework::instance().udp_property_id(first), first_id);
}

TEST_F(user_defined_properties, keeps_renaming_the_property_of_another_definition) {
    define("Owner", {table_type});
    definition_ = make(type_id::user_defined_property);
    define("Owner", {table_type, column_type});
    ASSERT_NE(made_on(column_type, first_id + 1), nullptr);
    ASSERT_TRUE(set(property_id::name, text("Keeper")));
    EXPECT_EQ(made_on(table_type)->name(), "Keeper") << "made by the first";
    EXPECT_EQ(made_on(column_type, first_id + 1)->name(), "Keeper");
}

TEST_F(user_defined_properties, it_is_no_error_when_every_type_is_passed_over) {
    define("Colour", {column_type});
    EXPECT_EQ(stored_id(), 0U);
    EXPECT_TRUE(append(property_id::udp_object_types, property<unsigned>(column_type)));
    EXPECT_EQ(next_id(), first_id);
}

TEST_F(user_defined_properties, an_unknown_type_is_passed_over) {
    define("Owner", {unknown_type, table_type});
    EXPECT_NE(made_on(table_type), nullptr);
}

TEST_F(user_defined_properties, a_type_that_has_the_id_under_another_name_is_passed_over) {
    ASSERT_NE(model_->add_user_defined_property(table_type, "Other", data_type::string, "", first_id),
              nullptr);
    define("Owner", {column_type, table_type});
    EXPECT_NE(made_on(column_type), nullptr);
    EXPECT_EQ(made_on(table_type)->name(), "Other");
}

TEST_F(user_defined_properties, other_models_and_the_application_do_not_show_the_property) {
    object* const other_root = framework::instance().create_object(type_id::model, nullptr);
    define("Owner", {table_type});
    ASSERT_NE(made_on(table_type), nullptr);
    EXPECT_FALSE(
        framework::instance().application_meta_model()->find_meta_object(table_type)->has_property(first_id));
    EXPECT_FALSE(other_root->model()->meta_model()->find_meta_object(table_type)->has_property(first_id));
    EXPECT_FALSE(type(derived_type)->has_property(first_id));
    framework::instance().delete_object(other_root);
}

// Changing

TEST_F(user_defined_properties, a_rename_keeps_the_id_and_the_values) {
    define("Owner", {table_type, column_type});
    object* const table = make(table_type);
    ASSERT_TRUE(set(table, first_id, text("Ann")));

    ASSERT_TRUE(set(property_id::name, text("Keeper")));
    for (const u32 each : {table_type, column_type}) {
        SCOPED_TRACE(each);
        ASSERT_NE(made_on(each), nullptr);
        EXPECT_EQ(made_on(each)->name(), "Keeper");
        EXPECT_FALSE(type(each)->has_property("Owner"));
    }
    EXPECT_EQ(text_of(table->get_property(first_id)), "Ann");
    EXPECT_EQ(stored_id(), first_id);
    EXPECT_EQ(next_id(), first_id + 1);
}

TEST_F(user_defined_properties, values_of_the_definition_reach_the_property_on_all_types) {
    define("Owner", {table_type, column_type});
    const std::unique_ptr<vector_property> choices = texts({"a", "b"});
    const property<std::string> words = text("words");
    const property<bool> yes(true);
    const property<bool> no(false);
    const struct {
        const char* why;
        u32 property;
        const abstract_property& value;
        u32 attribute;
    } rows[] = {
        {"definition", property_id::definition, words, attribute_id::definition},
        {"default value", property_id::udp_default_value, words, attribute_id::default_value},
        {"multiline", property_id::udp_multiline_value, yes, attribute_id::multiline},
        {"no longer multiline", property_id::udp_multiline_value, no, attribute_id::multiline},
        {"choices", property_id::udp_default_value_choices, *choices, attribute_id::default_value_choices},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_TRUE(set(row.property, row.value));
        for (const u32 each : {table_type, column_type}) {
            const value_ptr now = made_on(each)->attribute_value(row.attribute);
            EXPECT_TRUE(row.value.equals(now.get())) << each << ' ' << text_of(now);
        }
    }
}

TEST_F(user_defined_properties, a_value_that_no_property_can_take_is_refused) {
    ASSERT_TRUE(set(property_id::name, text("Owner")));
    ASSERT_TRUE(set(property_id::udp_object_types, *ids({unknown_type})));
    EXPECT_FALSE(set(property_id::udp_default_value, text("x")));
    EXPECT_FALSE(definition_->has_property(property_id::udp_default_value));
}

TEST_F(user_defined_properties, the_first_choice_becomes_the_default_and_ends_multiline) {
    define("Size", {table_type});
    ASSERT_TRUE(set(property_id::udp_multiline_value, property<bool>(true)));
    ASSERT_TRUE(set(property_id::udp_default_value_choices, *texts({"small", "large"})));
    EXPECT_EQ(text_of(definition_->get_property(property_id::udp_default_value)), "small");
    EXPECT_FALSE(definition_->has_property(property_id::udp_multiline_value));
    EXPECT_EQ(text_of(made_on(table_type)->attribute_value(attribute_id::default_value)), "small");
}

TEST_F(user_defined_properties, choices_leave_a_default_alone_that_is_there) {
    define("Size", {table_type});
    ASSERT_TRUE(set(property_id::udp_default_value, text("medium")));
    ASSERT_TRUE(set(property_id::udp_default_value_choices, *texts({"small"})));
    ASSERT_TRUE(append(property_id::udp_default_value_choices, text("tiny")));
    EXPECT_EQ(text_of(definition_->get_property(property_id::udp_default_value)), "medium");
}

TEST_F(user_defined_properties,
       the_first_choice_that_is_put_in_becomes_the_default_before_the_definition_is_complete) {
    ASSERT_TRUE(append(property_id::udp_default_value_choices, text("small")));
    ASSERT_TRUE(append(property_id::udp_default_value_choices, text("large")));
    EXPECT_EQ(text_of(definition_->get_property(property_id::udp_default_value)), "small");
}

TEST_F(user_defined_properties, each_edit_of_the_choices_reaches_the_property_on_all_types) {
    define("Size", {table_type, column_type});
    ASSERT_TRUE(set(property_id::udp_default_value_choices, *texts({"a", "b", "c"})));
    constexpr u32 choices = property_id::udp_default_value_choices;
    const struct {
        const char* why;
        std::function<bool()> edit;
        std::vector<std::string> now;
    } rows[] = {
        {"append",
         [&] { return definition_->append_vector_element(choices, text("d")); },
         {"a", "b", "c", "d"}},
        {"insert",
         [&] { return definition_->insert_vector_element(choices, text("e"), 0); },
         {"e", "a", "b", "c", "d"}},
        {"replace",
         [&] { return definition_->set_vector_element(choices, text("f"), 1); },
         {"e", "f", "b", "c", "d"}},
        {"move", [&] { return definition_->move_vector_element(choices, 0, 4); }, {"f", "b", "c", "d", "e"}},
        {"delete", [&] { return definition_->delete_vector_element(choices, 2); }, {"f", "b", "d", "e"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_TRUE(change(row.edit));
        for (const u32 each : {table_type, column_type})
            EXPECT_EQ(elements_of(made_on(each)->attribute_value(attribute_id::default_value_choices)),
                      row.now);
    }
}

// Reading

TEST_F(user_defined_properties, an_object_without_a_value_reads_the_default) {
    define("Owner", {table_type});
    object* const table = make(table_type);
    meta_property* const owner = made_on(table_type);
    EXPECT_EQ(text_of(table->get_property(first_id)), "") << "neither default nor choices";
    EXPECT_TRUE(table->has_property(first_id));
    EXPECT_FALSE(table->defines_property(first_id));

    owner->set_attribute_value(attribute_id::default_value_choices, *texts({"red", "green"}));
    EXPECT_EQ(text_of(table->get_property(first_id)), "red") << "choices and no default";

    owner->set_attribute_value(attribute_id::default_value, text("blue"));
    EXPECT_EQ(text_of(table->get_property(first_id)), "blue") << "a default goes before the choices";

    ASSERT_TRUE(set(table, first_id, text("own")));
    EXPECT_EQ(text_of(table->get_property(first_id)), "own");
}

TEST_F(user_defined_properties, an_empty_list_of_choices_leaves_no_value) {
    define("Owner", {table_type});
    made_on(table_type)->set_attribute_value(attribute_id::default_value_choices, vector_property{});
    EXPECT_FALSE(make(table_type)->get_property(first_id));
}

TEST_F(user_defined_properties, there_is_no_default_for_what_is_not_user_defined_or_not_of_the_type) {
    define("Owner", {table_type});
    EXPECT_FALSE(make(column_type)->has_property(first_id));
    EXPECT_FALSE(make(table_type)->has_property(first_id + 1));
    EXPECT_FALSE(make(column_type)->has_property(colour_property));
}

TEST_F(user_defined_properties, hooks_behind_the_default_do_not_run_for_an_unknown_user_defined_property) {
    define("Owner", {stubborn_type});
    object* const stubborn = make(stubborn_type);
    EXPECT_EQ(text_of(stubborn->get_property(colour_property)), "supplied");
    EXPECT_EQ(text_of(stubborn->get_property(first_id)), "") << "the default comes first";
    EXPECT_EQ(text_of(stubborn->get_property(first_id + 1)), "(none)");
}

TEST_F(user_defined_properties, the_framework_reads_definitions) {
    framework& all = framework::instance();
    EXPECT_FALSE(all.is_object_type_of_udp(nullptr, table_type));
    EXPECT_FALSE(all.is_object_type_of_udp(definition_, table_type));
    EXPECT_EQ(all.udp_property_id(nullptr), 0U);
    EXPECT_EQ(all.udp_property_id(definition_), 0U);

    define("Owner", {table_type});
    ASSERT_TRUE(append(property_id::udp_object_types, property<long>(static_cast<int>(column_type))));
    EXPECT_TRUE(all.is_object_type_of_udp(definition_, table_type));
    EXPECT_TRUE(all.is_object_type_of_udp(definition_, column_type));
    EXPECT_FALSE(all.is_object_type_of_udp(definition_, derived_type));
    EXPECT_EQ(all.udp_property_id(definition_), first_id);

    object* const table = make(table_type);
    ASSERT_TRUE(set(table, property_id::udp_object_types, *ids({table_type})));
    EXPECT_TRUE(all.is_object_type_of_udp(table, table_type)) << "what has the list, whatever its type";
    EXPECT_FALSE(all.is_object_type_of_udp(table, column_type));
    vector_property words;
    words.elements = {text("41001").clone(), nullptr};
    ASSERT_TRUE(set(table, property_id::udp_object_types, words));
    EXPECT_FALSE(all.is_object_type_of_udp(table, 0)) << "no number";
    ASSERT_TRUE(set(table, property_id::udp_object_types, text("41001")));
    EXPECT_FALSE(all.is_object_type_of_udp(table, table_type)) << "no list";
    ASSERT_TRUE(set(table, property_id::udp_id, property<int>(4711)));
    EXPECT_EQ(all.udp_property_id(table), 4711U);
    ASSERT_TRUE(set(table, property_id::udp_id, text("4711")));
    EXPECT_EQ(all.udp_property_id(table), 0U) << "no number";
}

} // namespace
