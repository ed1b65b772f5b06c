// Values of pasted objects: set, left to what is inherited, waiting for their targets, needed, and taken along.
// What rules do about them is property_paste_rules_test.
#include "tests/copier/copy_paste_world.h"

namespace kelm::test {
namespace {

class pasted_values : public copy_paste_world {
protected:
    object* const a = linked("a");
};

TEST_F(pasted_values, of_every_plain_kind_are_set_also_where_the_type_has_no_such_property) {
    set(a, props::text, text("x"));
    set(a, props::real, property<double>{0.5});
    set(a, props::flag, flag(false));
    set(a, 4711, property<long long>{5});
    copy(a);
    EXPECT_TRUE(paste());
    const char* const expected[] = {"'a'", "'x'", "'False'", "'0.5'", "'5'"};
    const u32 ids[] = {props::name, props::text, props::flag, props::real, 4711};
    for (std::size_t i = 0; i != 5; ++i) EXPECT_EQ(own("a", ids[i]), expected[i]);
}

TEST_F(pasted_values, are_not_set_where_the_same_is_inherited_by_then) {
    object* const base = thing("base");
    set(base, props::text, text("same"));
    set(base, props::number, number(1));
    set(a, props::text, text("same"));
    set(a, props::number, number(2));
    add_base(a, base);
    copy_all({base, a});
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("a", props::text), "none") << "it reads the same";
    EXPECT_EQ(as_text(found("a")->get_property(props::text)), "same");
    EXPECT_EQ(own("a", props::number), "'2'");
}

TEST_F(pasted_values, are_set_where_the_same_is_inherited_only_later) {
    object* const base = thing("base");
    set(base, props::text, text("same"));
    set(a, props::text, text("same"));
    add_base(a, base);
    copy_all({a, base});
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("a", props::text), "'same'") << "the base came behind it";
    EXPECT_TRUE(found("a")->inherits_from(found("base"), false));
}

TEST_F(pasted_values, refer_to_copies_wherever_these_come) {
    object* const before = thing("before");
    object* const behind = thing("behind");
    object* const child = linked("child", a);
    set(a, props::reference, a);
    set(a, props::free_to_go, before);
    set(a, props::left_behind, behind);
    set(a, props::needed, child);
    set(child, props::reference, a);
    copy_all({before, a, behind});
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("a", props::reference), "->a");
    EXPECT_EQ(own("a", props::free_to_go), "->before");
    EXPECT_EQ(own("a", props::left_behind), "->behind");
    EXPECT_EQ(own("a", props::needed), "->child");
    EXPECT_EQ(own("child", props::reference), "->a");
    EXPECT_EQ(found("a")->get_own_property(props::reference)->to_string().empty(), false);
    EXPECT_EQ(broken_links(*far_model), "");
}

TEST_F(pasted_values, that_refer_outside_the_snapshot_stay_unset) {
    set(a, props::reference, thing("outside"));
    set(a, props::list, {thing("o1"), thing("o2")});
    set(a, props::text, text("x"));
    copy(a);
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("a", props::reference), "none");
    EXPECT_EQ(own("a", props::list), "none");
    EXPECT_EQ(own("a", props::text), "'x'");
}

TEST_F(pasted_values, that_refer_outside_stay_unset_in_the_source_model_too) {
    set(a, props::reference, thing("outside"));
    copy(a);
    EXPECT_TRUE(clip->paste(model, {root}, &pasted));
    EXPECT_FALSE(pasted[0]->defines_property(props::reference));
}

TEST_F(pasted_values, of_null_stay_unset) {
    set(a, props::reference, nullptr);
    set(a, props::list, {nullptr});
    copy(a);
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("a", props::reference), "none");
    EXPECT_EQ(own("a", props::list), "none");
}

TEST_F(pasted_values, that_are_lists_are_set_whole_or_not_at_all) {
    object* const b = thing("b");
    object* const outside = thing("outside");
    const auto references = [](std::initializer_list<object*> targets) {
        auto* const list = new vector_property;
        for (object* each : targets) list->elements.push_back(new property<object*>{each});
        return list;
    };
    const struct {
        const char* why;
        std::vector<abstract_property*> elements;
        const char* expected;
    } rows[] = {
        {"plain elements", {new property<int>{1}, new property<std::string>{"x"}}, "['1'|'x'|]"},
        {"references and plain ones", {new property<object*>{b}, new property<int>{1}}, "[->b|'1'|]"},
        {"one that does not resolve", {new property<object*>{b}, new property<object*>{outside}}, "none"},
        {"the first that does not resolve", {new property<object*>{outside}, new property<int>{1}}, "none"},
        {"no element", {}, "none"},
        {"lists inside", {references({b, a}), new property<int>{2}}, "[[->b|->a|]|'2'|]"},
        {"a list inside that does not resolve", {references({b, outside}), new property<int>{2}}, "none"},
        {"an empty list inside", {references({}), new property<int>{2}}, "none"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        vector_property list;
        list.elements = row.elements;
        set(a, props::list, list);
        clip = fw.create_copier(model);
        copy_all({a, b});
        EXPECT_TRUE(paste());
        EXPECT_EQ(own("a", props::list), row.expected);
        far_model->rollback_last_transaction();
    }
}

TEST_F(pasted_values, that_wait_are_set_once_all_their_targets_are_there) {
    object* const b = linked("b");
    object* const c = linked("c");
    set(a, props::list, {a, b, c});
    set(b, props::list, {c, a});
    set(b, props::reference, c);
    copy_all({a, b, c});
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("a", props::list), "[->a|->b|->c|]");
    EXPECT_EQ(own("b", props::list), "[->c|->a|]");
    EXPECT_EQ(own("b", props::reference), "->c");
}

TEST_F(pasted_values, refer_to_nothing_of_a_top_node_without_an_owner) {
    object* const nobody = make(types::hooked_part, "nobody");
    set(a, props::reference, nobody);
    copy_all({nobody, a});
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a");
    EXPECT_EQ(own("a", props::reference), "none");
}

// What must exist

TEST_F(pasted_values, that_must_exist_and_do_not_take_their_object_with_them) {
    object* const outside = thing("outside");
    const struct {
        const char* why;
        u32 id;
        std::function<void()> give;
        bool stays;
    } rows[] = {
        {"a reference", props::needed, [&] { set(a, props::needed, outside); }, false},
        {"null", props::needed, [&] { set(a, props::needed, nullptr); }, false},
        {"a list", props::needed_list,
         [&] {
             set(a, props::needed_list, {a, outside});
         },
         false},
        {"an empty list", props::needed_list, [&] { set(a, props::needed_list, {}); }, false},
        {"a reference that resolves", props::needed, [&] { set(a, props::needed, a); }, true},
        {"a list that resolves", props::needed_list, [&] { set(a, props::needed_list, {a}); }, true},
        {"a text", props::needed_text, [&] { set(a, props::needed_text, text("")); }, true},
        {"said to be free", props::free_to_go, [&] { set(a, props::free_to_go, outside); }, true},
        {"nothing said", props::reference, [&] { set(a, props::reference, outside); }, true},
        {"not declared", 4711, [&] { set(a, 4711, outside); }, true},
    };
    part("child", a);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        row.give();
        clip = fw.create_copier(model);
        copy_all({a});
        const std::string before = far_dump();
        EXPECT_TRUE(paste());
        EXPECT_EQ(far_tree(), row.stays ? "a(child)" : "") << "with its children";
        EXPECT_EQ(pasted.size(), 1U);
        EXPECT_EQ(pasted[0]->state(), row.stays ? state::normal : state::deleted) << "told all the same";
        expect_paste_undone_and_redone(before);
        far_model->rollback_last_transaction();
        begin();
        a->delete_property(row.id);
        end();
    }
}

TEST_F(pasted_values, that_must_exist_are_not_asked_for_where_the_source_had_none) {
    copy(a);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a");
}

TEST_F(pasted_values, that_referred_to_what_had_to_go_are_gone) {
    object* const b = linked("b");
    object* const c = linked("c");
    set(a, props::needed, thing("outside"));
    set(b, props::reference, a);
    set(c, props::needed, a);
    copy_all({a, b, c});
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "b c") << "only what never resolved counts";
    EXPECT_EQ(own("b", props::reference), "none");
    EXPECT_EQ(broken_links(*far_model), "");
}

TEST_F(pasted_values, that_are_missing_in_owner_and_child_take_both_at_once) {
    object* const child = linked("child", a);
    object* const outside = thing("outside");
    for (object* each : {a, child}) {
        set(each, props::needed, outside);
        set(each, props::needed_list, {outside});
    }
    copy(a);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "");
}

TEST_F(pasted_values, that_are_missing_take_their_objects_in_the_order_of_ids) {
    object* const outside = thing("outside");
    object* const b = linked("b");
    for (object* each : {a, b}) set(each, props::needed, outside);
    copy_all({a, b});
    std::string order;
    hooks.on<obj_pre_delete_semantic>([&](hook_call& call) {
        order += name_or_number(call.at) + " ";
        return true;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(order, "a b ");
}

TEST_F(pasted_values, that_are_missing_fail_the_paste_when_their_object_cannot_go) {
    set(a, props::needed, thing("outside"));
    copy(a);
    hooks.refuse<obj_pre_delete_semantic>();
    expect_failure();
    hooks.clear();
    EXPECT_TRUE(paste());
}

// Values that the source only inherited

class pasted_extra_values : public copy_paste_world {
protected:
    pasted_extra_values() {
        set(base, props::text, text("from base"));
        set(base, props::reference, target);
        add_base(heir, base);
        clip->add_extra_property(types::linked, props::text);
        clip->add_extra_property(types::linked, props::reference);
    }
    object* const target = thing("target");
    object* const base = linked("base");
    object* const heir = linked("heir");
};

TEST_F(pasted_extra_values, become_own_ones_where_the_base_stays_behind) {
    copy_all({heir, target});
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("heir", props::text), "'from base'");
    EXPECT_EQ(own("heir", props::reference), "->target");
}

TEST_F(pasted_extra_values, stay_inherited_where_the_base_comes_along) {
    copy_all({heir, base, target});
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("heir", props::text), "none");
    EXPECT_EQ(own("heir", props::reference), "none");
    EXPECT_EQ(as_text(found("heir")->get_property(props::text)), "from base");
}

TEST_F(pasted_extra_values, that_do_not_resolve_are_left_out) {
    copy(heir);
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("heir", props::text), "'from base'");
    EXPECT_EQ(own("heir", props::reference), "none");
}

TEST_F(pasted_extra_values, are_not_set_on_what_had_to_go) {
    set(heir, props::needed, thing("outside"));
    copy(heir);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "");
}

TEST_F(pasted_extra_values, are_set_without_asking_a_rule_for_values) {
    copy(heir);
    on_value.on_call = [](object*, u32, abstract_property*, bool) { return property_paste_result::done; };
    clip->set_property_paste_rule(types::linked, scripted_value_rule{on_value});
    EXPECT_TRUE(paste());
    ASSERT_EQ(pasted.size(), 1U);
    EXPECT_EQ(as_text(pasted[0]->get_own_property(props::text)), "from base");
    EXPECT_EQ(on_value.take(), "#" + std::to_string(pasted[0]->id()) + " 1='heir'\n");
}

TEST_F(pasted_extra_values, that_are_refused_fail_the_paste) {
    copy(heir);
    hooks.on<pre_prop_set_semantic>([](hook_call& call) { return call.numbers[0] != props::text; });
    expect_failure();
}

} // namespace
} // namespace kelm::test
