// Properties of types: declaring, finding, hiding, overriding, removing.
// What bases pass on in general is in inheritance_of_types_test.cpp.
#include "support/meta_types.h"

#include <limits>

namespace kelm::test {

namespace {

class properties_of_types : public meta_types {
protected:
    static meta_object_base& inside(meta_object& type) { return dynamic_cast<meta_object_base&>(type); }
};

TEST_F(properties_of_types, a_bare_property_has_no_attributes) {
    meta_property* const it = add_type(100).add_property(1000);
    ASSERT_NE(it, nullptr);
    EXPECT_EQ(it->id(), 1000U);
    EXPECT_TRUE(it->attributes().empty());
    EXPECT_EQ(it->name(), "No Name!");
    EXPECT_EQ(it->definition(), "");
    EXPECT_EQ(it->property_class(), data_type::none);
}

TEST_F(properties_of_types, a_described_property_has_its_three_attributes) {
    meta_property* const it = add_type(100).add_property(1000, "Length", data_type::integer, "in bytes");
    ASSERT_NE(it, nullptr);
    EXPECT_EQ(it->name(), "Length");
    EXPECT_EQ(it->definition(), "in bytes");
    EXPECT_EQ(it->property_class(), data_type::integer);
    const value_ptr stored = it->attribute_value(attribute_id::property_class);
    EXPECT_NE(dynamic_cast<const property<int>*>(stored.get()), nullptr)
        << "the class is stored as an integer";
}

TEST_F(properties_of_types, an_empty_definition_is_not_stored) {
    meta_property* const it = add_type(100).add_property(1000, "", data_type::string, "");
    EXPECT_FALSE(it->attribute_value(attribute_id::definition));
    EXPECT_TRUE(it->attribute_value(attribute_id::name)) << "an empty name is";
    EXPECT_EQ(it->name(), "");
}

TEST_F(properties_of_types, an_id_is_declared_once) {
    meta_object& type = add_type(100);
    meta_property* const first = type.add_property(1000, "first", data_type::string, "");
    EXPECT_EQ(type.add_property(1000), nullptr);
    EXPECT_EQ(type.add_property(1000, "second", data_type::string, ""), nullptr);
    EXPECT_EQ(type.find_property(1000), first);
    EXPECT_EQ(type.properties().size(), 1U);
}

TEST_F(properties_of_types, properties_stand_in_the_order_of_declaration) {
    meta_object& type = add_type(100);
    for (const u32 id : {5U, 2U, 9U, 1U}) type.add_property(id);
    EXPECT_EQ(ids_of(type.properties()), (ids{5, 2, 9, 1}));
    EXPECT_EQ(ids_of(inside(type).properties_ref()), (ids{5, 2, 9, 1}));
}

TEST_F(properties_of_types, each_of_many_is_found_by_id) {
    meta_object& base = add_type(100);
    meta_object& type = add_type_of(base, 101);
    for (u32 i = 0; i != 200; ++i) (i % 3 ? base : type).add_property(i * 7919U % 1009U);
    for (u32 i = 0; i != 200; ++i) {
        const u32 id = i * 7919U % 1009U;
        ASSERT_NE(type.find_property(id), nullptr) << id;
        EXPECT_EQ(type.find_property(id)->id(), id);
        EXPECT_TRUE(type.has_property(id));
    }
    EXPECT_EQ(type.find_property(std::numeric_limits<u32>::max()), nullptr);
    EXPECT_FALSE(type.has_property(2000));
}

TEST_F(properties_of_types, a_name_is_found_exactly_and_the_first_of_equals) {
    meta_object& base = add_type(100);
    meta_object& type = add_type_of(base, 101);
    base.add_property(1, "Length", data_type::integer, "");
    meta_property* const own = type.add_property(2, "Length", data_type::integer, "");
    EXPECT_EQ(type.find_property("Length"), own);
    EXPECT_TRUE(type.has_property("Length"));
    EXPECT_EQ(type.find_property("length"), nullptr);
    EXPECT_FALSE(type.has_property("length"));
    EXPECT_FALSE(type.has_property(""));
}

TEST_F(properties_of_types, an_own_declaration_hides_the_inherited_one_in_its_own_place) {
    meta_object& base = add_type(100);
    base.add_property(1, "base one", data_type::string, "");
    base.add_property(2, "base two", data_type::string, "");
    meta_object& type = add_type_of(base, 101);
    type.add_property(3);
    meta_property* const own = type.add_property(1, "own one", data_type::integer, "");
    ASSERT_NE(own, nullptr) << "only what is declared here counts";
    EXPECT_EQ(ids_of(type.properties()), (ids{3, 1, 2}));
    EXPECT_EQ(type.properties()[1], own);
    EXPECT_EQ(type.find_property(1), own);
    EXPECT_EQ(type.find_property("base one"), nullptr);
    EXPECT_TRUE(own->bases().empty()) << "hiding is not overriding";
}

TEST_F(properties_of_types, overriding_inherits_the_attributes) {
    meta_object& base = add_type(100);
    meta_property* const above = base.add_property(1, "Length", data_type::integer, "in bytes");
    meta_object& type = add_type_of(base, 101);
    meta_property* const own = type.override_property(1);
    ASSERT_NE(own, nullptr);
    EXPECT_NE(own, above);
    EXPECT_EQ(own->bases(), std::vector<meta_property*>{above});
    EXPECT_EQ(own->name(), "Length");
    EXPECT_EQ(own->property_class(), data_type::integer);
    own->set_attribute_value(attribute_id::name, property<std::string>("Size"));
    EXPECT_EQ(type.find_property("Size"), own);
    EXPECT_EQ(base.find_property("Length"), above);
}

TEST_F(properties_of_types, overriding_needs_an_inherited_property) {
    meta_object& type = add_type(100);
    listener hears(type);
    EXPECT_EQ(type.override_property(1), nullptr);
    EXPECT_EQ(hears.told, 0);
    meta_property* const own = type.add_property(1);
    EXPECT_EQ(type.override_property(1), nullptr);
    EXPECT_TRUE(own->bases().empty());
    EXPECT_EQ(type.properties().size(), 1U);
}

TEST_F(properties_of_types, own_properties_can_be_removed_and_inherited_ones_not) {
    meta_object& base = add_type(100);
    meta_property* const above = base.add_property(1);
    meta_object& type = add_type_of(base, 101);
    EXPECT_FALSE(inside(type).remove_property(1));
    EXPECT_EQ(type.find_property(1), above);
    type.add_property(1);
    type.add_property(2);
    EXPECT_TRUE(inside(type).remove_property(1));
    EXPECT_EQ(type.find_property(1), above) << "the inherited one is seen again";
    EXPECT_EQ(ids_of(type.properties()), (ids{2, 1}));
    EXPECT_FALSE(inside(type).remove_property(77));
}

TEST_F(properties_of_types, an_override_survives_the_removal_of_what_it_overrides) {
    meta_object& base = add_type(100);
    base.add_property(1, "Length", data_type::integer, "");
    meta_object& type = add_type_of(base, 101);
    meta_property* const own = type.override_property(1);
    EXPECT_TRUE(inside(base).remove_property(1));
    EXPECT_EQ(type.find_property(1), own);
    EXPECT_EQ(own->name(), "No Name!");
    EXPECT_TRUE(own->bases().empty());
}

TEST_F(properties_of_types, a_property_made_elsewhere_gets_its_type_as_owner) {
    meta_object& type = add_type(100);
    auto made = std::make_unique<meta_property_impl>(1);
    meta_property_impl* const it = made.get();
    EXPECT_EQ(it->owner(), nullptr);
    EXPECT_EQ(inside(type).add_existing_property(std::move(made)), it);
    EXPECT_EQ(it->owner(), &type);
    EXPECT_EQ(type.find_property(1), it);
    EXPECT_EQ(inside(type).add_existing_property(std::make_unique<meta_property_impl>(1)), nullptr);
    EXPECT_EQ(type.find_property(1), it);
}

TEST_F(properties_of_types, a_property_that_is_given_no_id_has_the_last_of_sixteen_bits) {
    EXPECT_EQ(meta_property_impl{}.id(), 65535U);
}

TEST_F(properties_of_types, the_class_is_read_from_whole_numbers) {
    meta_property& it = *add_type(100).add_property(1);
    it.set_attribute_value(attribute_id::property_class, property<int>(6));
    EXPECT_EQ(it.property_class(), 6U);
    it.set_attribute_value(attribute_id::property_class, property<unsigned>(1001U));
    EXPECT_EQ(it.property_class(), 1001U);
    it.set_attribute_value(attribute_id::property_class, property<long>(8));
    EXPECT_EQ(it.property_class(), 8U);
    it.set_attribute_value(attribute_id::property_class, property<std::string>("6"));
    EXPECT_EQ(it.property_class(), 0U);
}

TEST_F(properties_of_types, the_last_ids_are_user_defined) {
    struct row {
        const char* why;
        u32 id;
        bool is_user_defined;
    };
    const row rows[] = {
        {"an ordinary one", 1, false},
        {"just before the properties of definitions", 49994, false},
        {"the first property of definitions", 49995, true},
        {"the last property of definitions", 49999, true},
        {"the first of users", 50000, true},
    };
    meta_object& type = add_type(100);
    for (const row& r : rows) {
        SCOPED_TRACE(r.why);
        EXPECT_EQ(type.add_property(r.id)->is_user_defined(), r.is_user_defined);
    }
}

TEST_F(properties_of_types, a_change_is_told_before_it_is_tried_also_when_it_is_refused) {
    meta_object& type = add_type(100);
    type.add_property(1);
    listener hears(type);
    std::size_t seen = 0;
    hears.meanwhile = [&] { seen = type.properties().size(); };
    type.add_property(2);
    EXPECT_EQ(hears.told, 1);
    EXPECT_EQ(seen, 1U) << "it was told before the change";
    EXPECT_EQ(type.properties().size(), 2U) << "what was read meanwhile is forgotten";
    EXPECT_EQ(type.add_property(2), nullptr);
    EXPECT_EQ(hears.told, 2);
    EXPECT_FALSE(inside(type).remove_property(77));
    EXPECT_EQ(hears.told, 3);
    EXPECT_TRUE(inside(type).remove_property(1));
    EXPECT_EQ(hears.told, 4);
    EXPECT_EQ(seen, 2U);
    EXPECT_EQ(ids_of(type.properties()), ids{2});
    EXPECT_EQ(hears.told_a_message, 0);
}

TEST_F(properties_of_types, derived_types_never_keep_what_was_read_too_early) {
    meta_object& base = add_type(100);
    meta_object& type = add_type_of(base, 101);
    listener hears(type);
    hears.meanwhile = [&] { type.find_property(1); };
    base.add_property(1);
    base.add_property(2);
    EXPECT_EQ(ids_of(type.properties()), (ids{1, 2}));
    EXPECT_TRUE(inside(base).remove_property(1));
    EXPECT_EQ(ids_of(type.properties()), ids{2});
    EXPECT_EQ(hears.told, 3);
}

TEST_F(properties_of_types, a_listener_that_refuses_keeps_no_derived_type_out_of_date) {
    meta_object& base = add_type(100);
    listener hears(base);
    hears.answer = false;
    meta_object& type = add_type_of(base, 101);
    listener also_hears(base);
    also_hears.answer = false;
    EXPECT_FALSE(type.has_property(1));
    type.add_property(5);
    EXPECT_EQ(type.properties().size(), 1U);
    base.add_property(1);
    EXPECT_TRUE(type.has_property(1));
}

} // namespace

} // namespace kelm::test
