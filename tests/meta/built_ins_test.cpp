// The built-in attributes and types, row by row.
// What the hooks of these types do is tested with user-defined properties.
#include "support/meta_types.h"

namespace kelm::test {

namespace {

TEST(built_in_attributes, are_those_of_the_table) {
    add_built_in_attributes();
    struct row {
        u32 id;
        const char* name;
        const char* default_value;
        bool inheritable;
    };
    const row rows[] = {
        {0, "Name", "No Name!", true},
        {1, "Definition", "", true},
        {2, "Property Class", "0", true},
        {3, "Generic Object", "True", true},
        {4, "Internal Object/Property", "True", true},
        {5, "Non Persistent Object/Property", "True", true},
        {6, "Property Not Inheritable", "True", true},
        {7, "Property Default Value", nullptr, true},
        {8, "Property Default Value Choices", nullptr, true},
        {9, "Property Must Exist", "True", true},
        {10, "Copy Referenced Object", "True", true},
        {11, "Alternative Name", "No Name!", false},
        {12, "Skip in Transaction Summary", "False", true},
        {13, "Skip in Transaction Summary Unless Local", "False", true},
        {14, "Skip in Compare", "False", true},
        {15, "Deprecated", "False", false},
        {16, "Use in compare even if is incomplete", "False", false},
        {17, "Multiline Property", "False", false},
        {19, "Skip in Compare Other", "False", true},
    };
    for (const row& r : rows) {
        SCOPED_TRACE(r.name);
        const meta_attribute* const it = meta_attributes().find(r.id);
        ASSERT_NE(it, nullptr);
        EXPECT_EQ(it->id(), r.id);
        EXPECT_EQ(it->name(), r.name);
        EXPECT_EQ(it->is_inheritable(), r.inheritable);
        ASSERT_EQ(it->default_value() != nullptr, r.default_value != nullptr);
        if (r.default_value) {
            EXPECT_EQ(it->default_value()->to_string(), r.default_value);
        }
    }
    EXPECT_EQ(meta_attributes().find(18), nullptr);
    EXPECT_NE(dynamic_cast<const property<unsigned>*>(meta_attributes().find(2)->default_value()), nullptr);
    EXPECT_NE(dynamic_cast<const property<std::string>*>(meta_attributes().find(1)->default_value()),
              nullptr);
}

TEST(built_in_attributes, have_no_gap_but_eighteen) {
    add_built_in_attributes();
    ids all;
    meta_attributes().ids(all);
    std::erase_if(all, [](u32 id) { return id > 100; }); // those of other tests
    ids expected;
    for (u32 id = 0; id != 20; ++id)
        if (id != 18) expected.push_back(id);
    EXPECT_EQ(all, expected);
}

class built_in_types : public meta_types {
protected:
    built_in_types() { add_built_in_types(application); }

    meta_object& type(u32 id) { return *application.find_meta_object(id); }
    static ids hooks(const meta_object& of, int kind) {
        std::vector<shared_ptr<semantic>> list;
        ids out;
        if (of.semantics_of_kind(kind, list))
            for (const auto& hook : list) out.push_back(hook->id());
        return out;
    }
};

TEST_F(built_in_types, are_four) {
    EXPECT_EQ(ids_of(application.meta_objects()), (ids{1, 2, 3, 49999}));
    EXPECT_EQ(type(1).name(), "Model");
    EXPECT_EQ(type(2).name(), "Library");
    EXPECT_EQ(type(3).name(), "Generic Object");
    EXPECT_EQ(type(49999).name(), "User Defined Property");
    for (meta_object* it : application.meta_objects()) {
        EXPECT_EQ(it->definition(), "");
        EXPECT_FALSE(it->attribute_value(attribute_id::alternative_name));
        EXPECT_EQ(it->alternative_name(), it->name());
    }
}

TEST_F(built_in_types, derive_from_the_generic_object) {
    EXPECT_TRUE(type(3).is_generic());
    EXPECT_TRUE(type(3).base_types().empty());
    EXPECT_FALSE(type(3).attribute_value(attribute_id::generic_object))
        << "generic is a flag, not the attribute";
    for (const u32 id : {1U, 2U, 49999U}) {
        EXPECT_FALSE(type(id).is_generic());
        EXPECT_EQ(type(id).base_types(), std::vector<meta_object*>{&type(3)});
        EXPECT_TRUE(type(3).is_base_of(id));
    }
}

TEST_F(built_in_types, have_a_name_and_a_definition) {
    EXPECT_EQ(ids_of(type(3).properties()), (ids{1, 2}));
    EXPECT_EQ(type(3).find_property(1)->name(), "Name");
    EXPECT_EQ(type(3).find_property(2)->name(), "Definition");
    for (const u32 id : {1U, 2U}) {
        EXPECT_EQ(type(3).find_property(id)->property_class(), data_type::string);
        EXPECT_FALSE(type(3).find_property(id)->attribute_value(attribute_id::definition));
        EXPECT_EQ(type(2).find_property(id), type(3).find_property(id));
    }
}

TEST_F(built_in_types, models_and_libraries_own_definitions) {
    for (const u32 id : {1U, 2U}) {
        EXPECT_EQ(ids_of(type(id).compositions()), ids{49999});
        EXPECT_EQ(type(id).find_composition(49999)->name(), "User Defined Property");
        EXPECT_EQ(type(id).find_composition(49999)->child_meta_object(), &type(49999));
    }
    EXPECT_TRUE(type(3).compositions().empty());
    EXPECT_TRUE(type(49999).compositions().empty());
}

TEST_F(built_in_types, definitions_have_five_properties_of_their_own) {
    struct row {
        u32 id;
        const char* name;
        u32 data_type;
    };
    const row rows[] = {
        {49999, "Default Value", data_type::string},
        {49998, "Object Types", data_type::vector},
        {49997, "Default Value Choices", data_type::vector},
        {49996, "User Defined Property Id", data_type::integer},
        {49995, "Multiline Value", data_type::boolean},
    };
    EXPECT_EQ(ids_of(type(49999).properties()), (ids{49999, 49998, 49997, 49996, 49995, 1, 2}));
    for (const row& r : rows) {
        SCOPED_TRACE(r.name);
        const meta_property* const it = type(49999).find_property(r.id);
        ASSERT_NE(it, nullptr);
        EXPECT_EQ(it->name(), r.name);
        EXPECT_EQ(it->property_class(), r.data_type);
        EXPECT_TRUE(it->is_user_defined());
    }
}

TEST_F(built_in_types, every_type_inherits_the_hook_behind_reads) {
    for (const u32 id : {1U, 2U, 3U, 49999U})
        EXPECT_EQ(hooks(type(id), post_prop_get_semantic::kind), ids{8}) << id;
    EXPECT_EQ(type(2).find_semantic(8), type(3).find_semantic(8));
}

TEST_F(built_in_types, definitions_have_six_hooks_of_their_own) {
    struct row {
        const char* why;
        int kind;
        u32 id;
    };
    const row rows[] = {
        {"a value was set", post_prop_set_semantic::kind, 2},
        {"a value goes", pre_prop_delete_semantic::kind, 3},
        {"an element goes", pre_prop_delete_vecprop_semantic::kind, 4},
        {"an element has come", post_prop_insert_vecprop_semantic::kind, 5},
        {"elements were reordered", post_prop_change_vecprop_elem_order_semantic::kind, 6},
        {"an element was set", post_prop_set_vecprop_semantic::kind, 7},
    };
    for (const row& r : rows) {
        SCOPED_TRACE(r.why);
        EXPECT_EQ(hooks(type(49999), r.kind), ids{r.id});
        EXPECT_EQ(type(1).find_semantic(r.id), nullptr);
    }
}

TEST_F(built_in_types, deprecation_of_a_base_does_not_concern_derived_types) {
    meta_object& base = type(3);
    base.set_attribute_value(attribute_id::deprecated, property<bool>(true));
    base.set_attribute_value(attribute_id::skip_in_compare, property<bool>(true));
    EXPECT_EQ(text_of(type(2), attribute_id::deprecated), "none");
    EXPECT_EQ(text_of(type(2), attribute_id::skip_in_compare), "True");
}

} // namespace

} // namespace kelm::test
