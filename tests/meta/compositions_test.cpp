// Compositions of types: which children a type may own, and how they are named.
// How a model shows them is in proxies_test.cpp.
#include "support/meta_types.h"

namespace kelm::test {

namespace {

class compositions_of_types : public meta_types {
protected:
    meta_object& table = add_type(200, "Table");
    meta_object& column = *application.add_meta_object(201, "Column", "a field", "Spalte");
    meta_object& index = add_type(199, "Index");
};

TEST_F(compositions_of_types, a_composition_has_the_id_of_its_child_type) {
    meta_composition* const it = table.add_composition(201);
    ASSERT_NE(it, nullptr);
    EXPECT_EQ(it->id(), 201U);
    EXPECT_EQ(it->child_meta_object(), &column);
    EXPECT_EQ(table.find_composition(201), it);
    EXPECT_TRUE(table.has_composition(201));
}

TEST_F(compositions_of_types, an_unknown_child_type_is_refused_and_nothing_is_told) {
    listener hears(table);
    EXPECT_EQ(table.add_composition(999), nullptr);
    EXPECT_EQ(table.add_composition(999, "name", ""), nullptr);
    EXPECT_TRUE(table.compositions().empty());
    EXPECT_EQ(hears.told, 0);
}

TEST_F(compositions_of_types, a_child_type_is_declared_once) {
    meta_composition* const first = table.add_composition(201);
    listener hears(table);
    EXPECT_EQ(table.add_composition(201), nullptr);
    EXPECT_EQ(hears.told, 1) << "told before it was tried";
    EXPECT_EQ(table.compositions(), std::vector<meta_composition*>{first});
}

TEST_F(compositions_of_types, a_type_may_own_children_of_itself) {
    EXPECT_NE(table.add_composition(200), nullptr);
    EXPECT_EQ(table.find_composition("Table")->child_meta_object(), &table);
}

TEST_F(compositions_of_types, a_composition_without_a_name_shows_its_child_type) {
    meta_composition* const it = table.add_composition(201, "", "ignored");
    EXPECT_EQ(it->name(), "Column");
    EXPECT_EQ(it->alternative_name(), "Spalte") << "also what bases would not pass on";
    EXPECT_EQ(it->definition(), "a field");
    EXPECT_FALSE(it->remove_attribute(attribute_id::name)) << "it is not its own";
    column.set_attribute_value(attribute_id::deprecated, property<bool>(true));
    EXPECT_EQ(text_of(*it, attribute_id::deprecated), "True");
}

TEST_F(compositions_of_types, a_composition_with_a_name_has_its_own) {
    meta_composition* const it = table.add_composition(199, "Key", "finds rows");
    EXPECT_EQ(it->name(), "Key");
    EXPECT_EQ(it->definition(), "finds rows");
    EXPECT_EQ(it->alternative_name(), "Key");
    EXPECT_EQ(index.name(), "Index");
    EXPECT_TRUE(it->remove_attribute(attribute_id::name));
    EXPECT_EQ(it->name(), "Index");
}

TEST_F(compositions_of_types, a_name_brings_a_definition_of_its_own_also_an_empty_one) {
    meta_composition* const it = table.add_composition(201, "Field", "");
    EXPECT_TRUE(it->remove_attribute(attribute_id::name));
    EXPECT_EQ(it->definition(), "") << "that of the child type does not show";
    EXPECT_TRUE(it->remove_attribute(attribute_id::definition));
    EXPECT_EQ(it->definition(), "a field");
}

TEST_F(compositions_of_types, a_child_type_is_asked_behind_a_ladder_of_bases) {
    std::vector<meta_composition*> rungs{table.add_composition(201)};
    for (u32 i = 0; i != 40; ++i) {
        meta_composition* const left = add_type(1000 + 3 * i).add_composition(201);
        meta_composition* const right = add_type(1001 + 3 * i).add_composition(201);
        meta_composition* const next = add_type(1002 + 3 * i).add_composition(201);
        left->add_base(rungs.back());
        right->add_base(rungs.back());
        next->add_base(left);
        next->add_base(right);
        rungs.push_back(next);
    }
    EXPECT_EQ(text_of(*rungs.back(), attribute_id::internal), "none");
    EXPECT_EQ(rungs.back()->name(), "Column");
    rungs.front()->set_attribute_value(attribute_id::internal, property<bool>(true));
    EXPECT_EQ(text_of(*rungs.back(), attribute_id::internal), "True");
}

TEST_F(compositions_of_types, what_a_base_composition_says_comes_before_the_child_type) {
    meta_composition* const above = table.add_composition(201, "Field", "");
    meta_object& view = add_type(202, "View");
    meta_composition* const it = view.add_composition(201);
    it->add_base(above);
    EXPECT_EQ(it->bases(), std::vector<meta_composition*>{above});
    EXPECT_EQ(it->name(), "Field");
    it->remove_base(above);
    EXPECT_EQ(it->name(), "Column");
    it->add_base(nullptr);
    EXPECT_TRUE(it->bases().empty());
}

TEST_F(compositions_of_types, compositions_are_found_by_each_of_their_names) {
    meta_composition* const columns = table.add_composition(201);
    meta_composition* const keys = table.add_composition(199, "Key", "");
    EXPECT_EQ(table.find_composition("Column"), columns);
    EXPECT_EQ(table.find_composition("Key"), keys);
    EXPECT_EQ(table.find_composition("column"), nullptr);
    EXPECT_EQ(table.find_composition_by_alternative_name("Spalte"), columns);
    EXPECT_EQ(table.find_composition_by_alternative_name("Key"), keys);
    EXPECT_EQ(table.find_composition_by_alternative_name("Column"), nullptr);
    EXPECT_TRUE(table.has_composition("Key"));
    EXPECT_FALSE(table.has_composition("Index"));
    EXPECT_FALSE(table.has_composition(200));
    EXPECT_EQ(table.find_composition(200), nullptr);
}

TEST_F(compositions_of_types, own_ones_come_first_and_hide_inherited_ones) {
    meta_object& base = add_type(300);
    base.add_composition(201, "base column", "");
    base.add_composition(199);
    meta_object& derived = add_type_of(base, 301);
    derived.add_composition(200);
    meta_composition* const own = derived.add_composition(201, "own column", "");
    EXPECT_EQ(ids_of(derived.compositions()), (ids{200, 201, 199}));
    EXPECT_EQ(derived.find_composition(201), own);
    EXPECT_EQ(derived.find_composition("base column"), nullptr);
}

TEST_F(compositions_of_types, an_excluded_child_type_stays_with_the_base) {
    meta_object& base = add_type(300);
    base.add_composition(201);
    base.add_composition(199);
    meta_object& derived = add_type_of(base, 301);
    meta_object& grandchild = add_type_of(derived, 302);
    EXPECT_TRUE(grandchild.has_composition(201));
    base.exclude_composition(201);
    EXPECT_TRUE(base.is_composition_excluded(201));
    EXPECT_TRUE(base.is_child_type_excluded(201));
    EXPECT_FALSE(derived.is_composition_excluded(201)) << "the list itself is not inherited";
    EXPECT_TRUE(base.has_composition(201));
    EXPECT_EQ(ids_of(derived.compositions()), ids{199});
    EXPECT_FALSE(grandchild.has_composition(201));
    base.exclude_child_type(199);
    EXPECT_TRUE(base.is_composition_excluded(199));
    EXPECT_TRUE(grandchild.compositions().empty());
}

TEST_F(compositions_of_types, the_second_names_do_the_same) {
    meta_composition* const columns = table.add_child_type(201);
    meta_composition* const keys = table.add_child_type(199, "Key", "finds rows");
    EXPECT_EQ(table.add_child_type(199), nullptr);
    EXPECT_EQ(keys->definition(), "finds rows");
    EXPECT_EQ(table.child_types(), table.compositions());
    EXPECT_EQ(table.child_types().size(), 2U);
    EXPECT_EQ(table.find_child_type("Key"), keys);
    EXPECT_EQ(table.find_child_type(201), columns);
    EXPECT_EQ(table.find_child_type_by_alternative_name("Spalte"), columns);
    EXPECT_TRUE(table.has_child_type("Column"));
    EXPECT_TRUE(table.has_child_type(199));
    EXPECT_FALSE(table.has_child_type("Index"));
    EXPECT_FALSE(table.has_child_type(200));
}

TEST_F(compositions_of_types, a_composition_is_user_defined_from_50000_on) {
    add_type(49999);
    add_type(50000);
    EXPECT_FALSE(table.add_composition(49999)->is_user_defined());
    EXPECT_TRUE(table.add_composition(50000)->is_user_defined());
}

TEST_F(compositions_of_types, what_was_read_while_it_was_told_is_forgotten) {
    meta_object& derived = add_type_of(table, 300);
    listener hears(derived);
    std::size_t seen = 99;
    hears.meanwhile = [&] { seen = derived.compositions().size(); };
    table.add_composition(201);
    EXPECT_EQ(seen, 0U);
    derived.add_composition(199);
    EXPECT_EQ(seen, 1U);
    EXPECT_EQ(ids_of(derived.compositions()), (ids{199, 201}));
    EXPECT_EQ(hears.told, 2);
}

} // namespace

} // namespace kelm::test
