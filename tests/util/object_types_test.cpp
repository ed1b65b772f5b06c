// Names of types and properties, and the attributes of the types of objects.
// Names of objects are object_names_test.
#include "tests/support/world.h"

#include <kelm/object_helpers.h>

#include <gtest/gtest.h>

#include <string>

namespace kelm::test {
namespace {

class object_types : public world {};

// Types and properties

TEST_F(object_types, the_type_of_an_object_has_a_name) {
    const object* const what = thing("x");
    EXPECT_EQ(object_type_as_string(what), "Thing");
    EXPECT_EQ(meta_name(what), "Thing");
    EXPECT_EQ(object_type_as_string(root), "Model");
    EXPECT_EQ(meta_name(root), "Model");
    EXPECT_EQ(object_type_as_string(static_cast<const object*>(nullptr)), "");
    EXPECT_EQ(meta_name(nullptr), "");
}

TEST_F(object_types, a_deleted_object_still_has_its_type) {
    object* const what = thing("x");
    begin();
    ASSERT_TRUE(fw.delete_object(what));
    end();
    EXPECT_EQ(object_type_as_string(what), "Thing");
}

TEST_F(object_types, a_type_that_only_the_model_knows_has_its_name) {
    constexpr u32 local = 900001;
    ASSERT_TRUE(model->meta_model()->add_meta_object(local, "Only Here", "", ""));
    begin();
    const object* const what = fw.create_object(local, root);
    end();
    ASSERT_TRUE(what);
    EXPECT_EQ(object_type_as_string(what), "Only Here");
    EXPECT_EQ(meta_name(what), "Only Here");
    EXPECT_EQ(as_text(meta_att(what, attribute_id::name)), "Only Here");
    EXPECT_EQ(object_type_as_string(local), "") << "the application does not know it";
}

TEST_F(object_types, a_type_has_a_name_without_an_object) {
    EXPECT_EQ(object_type_as_string(types::thing), "Thing");
    EXPECT_EQ(object_type_as_string(type_id::model), "Model");
    EXPECT_EQ(object_type_as_string(types::abstract), "Abstract");
    EXPECT_EQ(object_type_as_string(4000000000U), "");
    EXPECT_EQ(object_type_as_string(0U), "");
}

TEST_F(object_types, a_property_has_the_name_of_its_declaration) {
    for (kelm::model* in : {model, static_cast<kelm::model*>(nullptr)}) {
        SCOPED_TRACE(in ? "in a model" : "in the application");
        EXPECT_EQ(property_name(types::thing, props::text, in), "Text");
        EXPECT_EQ(property_name(types::special_thing, props::text, in), "Text") << "declared by a base";
        EXPECT_EQ(property_name(types::thing, 4000000000U, in), "");
        EXPECT_EQ(property_name(types::other, props::number, in), "") << "not a property of this type";
        EXPECT_EQ(property_name(4000000000U, props::text, in), "");
    }
}

TEST_F(object_types, a_user_defined_property_is_known_in_its_model_only) {
    const std::string before = property_name(types::thing, 50000, nullptr);
    meta_property* const made = model->meta_model()
                                    ->find_meta_object(types::thing)
                                    ->add_property(50000, "Colour", data_type::string, "");
    ASSERT_TRUE(made);
    EXPECT_EQ(property_name(types::thing, 50000, model), "Colour");
    EXPECT_EQ(property_name(types::thing, 50000, nullptr), before);
    EXPECT_NE(before, "Colour");
}

// Attributes of types

/// Sets an attribute of a type for the length of a test: types are shared by all tests.
class attribute_for_now {
public:
    attribute_for_now(u32 type, u32 attribute, const abstract_property& value)
        : type_(*framework::instance().application_meta_model()->find_meta_object(type)),
          attribute_(attribute) {
        type_.set_attribute_value(attribute_, value);
    }
    attribute_for_now(const attribute_for_now&) = delete;
    attribute_for_now& operator=(const attribute_for_now&) = delete;
    ~attribute_for_now() { type_.remove_attribute(attribute_); }

private:
    meta_object& type_;
    u32 attribute_;
};

TEST_F(object_types, an_attribute_is_that_of_the_type) {
    constexpr u32 mark = 12;
    const object* const what = make(types::other, "x");
    const object* const stranger = thing("y");
    EXPECT_FALSE(meta_att(what, mark));
    EXPECT_TRUE(bool_meta_attribute(what, mark, true)) << "without a value";
    EXPECT_FALSE(bool_meta_attribute(what, mark, false)) << "without a value";
    for (const bool value : {true, false}) {
        SCOPED_TRACE(value);
        const attribute_for_now set{types::other, mark, flag(value)};
        EXPECT_EQ(as_text(meta_att(what, mark)), value ? "True" : "False");
        EXPECT_EQ(bool_meta_attribute(what, mark, true), value);
        EXPECT_EQ(bool_meta_attribute(what, mark, false), value);
        EXPECT_FALSE(meta_att(stranger, mark));
        EXPECT_TRUE(bool_meta_attribute(stranger, mark, true));
    }
    EXPECT_FALSE(meta_att(what, mark));
}

TEST_F(object_types, nobody_has_no_attributes) {
    EXPECT_FALSE(meta_att(nullptr, attribute_id::name));
    EXPECT_TRUE(bool_meta_attribute(nullptr, 12, true));
    EXPECT_FALSE(bool_meta_attribute(nullptr, 12, false));
}

TEST_F(object_types, an_attribute_of_another_kind_is_no_answer) {
    constexpr u32 mark = 12;
    const object* const what = make(types::other, "x");
    const attribute_for_now set{types::other, mark, number(1)};
    EXPECT_EQ(as_text(meta_att(what, mark)), "1");
    EXPECT_TRUE(bool_meta_attribute(what, mark, true));
    EXPECT_FALSE(bool_meta_attribute(what, mark, false));
}

TEST_F(object_types, every_attribute_is_found) {
    EXPECT_EQ(as_text(meta_att(thing("x"), attribute_id::name)), "Thing");
    EXPECT_FALSE(meta_att(thing("y"), 4000000000U));
}

} // namespace
} // namespace kelm::test
