// What types get from their bases, who is told of a change, and types by id and name.
// Hooks and what models make of types have tests of their own.
#include "support/meta_types.h"

namespace kelm::test {

namespace {

class inheritance_of_types : public meta_types {
protected:
    /// Forty diamonds, one on the other: there are 2^40 ways from the last type to the first.
    /// \returns the last type
    meta_object& diamonds_on(meta_object& first) {
        meta_object* top = &first;
        for (u32 i = 0; i != 40; ++i) {
            meta_object& left = add_type_of(*top, 1001 + 3 * i);
            meta_object& right = add_type_of(*top, 1002 + 3 * i);
            meta_object& next = add_type_of(left, 1003 + 3 * i);
            next.add_base_type(&right);
            top = &next;
        }
        return *top;
    }
};

TEST_F(inheritance_of_types, types_are_kept_ascending_by_id) {
    for (const u32 id : {30U, 10U, 20U, 5U}) add_type(id);
    EXPECT_EQ(ids_of(application.meta_objects()), (ids{5, 10, 20, 30}));
    EXPECT_EQ(application.meta_objects(), application.meta_objects_ref());
    for (const u32 id : {30U, 10U, 20U, 5U}) EXPECT_EQ(application.find_meta_object(id)->id(), id);
    EXPECT_EQ(application.find_meta_object(15), nullptr);
}

TEST_F(inheritance_of_types, an_id_is_taken_once) {
    meta_object& first = add_type(10, "first");
    EXPECT_EQ(application.add_meta_object(10, "second", "", ""), nullptr);
    EXPECT_EQ(application.find_meta_object(10), &first);
    EXPECT_EQ(application.find_meta_object("second"), nullptr);
    EXPECT_EQ(application.add_existing_meta_object(std::make_unique<meta_object_impl>(10, &application)),
              nullptr);
}

TEST_F(inheritance_of_types, a_name_is_found_exactly_and_the_lowest_id_of_equals) {
    meta_object& high = add_type(20, "Table");
    EXPECT_EQ(application.find_meta_object("Table"), &high);
    meta_object& low = add_type(10, "Table");
    EXPECT_EQ(application.find_meta_object("Table"), &low);
    EXPECT_EQ(application.find_meta_object("table"), nullptr);
}

TEST_F(inheritance_of_types, a_type_stores_only_the_texts_it_is_given) {
    meta_object& bare = *application.add_meta_object(10, "", "", "");
    EXPECT_EQ(bare.attributes().size(), 1U) << "the name is always stored";
    meta_object& full = *application.add_meta_object(11, "a", "b", "c");
    EXPECT_EQ(text_of(full, attribute_id::name), "a");
    EXPECT_EQ(text_of(full, attribute_id::definition), "b");
    EXPECT_EQ(text_of(full, attribute_id::alternative_name), "c");
}

TEST_F(inheritance_of_types, clearing_frees_types_in_whatever_order_they_derive) {
    int deaths = 0;
    meta_object& base = add_type(20);
    meta_object& before = add_type_of(base, 10);
    meta_object& after = add_type_of(base, 30);
    base.add_property(1);
    before.override_property(1);
    after.override_property(1);
    ASSERT_TRUE(base.add_semantic(new create_probe(1, &deaths)));
    EXPECT_NE(before.find_semantic(1), nullptr);
    application.clear();
    EXPECT_EQ(deaths, 1);
    EXPECT_TRUE(application.meta_objects().empty());
    EXPECT_EQ(application.find_meta_object(20), nullptr);
    EXPECT_NE(application.add_meta_object(20, "again", "", ""), nullptr);
}

TEST_F(inheritance_of_types, versions_start_at_zero) {
    EXPECT_EQ(application.version(), 0U);
    EXPECT_EQ(application.minor_version(), 0U);
    application.set_version(7);
    application.set_minor_version(2);
    EXPECT_EQ(application.version(), 7U);
    EXPECT_EQ(application.minor_version(), 2U);
}

TEST_F(inheritance_of_types, a_type_is_user_defined_from_50000_on) {
    EXPECT_FALSE(add_type(49995).is_user_defined());
    EXPECT_FALSE(add_type(49999).is_user_defined());
    EXPECT_TRUE(add_type(50000).is_user_defined());
}

TEST_F(inheritance_of_types, generic_is_not_inherited) {
    meta_object& base = add_type(10);
    EXPECT_FALSE(base.is_generic());
    base.set_generic();
    EXPECT_TRUE(base.is_generic());
    EXPECT_FALSE(add_type_of(base, 11).is_generic());
}

TEST_F(inheritance_of_types, the_first_base_wins) {
    meta_object& first = add_type(10);
    meta_object& second = add_type(11);
    meta_property* const wanted = first.add_property(1);
    second.add_property(2);
    second.add_property(1);
    meta_object& derived = add_type_of(first, 12);
    derived.add_base_type(&second);
    EXPECT_EQ(derived.find_property(1), wanted);
    EXPECT_EQ(ids_of(derived.properties()), (ids{1, 2}));
    EXPECT_EQ(derived.base_types(), (std::vector<meta_object*>{&first, &second}));
}

TEST_F(inheritance_of_types, an_excluded_property_stays_with_the_base) {
    meta_object& base = add_type(10);
    base.add_property(1);
    base.add_property(2);
    meta_object& derived = add_type_of(base, 11);
    meta_object& grandchild = add_type_of(derived, 12);
    EXPECT_TRUE(grandchild.has_property(1));
    base.exclude_property(1);
    EXPECT_TRUE(base.is_property_excluded(1));
    EXPECT_FALSE(base.is_property_excluded(2));
    EXPECT_FALSE(derived.is_property_excluded(1)) << "the list itself is not inherited";
    EXPECT_TRUE(base.has_property(1));
    EXPECT_EQ(ids_of(derived.properties()), ids{2});
    EXPECT_EQ(derived.find_property(1), nullptr);
    EXPECT_FALSE(grandchild.has_property(1));
}

TEST_F(inheritance_of_types, what_one_base_excludes_another_may_pass_on) {
    meta_object& first = add_type(10);
    meta_object& second = add_type(11);
    first.add_property(1);
    first.exclude_property(1);
    meta_property* const passed = second.add_property(1);
    meta_object& derived = add_type_of(first, 12);
    derived.add_base_type(&second);
    EXPECT_EQ(derived.find_property(1), passed);
}

TEST_F(inheritance_of_types, a_change_of_a_base_reaches_types_below) {
    meta_object& base = add_type(10);
    meta_object& derived = add_type_of(base, 11);
    meta_object& grandchild = add_type_of(derived, 12);
    EXPECT_TRUE(grandchild.properties().empty());
    base.add_property(1);
    EXPECT_TRUE(grandchild.has_property(1));
    base.add_composition(11);
    EXPECT_TRUE(grandchild.has_composition(11));
    base.add_related_type(77);
    EXPECT_TRUE(grandchild.has_related_type(77));
    derived.remove_base_type(&base);
    EXPECT_TRUE(grandchild.properties().empty());
    EXPECT_TRUE(grandchild.compositions().empty());
    EXPECT_TRUE(grandchild.related_types().empty());
}

TEST_F(inheritance_of_types, every_kind_of_change_is_told_downwards_once) {
    struct row {
        const char* why;
        std::function<void(meta_object&)> change;
        int told;
    };
    meta_object& other = add_type(9);
    const row rows[] = {
        {"add_property", [](auto& t) { t.add_property(1); }, 1},
        {"add_property, refused", [](auto& t) { t.add_property(1); }, 1},
        {"add_composition", [](auto& t) { t.add_composition(9); }, 1},
        {"add_composition, refused", [](auto& t) { t.add_composition(9); }, 1},
        {"add_semantic", [](auto& t) { t.add_semantic(new create_probe(1)); }, 1},
        {"add_related_type", [](auto& t) { t.add_related_type(5); }, 1},
        {"add_related_type, again", [](auto& t) { t.add_related_type(5); }, 1},
        {"exclude_composition", [](auto& t) { t.exclude_composition(9); }, 1},
        {"exclude_property", [](auto& t) { t.exclude_property(1); }, 1},
        {"exclude_semantic", [](auto& t) { t.exclude_semantic(1); }, 1},
        {"add_base_type", [&](auto& t) { t.add_base_type(&other); }, 1},
        {"remove_base_type", [&](auto& t) { t.remove_base_type(&other); }, 1},
        {"remove_base_type of a stranger", [&](auto& t) { t.remove_base_type(&other); }, 0},
        {"add_base_type of itself", [](auto& t) { t.add_base_type(&t); }, 0},
        {"set_generic", [](auto& t) { t.set_generic(); }, 0},
        {"set_attribute_value", [](auto& t) { t.set_attribute_value(4, property<bool>(true)); }, 0},
    };
    meta_object& base = add_type(10);
    meta_object& derived = add_type_of(base, 11);
    listener hears_base(base);
    listener hears_derived(derived);
    for (const row& r : rows) {
        SCOPED_TRACE(r.why);
        hears_base.told = hears_derived.told = 0;
        r.change(base);
        EXPECT_EQ(hears_base.told, r.told);
        EXPECT_EQ(hears_derived.told, r.told);
        EXPECT_EQ(hears_derived.told_a_message, 0);
    }
}

TEST_F(inheritance_of_types, adding_and_removing_bases_forgets_what_was_read_meanwhile) {
    meta_object& base = add_type(10);
    base.add_property(1);
    base.add_related_type(5);
    meta_object& derived = add_type(11);
    derived.add_property(2);
    listener hears(derived);
    std::size_t seen = 0;
    hears.meanwhile = [&] { seen = derived.properties().size() + derived.related_types().size(); };
    derived.add_base_type(&base);
    EXPECT_EQ(seen, 1U);
    EXPECT_EQ(ids_of(derived.properties()), (ids{2, 1}));
    EXPECT_EQ(derived.related_types(), ids{5});
    derived.remove_base_type(&base);
    EXPECT_EQ(seen, 3U);
    EXPECT_EQ(ids_of(derived.properties()), ids{2});
    EXPECT_TRUE(derived.related_types().empty());
}

TEST_F(inheritance_of_types, a_base_excluded_late_is_read_anew) {
    meta_object& base = add_type(10);
    base.add_property(1);
    meta_object& derived = add_type_of(base, 11);
    listener hears(derived);
    hears.meanwhile = [&] { derived.has_property(1); };
    base.exclude_property(1);
    EXPECT_FALSE(derived.has_property(1));
}

TEST_F(inheritance_of_types, bases_are_asked_directly_or_all_the_way_up) {
    meta_object& top = add_type(10);
    meta_object& middle = add_type_of(top, 11);
    meta_object& bottom = add_type_of(middle, 12);
    EXPECT_TRUE(bottom.has_base_type(11, false));
    EXPECT_FALSE(bottom.has_base_type(10, false));
    EXPECT_TRUE(bottom.has_base_type(10, true));
    EXPECT_FALSE(bottom.has_base_type(12, true));
    EXPECT_FALSE(top.has_base_type(11, true));
}

TEST_F(inheritance_of_types, is_base_of_looks_down) {
    meta_object& top = add_type(10);
    meta_object& middle = add_type_of(top, 11);
    meta_object& bottom = add_type_of(middle, 12);
    EXPECT_TRUE(top.is_base_of(11));
    EXPECT_TRUE(top.is_base_of(12));
    EXPECT_TRUE(middle.is_base_of(12));
    EXPECT_FALSE(middle.is_base_of(11)) << "no type is its own base";
    EXPECT_FALSE(bottom.is_base_of(10));
    EXPECT_FALSE(top.is_base_of(999));
}

TEST_F(inheritance_of_types, a_circle_of_bases_is_not_closed) {
    meta_object& a = add_type(10);
    meta_object& b = add_type_of(a, 11);
    meta_object& c = add_type_of(b, 12);
    a.add_base_type(&a);
    a.add_base_type(&c);
    a.add_base_type(nullptr);
    EXPECT_TRUE(a.base_types().empty());
    EXPECT_FALSE(a.is_base_of(999));
    EXPECT_FALSE(c.has_base_type(999, true));
}

TEST_F(inheritance_of_types, many_diamonds_are_asked_quickly) {
    const meta_object* const top = &diamonds_on(add_type(1000));
    EXPECT_TRUE(top->has_base_type(1000, true));
    EXPECT_FALSE(top->has_base_type(1, true));
    EXPECT_FALSE(top->is_base_of(1000));
}

TEST_F(inheritance_of_types, many_diamonds_without_anything_to_inherit_are_read_quickly) {
    meta_object* const first = &add_type(1000);
    const meta_object* const top = &diamonds_on(*first);
    EXPECT_EQ(text_of(*top, attribute_id::internal), "none");
    EXPECT_EQ(top->attributes().size(), 1U);
    EXPECT_FALSE(top->has_property(1));
    EXPECT_TRUE(top->compositions().empty());
    EXPECT_FALSE(top->has_related_type(1));
    EXPECT_EQ(top->find_semantic(1), nullptr);
    first->set_attribute_value(attribute_id::internal, property<bool>(true));
    EXPECT_EQ(text_of(*top, attribute_id::internal), "True");
}

TEST_F(inheritance_of_types, lists_that_were_empty_are_read_anew_after_a_change) {
    meta_object& base = add_type(10);
    meta_object& type = add_type_of(base, 11);
    const auto sizes = [&] {
        return ids{static_cast<u32>(type.properties().size()), static_cast<u32>(type.compositions().size()),
                   static_cast<u32>(type.related_types().size())};
    };
    EXPECT_EQ(sizes(), (ids{0, 0, 0}));
    type.add_property(1);
    type.add_composition(10);
    type.add_related_type(5);
    EXPECT_EQ(sizes(), (ids{1, 1, 1}));
    type.remove_base_type(&base);
    base.add_property(2);
    base.add_composition(11);
    base.add_related_type(6);
    type.add_base_type(&base);
    EXPECT_EQ(sizes(), (ids{2, 2, 2}));
}

TEST_F(inheritance_of_types, a_base_added_twice_goes_with_its_second_removal) {
    meta_object& base = add_type(10);
    meta_object& derived = add_type_of(base, 11);
    derived.add_base_type(&base);
    EXPECT_EQ(derived.base_types().size(), 2U);
    derived.remove_base_type(&base);
    EXPECT_EQ(derived.base_types().size(), 1U);
    base.add_property(1);
    EXPECT_TRUE(derived.has_property(1)) << "it still hears of the base";
    derived.remove_base_type(&base);
    EXPECT_TRUE(derived.base_types().empty());
    EXPECT_FALSE(base_of(base).is_attached(&base_of(derived)));
}

TEST_F(inheritance_of_types, related_types_are_sorted_and_joined_with_those_of_all_bases) {
    meta_object& first = add_type(10);
    meta_object& second = add_type(11);
    meta_object& derived = add_type_of(first, 12);
    derived.add_base_type(&second);
    for (const u32 id : {9U, 3U, 9U}) first.add_related_type(id);
    for (const u32 id : {5U, 3U}) second.add_related_type(id);
    derived.add_related_type(4);
    EXPECT_EQ(first.related_types(), (ids{3, 9}));
    EXPECT_EQ(derived.related_types(), (ids{3, 4, 5, 9}));
    EXPECT_TRUE(derived.has_related_type(5));
    EXPECT_FALSE(derived.has_related_type(6));
    EXPECT_FALSE(first.has_related_type(4));
}

TEST_F(inheritance_of_types, what_was_read_of_related_types_meanwhile_is_forgotten) {
    meta_object& base = add_type(10);
    meta_object& derived = add_type_of(base, 11);
    base.add_related_type(1);
    listener hears(derived);
    std::size_t seen = 0;
    hears.meanwhile = [&] { seen = derived.related_types().size(); };
    base.add_related_type(2);
    EXPECT_EQ(seen, 1U);
    EXPECT_EQ(derived.related_types(), (ids{1, 2}));
}

} // namespace

} // namespace kelm::test
