// How a model shows the types of the application: read through, copied when first changed.
// The types themselves are tested beside this file.
#include "meta/meta_object_proxy.h"
#include "support/meta_types.h"

namespace kelm::test {

namespace {

class proxies : public meta_types {
protected:
    proxies() {
        base.add_property(1, "Name", data_type::string, "");
        table.add_property(20, "Rows", data_type::integer, "");
        table.add_composition(31);
        table.add_composition(30, "Key", "finds rows");
        table.set_attribute_value(attribute_id::deprecated, property<bool>(true));
        EXPECT_TRUE(table.add_semantic(new create_probe(5)));
        application.set_version(7);
        application.set_minor_version(3);
    }

    static meta_object_base& inside(meta_object& type) { return dynamic_cast<meta_object_base&>(type); }
    static bool is_private(meta_object& type) { return dynamic_cast<meta_object_proxy&>(type).owns_target(); }

    meta_object& base = add_type(10, "Base");
    meta_object& table = [this]() -> meta_object& {
        meta_object& made = *application.add_meta_object(11, "Table", "a relation", "Tabelle");
        made.add_base_type(&base);
        return made;
    }();
    meta_object& key = add_type(30, "Index");
    meta_object& column = *application.add_meta_object(31, "Column", "", "Spalte");
};

TEST_F(proxies, an_instance_shows_every_type_of_the_application) {
    meta_model_impl instance(application);
    EXPECT_EQ(instance.id(), 1U);
    EXPECT_EQ(instance.name(), "Instance Meta Model");
    EXPECT_EQ(instance.definition(), "");
    EXPECT_EQ(instance.version(), 7U);
    EXPECT_EQ(instance.minor_version(), 3U);
    EXPECT_EQ(instance.application_meta_model(), &application);
    EXPECT_EQ(application.application_meta_model(), nullptr);
    EXPECT_EQ(ids_of(instance.meta_objects()), ids_of(application.meta_objects()));
    meta_object* const shown = instance.find_meta_object(11);
    EXPECT_NE(shown, &table);
    EXPECT_EQ(instance.find_meta_object("Table"), shown);
    EXPECT_EQ(inside(*shown).owner_meta_model(), &instance);
    EXPECT_EQ(inside(table).owner_meta_model(), &application);
}

TEST_F(proxies, the_meta_model_of_a_model_shows_the_types_of_the_process) {
    const meta_model_impl instance{instance_of_application{}};
    EXPECT_EQ(instance.application_meta_model(), &kelm::application_meta_model());
    EXPECT_EQ(instance.meta_objects().size(), kelm::application_meta_model().meta_objects().size());
    EXPECT_EQ(kelm::application_meta_model().id(), 0U);
    EXPECT_EQ(kelm::application_meta_model().name(), "Application Meta Model");
    EXPECT_EQ(kelm::application_meta_model().definition(), "");
    EXPECT_GE(kelm::application_meta_model().meta_objects_ref().capacity(), 100U);
}

TEST_F(proxies, reads_pass_through) {
    meta_model_impl instance(application);
    table.add_related_type(77);
    table.exclude_property(20);
    table.exclude_composition(30);
    table.exclude_semantic(5);
    meta_object& shown = *instance.find_meta_object(11);
    EXPECT_EQ(shown.id(), 11U);
    EXPECT_EQ(shown.name(), "Table");
    EXPECT_EQ(shown.alternative_name(), "Tabelle");
    EXPECT_EQ(shown.definition(), "a relation");
    EXPECT_FALSE(shown.is_generic());
    EXPECT_FALSE(shown.is_user_defined());
    EXPECT_EQ(shown.properties(), table.properties());
    EXPECT_EQ(&inside(shown).properties_ref(), &inside(table).properties_ref());
    EXPECT_EQ(shown.find_property(20), table.find_property(20));
    EXPECT_EQ(shown.find_property("Name"), base.find_property(1));
    EXPECT_TRUE(shown.has_property(1));
    EXPECT_TRUE(shown.has_property("Rows"));
    EXPECT_EQ(text_of(shown, attribute_id::deprecated), "True");
    EXPECT_EQ(inside(shown).find_attribute(attribute_id::name),
              inside(table).find_attribute(attribute_id::name));
    EXPECT_EQ(shown.attributes().size(), table.attributes().size());
    EXPECT_EQ(shown.find_semantic(5), table.find_semantic(5));
    std::vector<shared_ptr<semantic>> hooks;
    EXPECT_TRUE(shown.semantics_of_kind(obj_create_semantic::kind, hooks));
    EXPECT_EQ(inside(shown).merged_semantics(), inside(table).merged_semantics());
    EXPECT_EQ(shown.base_types(), std::vector<meta_object*>{&base});
    EXPECT_TRUE(shown.has_base_type(10, false));
    EXPECT_TRUE(instance.find_meta_object(10)->is_base_of(11));
    EXPECT_EQ(shown.related_types(), ids{77});
    EXPECT_EQ(inside(shown).related_types_ref(), ids{77});
    EXPECT_TRUE(shown.has_related_type(77));
    EXPECT_TRUE(shown.is_property_excluded(20));
    EXPECT_TRUE(shown.is_composition_excluded(30));
    EXPECT_TRUE(shown.is_child_type_excluded(30));
    EXPECT_TRUE(shown.is_semantic_excluded(5));
}

TEST_F(proxies, what_a_model_may_not_change_does_nothing) {
    meta_model_impl instance(application);
    meta_object& shown = *instance.find_meta_object(11);
    shown.set_generic();
    EXPECT_EQ(shown.add_composition(10), nullptr);
    EXPECT_EQ(shown.add_composition(10, "name", ""), nullptr);
    EXPECT_EQ(shown.add_child_type(31), nullptr) << "also one that the type accepts";
    EXPECT_EQ(shown.add_child_type(10, "name", ""), nullptr);
    shown.set_attribute_value(attribute_id::name, property<std::string>("changed"));
    EXPECT_FALSE(shown.remove_attribute(attribute_id::name));
    create_probe hook(9);
    EXPECT_FALSE(shown.add_semantic(&hook));
    shown.add_base_type(&key);
    shown.remove_base_type(&base);
    shown.add_related_type(77);
    shown.exclude_composition(31);
    shown.exclude_child_type(31);
    shown.exclude_property(20);
    shown.exclude_semantic(5);

    EXPECT_FALSE(is_private(shown));
    EXPECT_FALSE(table.is_generic());
    EXPECT_FALSE(table.has_composition(10));
    EXPECT_EQ(table.name(), "Table");
    EXPECT_EQ(table.find_semantic(9), nullptr);
    EXPECT_EQ(table.base_types(), std::vector<meta_object*>{&base});
    EXPECT_TRUE(table.related_types().empty());
    EXPECT_FALSE(table.is_composition_excluded(31));
    EXPECT_FALSE(table.is_property_excluded(20));
    EXPECT_FALSE(table.is_semantic_excluded(5));
}

TEST_F(proxies, compositions_are_copies_ascending_by_id) {
    meta_model_impl instance(application);
    meta_object& shown = *instance.find_meta_object(11);
    EXPECT_EQ(ids_of(table.compositions()), (ids{31, 30}));
    EXPECT_EQ(ids_of(shown.compositions()), (ids{30, 31}));
    EXPECT_EQ(shown.child_types(), shown.compositions());
    EXPECT_EQ(inside(shown).compositions_ref(), shown.compositions());
    meta_composition* const keys = shown.find_composition(30);
    ASSERT_NE(keys, nullptr);
    EXPECT_NE(keys, table.find_composition(30));
    EXPECT_EQ(keys->bases(), std::vector<meta_composition*>{table.find_composition(30)});
    EXPECT_EQ(shown.find_composition("Key"), keys);
    EXPECT_EQ(shown.find_composition_by_alternative_name("Spalte"), shown.find_composition(31));
    EXPECT_EQ(shown.find_child_type("Column"), shown.find_composition(31));
    EXPECT_EQ(shown.find_composition(999), nullptr);
    EXPECT_EQ(shown.find_composition("Index"), nullptr);
}

TEST_F(proxies, compositions_keep_their_names_and_lead_to_the_types_of_the_model) {
    meta_model_impl instance(application);
    meta_object& shown = *instance.find_meta_object(11);
    EXPECT_EQ(shown.find_composition(30)->name(), "Key");
    EXPECT_EQ(shown.find_composition(30)->definition(), "finds rows");
    EXPECT_EQ(shown.find_composition(31)->name(), "Column");
    EXPECT_EQ(shown.find_composition(31)->alternative_name(), "Spalte");
    EXPECT_EQ(shown.find_composition(31)->child_meta_object(), instance.find_meta_object(31));
    EXPECT_EQ(table.find_composition(31)->child_meta_object(), &column);
}

TEST_F(proxies, keeps_an_alternative_name_of_a_composition_from_showing_in_a_model) {
    meta_model_impl instance(application);
    for (const u32 child : {30U, 31U})
        table.find_composition(child)->set_attribute_value(attribute_id::alternative_name,
                                                           property<std::string>("Own"));
    EXPECT_EQ(table.find_composition(30)->alternative_name(), "Own");
    meta_object& shown = *instance.find_meta_object(11);
    EXPECT_EQ(shown.find_composition(30)->alternative_name(), "Key") << "bases do not pass it on";
    EXPECT_EQ(shown.find_composition(31)->alternative_name(), "Spalte") << "that of the child type";
    EXPECT_EQ(shown.find_composition_by_alternative_name("Own"), nullptr);
}

TEST_F(proxies, versions_are_taken_when_an_instance_is_made) {
    meta_model_impl instance(application);
    application.set_version(8);
    application.set_minor_version(4);
    EXPECT_EQ(instance.version(), 7U);
    EXPECT_EQ(instance.minor_version(), 3U);
    instance.set_version(1);
    EXPECT_EQ(application.version(), 8U);
}

TEST_F(proxies, has_composition_asks_the_application_and_find_composition_the_copies) {
    meta_model_impl instance(application);
    meta_object& shown = *instance.find_meta_object(11);
    EXPECT_TRUE(shown.has_composition(31));
    EXPECT_TRUE(shown.has_child_type("Key"));
    shown.find_composition(30)->set_attribute_value(attribute_id::name, property<std::string>("Local"));
    EXPECT_NE(shown.find_composition("Local"), nullptr);
    EXPECT_FALSE(shown.has_composition("Local"));
    EXPECT_TRUE(shown.has_composition("Key"));
    EXPECT_EQ(shown.find_composition("Key"), nullptr);
}

TEST_F(proxies, copies_of_compositions_are_made_anew_after_a_change) {
    meta_model_impl instance(application);
    meta_object& shown = *instance.find_meta_object(11);
    shown.find_composition(30)->set_attribute_value(attribute_id::name, property<std::string>("Local"));
    EXPECT_EQ(shown.find_composition(30), shown.find_composition(30));
    base.add_composition(10);
    EXPECT_EQ(ids_of(shown.compositions()), (ids{10, 30, 31}));
    EXPECT_EQ(shown.find_composition(30)->name(), "Key") << "it is another copy";
    meta_object& without = *instance.find_meta_object(31);
    EXPECT_TRUE(without.compositions().empty());
}

TEST_F(proxies, the_first_new_property_makes_the_type_private_once) {
    meta_model_impl instance(application);
    meta_model_impl other(application);
    meta_object& shown = *instance.find_meta_object(11);
    EXPECT_FALSE(is_private(shown));
    meta_property* const added = shown.add_property(50001, "Mine", data_type::string, "");
    ASSERT_NE(added, nullptr);
    EXPECT_TRUE(is_private(shown));
    EXPECT_EQ(dynamic_cast<meta_property_impl&>(*added).owner()->base_types(),
              std::vector<meta_object*>{&table});
    const std::vector<meta_object*> bases = shown.base_types();
    EXPECT_EQ(bases, std::vector<meta_object*>{&table});
    EXPECT_NE(shown.add_property(50002), nullptr);
    EXPECT_EQ(shown.base_types(), bases) << "there is no copy of the copy";
    EXPECT_EQ(ids_of(shown.properties()), (ids{50001, 50002, 20, 1}));

    EXPECT_EQ(instance.find_meta_object(11), &shown);
    EXPECT_FALSE(table.has_property(50001));
    EXPECT_FALSE(other.find_meta_object(11)->has_property("Mine"));
    EXPECT_FALSE(is_private(*other.find_meta_object(11)));
}

TEST_F(proxies, derived_types_of_a_model_do_not_see_its_private_properties) {
    meta_model_impl instance(application);
    instance.find_meta_object(10)->add_property(50001);
    EXPECT_FALSE(instance.find_meta_object(11)->has_property(50001));
}

TEST_F(proxies, a_private_type_reads_as_before) {
    meta_model_impl instance(application);
    table.set_generic();
    meta_object& shown = *instance.find_meta_object(11);
    const value_map before = shown.attributes();
    shown.add_property(50001);
    EXPECT_EQ(shown.id(), 11U);
    EXPECT_EQ(shown.name(), "Table");
    EXPECT_EQ(shown.definition(), "a relation");
    EXPECT_EQ(shown.alternative_name(), "Tabelle");
    EXPECT_TRUE(shown.is_generic());
    const value_map after = shown.attributes();
    ASSERT_EQ(after.size(), before.size());
    for (const auto& [attribute, value] : before)
        EXPECT_TRUE(after.at(attribute)->equals(value.get())) << attribute;
    EXPECT_EQ(text_of(shown, attribute_id::deprecated), "True") << "also what bases do not pass on";
    EXPECT_EQ(shown.find_semantic(5), table.find_semantic(5));
    EXPECT_EQ(ids_of(shown.compositions()), (ids{30, 31}));
    EXPECT_EQ(shown.find_composition(31)->child_meta_object(), instance.find_meta_object(31));
    EXPECT_EQ(inside(shown).owner_meta_model(), &instance);
    EXPECT_EQ(shown.add_composition(10), nullptr) << "it is still the model's view";
}

TEST_F(proxies, an_id_that_the_application_declares_can_be_declared_once_more) {
    meta_model_impl instance(application);
    meta_object& shown = *instance.find_meta_object(11);
    meta_property* const own = shown.add_property(20);
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(shown.find_property(20), own);
    EXPECT_EQ(shown.add_property(20), nullptr);
    EXPECT_NE(table.find_property(20), own);
}

TEST_F(proxies, even_a_refused_change_makes_the_type_private) {
    struct row {
        const char* why;
        std::function<bool(meta_object_base&)> change;
    };
    const row rows[] = {
        {"removing what is not there", [](auto& t) { return t.remove_property(999); }},
        {"removing what is inherited", [](auto& t) { return t.remove_property(20); }},
        {"overriding what is not there", [](auto& t) { return t.override_property(999) != nullptr; }},
    };
    for (const row& r : rows) {
        SCOPED_TRACE(r.why);
        meta_model_impl instance(application);
        meta_object& shown = *instance.find_meta_object(11);
        EXPECT_FALSE(r.change(inside(shown)));
        EXPECT_TRUE(is_private(shown));
        EXPECT_TRUE(shown.has_property(20));
    }
}

TEST_F(proxies, a_model_can_override_take_over_and_remove_properties) {
    meta_model_impl instance(application);
    meta_object& shown = *instance.find_meta_object(11);
    meta_property* const overriding = shown.override_property(20);
    ASSERT_NE(overriding, nullptr);
    EXPECT_EQ(overriding->name(), "Rows");
    EXPECT_EQ(overriding->bases(), std::vector<meta_property*>{table.find_property(20)});
    EXPECT_NE(inside(shown).add_existing_property(std::make_unique<meta_property_impl>(50001)), nullptr);
    EXPECT_EQ(inside(shown).add_existing_property(std::make_unique<meta_property_impl>(50001)), nullptr);
    EXPECT_TRUE(inside(shown).remove_property(50001));
    EXPECT_FALSE(shown.has_property(50001));
    EXPECT_TRUE(inside(shown).remove_property(20));
    EXPECT_EQ(shown.find_property(20), table.find_property(20));
    EXPECT_TRUE(is_private(shown)) << "there is no way back";
}

TEST_F(proxies, keeps_excluded_things_from_the_private_type_too) {
    table.exclude_property(20);
    table.exclude_composition(31);
    table.exclude_semantic(5);
    meta_model_impl instance(application);
    meta_object& shown = *instance.find_meta_object(11);
    EXPECT_TRUE(shown.has_property(20));
    shown.add_property(50001);
    EXPECT_FALSE(shown.has_property(20));
    EXPECT_TRUE(shown.has_property(1));
    EXPECT_EQ(ids_of(shown.compositions()), ids{30});
    EXPECT_FALSE(shown.has_composition(31));
    EXPECT_EQ(shown.find_semantic(5), nullptr);
    EXPECT_FALSE(shown.is_property_excluded(20)) << "the list is that of the copy";
    EXPECT_TRUE(table.has_property(20));
}

TEST_F(proxies, bases_are_told_right_also_among_private_types) {
    meta_model_impl instance(application);
    meta_object& shown_base = *instance.find_meta_object(10);
    meta_object& shown = *instance.find_meta_object(11);
    shown.add_property(50001);
    EXPECT_TRUE(shown_base.is_base_of(11)) << "only the derived type is private";
    shown_base.add_property(50001);
    EXPECT_TRUE(shown_base.is_base_of(11));
    EXPECT_FALSE(shown_base.is_base_of(10)) << "although the application's type is its base";
    EXPECT_FALSE(shown.is_base_of(10));
    EXPECT_FALSE(shown.is_base_of(999));
    EXPECT_TRUE(shown.has_base_type(10, true));
}

TEST_F(proxies, later_changes_of_the_application_show_through) {
    meta_model_impl instance(application);
    meta_object& shown = *instance.find_meta_object(11);
    shown.add_property(50001);
    EXPECT_EQ(ids_of(shown.compositions()), (ids{30, 31}));
    base.add_property(2);
    table.add_composition(10);
    EXPECT_EQ(ids_of(shown.properties()), (ids{50001, 20, 1, 2}));
    EXPECT_EQ(ids_of(shown.compositions()), (ids{10, 30, 31}));
}

TEST_F(proxies, types_added_to_the_application_later_are_found_there) {
    meta_model_impl instance(application);
    meta_object& late = add_type(99, "Late");
    EXPECT_EQ(instance.find_meta_object(99), &late);
    EXPECT_EQ(instance.find_meta_object("Late"), &late);
    EXPECT_EQ(instance.meta_objects().size(), application.meta_objects().size() - 1);
    EXPECT_EQ(instance.find_meta_object(98), nullptr);
    EXPECT_EQ(instance.find_meta_object("late"), nullptr);
}

TEST_F(proxies, a_late_type_gets_its_proxy_on_demand) {
    meta_model_impl instance(application);
    meta_object& late = add_type(25, "Late");
    meta_object_base* const shown = instance.own_or_proxy(25);
    ASSERT_NE(shown, nullptr);
    EXPECT_NE(shown, &late);
    EXPECT_EQ(instance.find_meta_object(25), shown);
    EXPECT_EQ(instance.own_or_proxy(25), shown);
    EXPECT_EQ(ids_of(instance.meta_objects()), ids_of(application.meta_objects()));
    shown->add_property(50001);
    EXPECT_FALSE(late.has_property(50001));
    EXPECT_EQ(instance.own_or_proxy(11), instance.find_meta_object(11));
    EXPECT_EQ(instance.own_or_proxy(999), nullptr);
    EXPECT_EQ(application.own_or_proxy(999), nullptr) << "the application is nobody's instance";
}

TEST_F(proxies, a_dying_meta_model_leaves_nothing_attached) {
    const auto observers = [this] {
        return base_of(table).observers().size() + base_of(*table.find_composition(30)).observers().size() +
               base_of(*table.find_property(20)).observers().size() + application.observers().size();
    };
    const std::size_t before = observers();
    {
        meta_model_impl instance(application);
        meta_object& shown = *instance.find_meta_object(11);
        shown.override_property(20);
        shown.find_composition(30);
        meta_model_impl untouched(application);
        untouched.find_meta_object(11)->find_composition(30);
        EXPECT_GT(observers(), before);
    }
    EXPECT_EQ(observers(), before);
    table.add_property(21);
}

TEST_F(proxies, a_type_of_the_model_alone_is_no_business_of_the_application) {
    meta_model_impl instance(application);
    meta_object* const own = instance.add_meta_object(50, "Own", "", "");
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(instance.add_meta_object(11, "taken", "", ""), nullptr);
    EXPECT_EQ(application.find_meta_object(50), nullptr);
    EXPECT_NE(own->add_composition(31), nullptr);
    instance.clear();
    EXPECT_TRUE(instance.meta_objects().empty());
    EXPECT_EQ(instance.find_meta_object(11), &table) << "what is left is the application's";
}

} // namespace

} // namespace kelm::test
