// User-defined properties whose definitions are given references: the types of a model keep the texts of the targets,
// since they outlive objects.
// The references that objects have, and what becomes of them, are in references_test.cpp.
#include "meta/udp_world.h"

#include <sstream>

namespace {

using namespace kelm;
using namespace kelm::udp_world;

class definitions_with_references : public user_defined_properties {
protected:
    void SetUp() override {
        user_defined_properties::SetUp();
        model_->meta_model()->set_version(100);
        target_ = make(table_type);
        set(target_, property_id::name, text("Target"));
        define("Notes", {table_type});
    }

    property<object*> reference() const { return property<object*>(target_); }
    std::unique_ptr<vector_property> references() const {
        auto list = std::make_unique<vector_property>();
        list->elements = {reference().clone(), new property<std::string>("else"),
                          new property<object*>(nullptr)};
        return list;
    }
    value_ptr attribute(u32 id) { return made_on(table_type)->attribute_value(id); }
    static u32 kind_of(const value_ptr& value) { return framework::instance().data_type_of(value.get()); }

    static std::string bytes_of(kelm::model& of) {
        std::ostringstream out;
        of.clear_modified(); // a model that has been read counts from 0
        EXPECT_TRUE(of.write(&out, true, 0, false, nullptr));
        return out.str();
    }
    /// \returns the bytes that a model has which was read from `bytes`
    static std::string read_and_written(const std::string& bytes) {
        object* const root = framework::instance().create_object(type_id::model, nullptr);
        root->model()->meta_model()->set_version(100);
        std::istringstream in{bytes};
        EXPECT_TRUE(root->model()->read(&in, nullptr));
        std::string again = bytes_of(*root->model());
        framework::instance().delete_object(root);
        return again;
    }

    object* target_ = nullptr;
};

/// Where a definition says something, and where it goes.
struct passed_value {
    const char* why;
    u32 property;
    u32 attribute;
};
constexpr passed_value passed_values[] = {
    {"the definition", property_id::definition, attribute_id::definition},
    {"the default", property_id::udp_default_value, attribute_id::default_value},
    {"the multiline mark", property_id::udp_multiline_value, attribute_id::multiline},
    {"the name", property_id::name, attribute_id::name},
};

TEST_F(definitions_with_references, hand_on_the_text_of_the_target) {
    for (const passed_value& row : passed_values) {
        SCOPED_TRACE(row.why);
        ASSERT_TRUE(set(row.property, reference()));
        EXPECT_EQ(kind_of(attribute(row.attribute)), data_type::string);
        EXPECT_EQ(text_of(attribute(row.attribute)), "Target");
        EXPECT_EQ(kind_of(definition_->get_own_property(row.property)), data_type::object_reference);
    }
}

TEST_F(definitions_with_references, hand_on_lists_of_texts_at_any_depth) {
    const auto given = references();
    given->elements.push_back(references().release());
    given->elements.push_back(nullptr);
    ASSERT_TRUE(change([&] {
        return model_->set_user_defined_property_attribute(type(table_type), made_on(table_type),
                                                           attribute_id::default_value_choices, *given);
    }));
    const value_ptr choices = attribute(attribute_id::default_value_choices);
    const auto* const list = dynamic_cast<const vector_property*>(choices.get());
    ASSERT_TRUE(list);
    ASSERT_EQ(list->elements.size(), 5U);
    const auto expect_text = [](const abstract_property* element, const char* expected) {
        const auto* const found = dynamic_cast<const property<std::string>*>(element);
        ASSERT_TRUE(found);
        EXPECT_EQ(found->value, expected);
    };
    expect_text(list->elements[0], "Target");
    expect_text(list->elements[1], "else");
    expect_text(list->elements[2], property<object*>(nullptr).to_string().c_str());
    const auto* const inner = dynamic_cast<const vector_property*>(list->elements[3]);
    ASSERT_TRUE(inner);
    expect_text(inner->elements.at(0), "Target");
    EXPECT_EQ(list->elements[4], nullptr);
}

TEST_F(definitions_with_references, hand_on_what_they_inherit_from_another_one_as_texts) {
    object* const other = make(type_id::user_defined_property);
    ASSERT_TRUE(set(other, property_id::udp_default_value_choices, *references()));
    ASSERT_TRUE(change([&] { return other->delete_property(property_id::udp_default_value); }));
    ASSERT_TRUE(change([&] { return definition_->add_inherits_from(other); }));
    ASSERT_TRUE(append(property_id::udp_object_types, property<unsigned>(column_type)));
    const value_ptr first = make(column_type)->get_property(first_id);
    EXPECT_EQ(kind_of(first), data_type::string);
    EXPECT_EQ(text_of(first), "Target");
}

TEST_F(definitions_with_references, hand_on_as_text_what_their_base_is_given) {
    object* const base = make(table_type);
    ASSERT_TRUE(change([&] { return definition_->add_inherits_from(base); }));
    ASSERT_TRUE(set(base, property_id::definition, reference()));
    EXPECT_EQ(kind_of(definition_->get_property(property_id::definition)), data_type::object_reference);
    EXPECT_EQ(kind_of(attribute(attribute_id::definition)), data_type::string);
    EXPECT_EQ(made_on(table_type)->definition(), "Target");
}

TEST_F(definitions_with_references, are_written_in_the_same_bytes_once_read) {
    for (const passed_value& row : passed_values) {
        SCOPED_TRACE(row.why);
        ASSERT_TRUE(set(row.property, reference()));
        const std::string bytes = bytes_of(*model_);
        EXPECT_TRUE(read_and_written(bytes) == bytes);
    }
    ASSERT_TRUE(set(property_id::udp_default_value_choices, *references()));
    const std::string bytes = bytes_of(*model_);
    EXPECT_TRUE(read_and_written(bytes) == bytes);
}

TEST_F(definitions_with_references, do_not_look_at_targets_that_are_gone) {
    ASSERT_TRUE(set(property_id::udp_default_value_choices, *references()));
    for (const passed_value& row : passed_values) ASSERT_TRUE(set(row.property, reference()));
    ASSERT_TRUE(change([&] { return framework::instance().delete_object(target_); }));
    model_->clear_history(); // frees the target
    object* const reader = make(table_type);
    EXPECT_EQ(text_of(reader->get_property(first_id)), "Target");
    EXPECT_EQ(made_on(table_type)->definition(), "Target");
    const std::string bytes = bytes_of(*model_);
    EXPECT_TRUE(read_and_written(bytes) == bytes);
}

TEST_F(definitions_with_references, are_undone_and_redone_without_them) {
    ASSERT_TRUE(set(property_id::udp_default_value, text("plain")));
    ASSERT_TRUE(set(property_id::udp_default_value, reference()));
    ASSERT_TRUE(change([&] { return definition_->delete_property(property_id::udp_object_types); }));
    model_->undo();
    EXPECT_EQ(text_of(attribute(attribute_id::default_value)), "Target");
    model_->undo();
    EXPECT_EQ(text_of(attribute(attribute_id::default_value)), "plain");
    model_->redo();
    EXPECT_EQ(kind_of(attribute(attribute_id::default_value)), data_type::string);
    EXPECT_EQ(text_of(attribute(attribute_id::default_value)), "Target");
}

TEST_F(definitions_with_references, that_a_caller_sets_by_hand_are_texts_too) {
    ASSERT_TRUE(change([&] {
        return model_->set_user_defined_property_attribute(type(table_type), made_on(table_type),
                                                           attribute_id::default_value, reference());
    }));
    EXPECT_EQ(kind_of(attribute(attribute_id::default_value)), data_type::string);
    EXPECT_EQ(text_of(attribute(attribute_id::default_value)), "Target");
}

} // namespace
