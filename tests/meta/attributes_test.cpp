// Values of attributes: set, inherited, marked; and the table of attributes.
// What the built-in attributes are is in built_ins_test.cpp.
#include "support/meta_types.h"

namespace kelm::test {

namespace {

class attributes_of_meta_things : public meta_types {};

// Of the tests alone, so that none of them disturbs another.
constexpr u32 passing = 9001;
constexpr u32 staying = 9002;
constexpr u32 unknown = 9999;

void register_test_attributes() {
    meta_attributes().add(passing, "Passing", nullptr, true);
    meta_attributes().add(staying, "Staying", nullptr, false);
}

TEST_F(attributes_of_meta_things, the_table_finds_what_is_registered) {
    meta_attribute_table table;
    EXPECT_EQ(table.find(5), nullptr);
    table.add(5, "Five", std::make_unique<property<int>>(55), true);
    table.add(3, "Three", nullptr, false);
    ASSERT_NE(table.find(5), nullptr);
    EXPECT_EQ(table.find(5)->id(), 5U);
    EXPECT_EQ(table.find(5)->name(), "Five");
    EXPECT_EQ(table.find(5)->default_value()->to_string(), "55");
    EXPECT_TRUE(table.find(5)->is_inheritable());
    EXPECT_EQ(table.find(3)->default_value(), nullptr);
    EXPECT_FALSE(table.find(3)->is_inheritable());
    EXPECT_FALSE(table.is_inheritable(4)) << "an unknown attribute does not pass";
}

TEST_F(attributes_of_meta_things, the_table_appends_its_ids_ascending) {
    meta_attribute_table table;
    for (const u32 id : {7U, 2U, 900U}) table.add(id, "", nullptr, true);
    ids out{1};
    table.ids(out);
    EXPECT_EQ(out, (ids{1, 2, 7, 900}));
}

TEST_F(attributes_of_meta_things, a_replaced_row_lives_on_for_those_who_hold_it) {
    meta_attribute_table table;
    table.add(5, "old", std::make_unique<property<int>>(1), true);
    const meta_attribute* const old = table.find(5);
    table.add(5, "new", nullptr, false);
    EXPECT_EQ(table.find(5)->name(), "new");
    EXPECT_EQ(old->name(), "old");
    EXPECT_EQ(old->default_value()->to_string(), "1");
    ids out;
    table.ids(out);
    EXPECT_EQ(out, ids{5});
}

TEST_F(attributes_of_meta_things, reading_gives_a_private_copy) {
    meta_object& type = add_type(100);
    type.set_attribute_value(attribute_id::deprecated, property<bool>(true));
    const value_ptr copy = type.attribute_value(attribute_id::deprecated);
    copy->from_string("False");
    EXPECT_EQ(text_of(type, attribute_id::deprecated), "True");
}

TEST_F(attributes_of_meta_things, a_new_value_takes_the_place_of_the_old) {
    meta_object& type = add_type(100);
    type.set_attribute_value(attribute_id::definition, property<std::string>("one"));
    type.set_attribute_value(attribute_id::definition, property<int>(2));
    EXPECT_EQ(type.definition(), "2") << "the kind of a value is not checked";
}

TEST_F(attributes_of_meta_things, a_thing_can_be_given_its_own_value) {
    meta_object& type = add_type(100);
    const std::string text = "longer than any string keeps inside itself";
    type.set_attribute_value(attribute_id::definition, property<std::string>(text));
    const abstract_property* const own = base_of(type).find_attribute(attribute_id::definition);
    type.set_attribute_value(attribute_id::definition, *own);
    EXPECT_EQ(type.definition(), text);
}

TEST_F(attributes_of_meta_things, an_attribute_passes_to_derived_things_when_it_is_registered_so) {
    register_test_attributes();
    struct row {
        const char* why;
        u32 attribute;
        const char* seen;
    };
    const row rows[] = {
        {"inheritable", passing, "7"},
        {"not inheritable", staying, "none"},
        {"unknown to the table", unknown, "none"},
        {"built in, inheritable", attribute_id::skip_in_compare, "7"},
        {"built in, not inheritable", attribute_id::deprecated, "none"},
    };
    meta_object& base = add_type(100);
    meta_object& derived = add_type_of(base, 101);
    meta_object& grandchild = add_type_of(derived, 102);
    for (const row& r : rows) {
        SCOPED_TRACE(r.why);
        base.set_attribute_value(r.attribute, property<int>(7));
        EXPECT_EQ(text_of(base, r.attribute), "7") << "an own value is always seen";
        EXPECT_EQ(text_of(derived, r.attribute), r.seen);
        EXPECT_EQ(text_of(grandchild, r.attribute), r.seen);
    }
}

TEST_F(attributes_of_meta_things, the_first_base_wins_depth_first) {
    register_test_attributes();
    meta_object& above_first = add_type(100);
    meta_object& first = add_type_of(above_first, 101);
    meta_object& second = add_type(102);
    meta_object& derived = add_type_of(first, 103);
    derived.add_base_type(&second);
    second.set_attribute_value(passing, property<int>(2));
    EXPECT_EQ(text_of(derived, passing), "2");
    above_first.set_attribute_value(passing, property<int>(1));
    EXPECT_EQ(text_of(derived, passing), "1") << "what is above the first base comes before the second";
    derived.set_attribute_value(passing, property<int>(0));
    EXPECT_EQ(text_of(derived, passing), "0");
}

TEST_F(attributes_of_meta_things, removing_takes_own_values_only) {
    register_test_attributes();
    meta_object& base = add_type(100);
    meta_object& derived = add_type_of(base, 101);
    base.set_attribute_value(passing, property<int>(1));
    EXPECT_FALSE(derived.remove_attribute(passing));
    derived.set_attribute_value(passing, property<int>(2));
    EXPECT_TRUE(derived.remove_attribute(passing));
    EXPECT_EQ(text_of(derived, passing), "1");
    EXPECT_FALSE(derived.remove_attribute(passing));
}

TEST_F(attributes_of_meta_things, the_map_holds_registered_attributes_with_a_value_also_inherited) {
    register_test_attributes();
    meta_object& base = add_type(100, "Base");
    meta_object& derived = add_type_of(base, 101, "Derived");
    base.set_attribute_value(passing, property<int>(1));
    base.set_attribute_value(staying, property<int>(2));
    derived.set_attribute_value(unknown, property<int>(3));
    ids seen;
    for (const auto& [attribute, value] : derived.attributes()) {
        ASSERT_TRUE(value);
        seen.push_back(attribute);
    }
    EXPECT_EQ(seen, (ids{attribute_id::name, passing}));
    EXPECT_EQ(derived.attributes().at(0)->to_string(), "Derived");
    EXPECT_EQ(text_of(derived, unknown), "3");
}

TEST_F(attributes_of_meta_things, marking_stores_the_default_of_the_attribute) {
    meta_property& it = *add_type(100).add_property(1000);
    meta_base& thing = base_of(it);
    thing.set_attribute_default(attribute_id::internal);
    EXPECT_EQ(text_of(it, attribute_id::internal), "True");
    thing.set_attribute_default(attribute_id::skip_in_compare);
    EXPECT_EQ(text_of(it, attribute_id::skip_in_compare), "False");
}

TEST_F(attributes_of_meta_things, marking_without_a_default_changes_nothing) {
    meta_property& it = *add_type(100).add_property(1000);
    meta_base& thing = base_of(it);
    thing.set_attribute_default(attribute_id::default_value);
    thing.set_attribute_default(unknown);
    EXPECT_TRUE(it.attributes().empty());
    it.set_attribute_value(attribute_id::default_value, property<int>(3));
    thing.set_attribute_default(attribute_id::default_value);
    EXPECT_EQ(text_of(it, attribute_id::default_value), "3");
}

TEST_F(attributes_of_meta_things, a_default_is_never_what_reading_falls_back_to) {
    meta_property& it = *add_type(100).add_property(1000);
    EXPECT_EQ(it.attribute_value(attribute_id::internal), nullptr);
    EXPECT_EQ(it.attribute_value(attribute_id::skip_in_compare), nullptr);
}

TEST_F(attributes_of_meta_things, only_a_thing_without_the_attribute_has_no_name) {
    meta_object& type = add_type(100, "");
    EXPECT_EQ(type.name(), "") << "an empty name is a name";
    EXPECT_TRUE(type.remove_attribute(attribute_id::name));
    EXPECT_EQ(type.name(), "No Name!");
    EXPECT_EQ(type.definition(), "");
    EXPECT_EQ(type.add_property(1000)->name(), "No Name!");
}

TEST_F(attributes_of_meta_things, the_alternative_name_falls_back_to_the_name) {
    EXPECT_EQ(add_type(100, "Table").alternative_name(), "Table");
    meta_object& named = *application.add_meta_object(101, "Table", "a relation", "Tabelle");
    EXPECT_EQ(named.alternative_name(), "Tabelle");
    EXPECT_EQ(named.definition(), "a relation");
    EXPECT_EQ(add_type_of(named, 102, "Derived").alternative_name(), "Derived") << "it does not pass on";
}

TEST_F(attributes_of_meta_things, properties_and_compositions_take_bases_of_their_own_kind) {
    meta_property& base = *add_type(100).add_property(1, "Base", data_type::integer, "");
    meta_property& derived = *add_type(101).add_property(2);
    derived.add_base(&base);
    derived.add_base(nullptr);
    EXPECT_EQ(derived.bases(), std::vector<meta_property*>{&base});
    EXPECT_EQ(derived.name(), "Base");
    EXPECT_EQ(derived.property_class(), data_type::integer);
    derived.remove_base(&base);
    derived.remove_base(&base);
    EXPECT_TRUE(derived.bases().empty());
    EXPECT_EQ(derived.name(), "No Name!");
}

TEST_F(attributes_of_meta_things, a_base_added_twice_is_observed_once_until_its_last_entry_goes) {
    meta_property& base = *add_type(100).add_property(1);
    meta_property& derived = *add_type(101).add_property(2);
    derived.add_base(&base);
    derived.add_base(&base);
    EXPECT_EQ(derived.bases().size(), 2U);
    EXPECT_EQ(base_of(base).observers().size(), 1U);
    derived.remove_base(&base);
    EXPECT_EQ(derived.bases().size(), 1U);
    EXPECT_TRUE(base_of(base).is_attached(&base_of(derived)));
    derived.remove_base(&base);
    EXPECT_FALSE(base_of(base).is_attached(&base_of(derived)));
}

TEST_F(attributes_of_meta_things, a_base_that_would_close_a_circle_is_not_added) {
    meta_object& type = add_type(100);
    meta_property& a = *type.add_property(1);
    meta_property& b = *type.add_property(2);
    meta_property& c = *type.add_property(3);
    b.add_base(&a);
    c.add_base(&b);
    a.add_base(&a);
    a.add_base(&c);
    EXPECT_TRUE(a.bases().empty());
    EXPECT_EQ(text_of(c, attribute_id::internal), "none");
}

TEST_F(attributes_of_meta_things, a_base_that_dies_takes_itself_out) {
    meta_object& type = add_type(100);
    meta_property& base = *type.add_property(1, "Base", data_type::integer, "");
    meta_property& derived = *add_type(101).add_property(2);
    derived.add_base(&base);
    ASSERT_TRUE(dynamic_cast<meta_object_base&>(type).remove_property(1));
    EXPECT_TRUE(derived.bases().empty());
    EXPECT_EQ(derived.name(), "No Name!");
    EXPECT_TRUE(base_of(derived).subjects().empty());
}

} // namespace

} // namespace kelm::test
