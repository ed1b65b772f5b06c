// Paste rules: what they are asked, and each of their actions.
// Rules for single values are property_paste_rules_test.
#include "tests/copier/copy_paste_world.h"
#include "tests/support/counted_value.h"

namespace kelm::test {
namespace {

class paste_rules : public copy_paste_world {
protected:
    void rule(u32 type, std::function<int(const paste_call&)> what) {
        on_paste.on_call = std::move(what);
        clip->set_paste_rule(type, scripted_paste_rule{on_paste});
    }
    /// A rule that answers the same to all of a type.
    void rule(u32 type, int action, object* target = nullptr) {
        on_paste.target = target;
        rule(type, [=](const paste_call&) { return action; });
    }
    object* const a = thing("a");
};

TEST_F(paste_rules, are_asked_about_their_type_alone_before_anything_is_made) {
    part("p", a);
    make(types::special_thing, "s", a);
    copy(a);
    rule(types::thing, [&](const paste_call& call) {
        EXPECT_EQ(call.owner, far_root);
        EXPECT_EQ(call.type, types::thing);
        EXPECT_EQ(call.source_id, a->id());
        EXPECT_FALSE(far_root->has_children());
        EXPECT_TRUE(far_model->in_transaction());
        return paste_action::create;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(on_paste.take(), "#1 100 a\n");
    EXPECT_EQ(far_tree(), "a(p s)");
}

TEST_F(paste_rules, are_told_values_and_bases_as_far_as_they_resolve) {
    object* const base = thing("base");
    object* const b = thing("b");
    set(base, props::text, text("inherited"));
    add_base(a, base);
    add_base(a, b);
    set(a, props::number, number(1));
    set(a, props::reference, base);
    set(a, 4711, b);
    set(a, props::list, {base, b});
    set(a, 4712, {b});
    copy_all({base, a, b});
    rule(types::thing, paste_action::create);
    clip->add_extra_property(types::thing, props::text);
    EXPECT_TRUE(paste());
    const std::string id = std::to_string(found("base")->id());
    EXPECT_EQ(on_paste.take(), "#1 100 base 10='inherited'\n"
                               "#1 100 a 11='1' 13=#" +
                                   id + " 14=[#" + id +
                                   "|null|] 4711=null 4712=null base base base null\n"
                                   "#1 100 b\n");
    EXPECT_EQ(own("a", props::list), "[->base|->b|]");
}

TEST_F(paste_rules, that_answer_a_number_without_a_meaning_have_it_made) {
    copy(a);
    for (const int action : {paste_action::create, 6, -1, 4711}) {
        SCOPED_TRACE(action);
        rule(types::thing, action, a);
        EXPECT_TRUE(paste());
        EXPECT_EQ(far_tree(), "a");
        far_model->undo();
    }
}

TEST_F(paste_rules, that_fail_take_back_everything) {
    part("p", a);
    copy_all({thing("before"), a});
    rule(types::part, paste_action::fail);
    expect_failure();
    EXPECT_EQ(on_paste.take(), "a 101 p\n");
}

// Replacing

TEST_F(paste_rules, that_replace_delete_and_make_anew) {
    object* const old = far(types::thing, "old");
    part("p", a);
    copy(a);
    rule(types::thing, paste_action::replace, old);
    const std::string before = far_dump();
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(p)");
    EXPECT_EQ(old->state(), state::deleted);
    expect_paste_undone_and_redone(before);
}

TEST_F(paste_rules, that_replace_what_cannot_go_leave_the_node_out) {
    copy_all({a, part("p")});
    rule(types::thing, paste_action::replace, nullptr);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "p") << "nothing is nothing that can go";
    far_model->undo();

    rule(types::thing, paste_action::replace, far_root);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "p") << "a model stays while it is being changed";
    EXPECT_EQ(pasted.size(), 1U);
}

TEST_F(paste_rules, that_replace_what_is_gone_already_have_it_made) {
    far_model->begin_transaction("keep");
    object* const old = far(types::thing, "old");
    fw.delete_object(old);
    far_model->end_transaction();
    copy(a);
    rule(types::thing, paste_action::replace, old);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a");
}

TEST_F(paste_rules, that_replace_what_a_hook_keeps_fail_the_paste) {
    object* const old = far(types::hooked, "old");
    copy_all({part("p"), a});
    rule(types::thing, paste_action::replace, old);
    hooks.refuse<obj_pre_delete_semantic>();
    expect_failure(); // the hook's refusal has rolled the transaction back
}

TEST_F(paste_rules, that_replace_the_owner_fail_the_paste) {
    object* const owner = far(types::thing, "owner");
    copy(a);
    rule(types::thing, paste_action::replace, owner);
    const std::string before = far_dump();
    EXPECT_FALSE(paste({owner})) << "the new object has nowhere to go";
    expect_untouched(before);
}

// Using what is there

TEST_F(paste_rules, that_use_what_is_there_give_it_values_and_children) {
    object* const present = far(types::thing, "present");
    far(types::part, "own child", present);
    object* const base = thing("base");
    object* const child = part("p", a);
    set(a, props::text, text("x"));
    set(child, props::reference, a);
    begin();
    a->set_property_not_inheritable(props::flag, true);
    end();
    add_base(a, base);
    copy_all({base, a});
    on_paste.target = present;
    rule(types::thing, [](const paste_call& call) {
        return call.name() == "a" ? paste_action::use_existing : paste_action::create;
    });
    const std::string before = far_dump();
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(own child p) base");
    EXPECT_EQ(pasted, (std::vector<object*>{found("base"), present}));
    EXPECT_EQ(own("a", props::text), "'x'");
    EXPECT_EQ(own("p", props::reference), "->a");
    EXPECT_TRUE(present->is_property_not_inheritable(props::flag));
    EXPECT_TRUE(present->inherits_from(found("base"), false));
    expect_paste_undone_and_redone(before);
}

TEST_F(paste_rules, that_use_what_is_there_leave_its_name_when_the_node_has_none) {
    object* const present = far(types::thing, "present");
    begin();
    a->delete_property(props::name);
    end();
    copy(a);
    rule(types::thing, paste_action::use_existing, present);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "present");
}

TEST_F(paste_rules, that_use_what_lies_elsewhere_leave_it_there) {
    object* const present = far(types::part, "present", far(types::thing, "owner"));
    copy(a);
    rule(types::thing, paste_action::use_existing, present);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "owner(a)");
    EXPECT_EQ(present->type(), types::part);
}

TEST_F(paste_rules, that_use_what_is_gone_leave_the_node_out) {
    far_model->begin_transaction("keep");
    object* const gone = far(types::thing, "gone");
    fw.delete_object(gone);
    far_model->end_transaction();
    part("p", a);
    object* const b = part("b");
    set(b, props::reference, a);
    copy_all({a, b});
    rule(types::thing, paste_action::use_existing, gone);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "b");
    EXPECT_EQ(own("b", props::reference), "none");
    EXPECT_EQ(pasted.size(), 1U);
}

TEST_F(paste_rules, that_use_nothing_have_it_made) {
    copy(a);
    rule(types::thing, paste_action::use_existing, nullptr);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a");
}

TEST_F(paste_rules, that_use_one_object_for_two_nodes_give_it_both) {
    object* const present = far(types::thing, "present");
    object* const b = thing("b");
    part("pa", a);
    part("pb", b);
    set(a, props::number, number(1));
    object* const referrer = part("r");
    set(referrer, props::list, {a, b});
    copy_all({a, b, referrer});
    rule(types::thing, paste_action::use_existing, present);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "b(pa pb) r");
    EXPECT_EQ(own("b", props::number), "'1'");
    EXPECT_EQ(own("r", props::list), "[->b|->b|]");
}

// Mapping

TEST_F(paste_rules, that_map_make_and_change_nothing) {
    object* const present = far(types::thing, "present");
    object* const child = part("p", a);
    object* const referrer = part("r");
    set(a, props::text, text("x"));
    set(referrer, props::reference, a);
    set(referrer, 4711, child);
    copy_all({referrer, a});
    rule(types::thing, paste_action::map_to_existing, present);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "present r") << "no child is made";
    EXPECT_EQ(own("present", props::text), "none");
    EXPECT_EQ(own("r", props::reference), "->present");
    EXPECT_EQ(own("r", 4711), "none");
    EXPECT_EQ(pasted, (std::vector<object*>{found("r"), present}));
}

TEST_F(paste_rules, that_map_have_its_subtree_stand_for_the_ids_it_has) {
    object* const referrer = part("r"); // ids are made in order: find one that the other model has as well
    object* const source_child = part("p", a);
    object* const present = far(types::thing, "present");
    object* inside = present;
    while (inside->id() < source_child->id())
        inside = far(types::part, "f" + std::to_string(inside->id()), inside);
    ASSERT_EQ(inside->id(), source_child->id());
    set(referrer, props::reference, source_child);
    copy_all({a, referrer});
    rule(types::thing, paste_action::map_to_existing, present);
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("r", props::reference), "->" + name_or_number(inside));
}

TEST_F(paste_rules, that_map_to_nothing_fail_the_paste) {
    copy_all({part("p"), a});
    rule(types::thing, paste_action::map_to_existing, nullptr);
    expect_failure();
}

TEST_F(paste_rules, ask_for_their_object_behind_their_answer) {
    copy(a);
    std::string order;
    object* const present = far(types::thing, "present");
    on_paste.on_object = [&] {
        order += "object ";
        return present;
    };
    rule(types::thing, [&](const paste_call&) {
        order += "paste ";
        return paste_action::use_existing;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(order.substr(0, 12), "paste object");
}

TEST_F(paste_rules, are_replaced_by_the_next_of_the_type) {
    copy(a);
    paste_script other;
    other.on_call = [](const paste_call&) { return paste_action::fail; };
    clip->set_paste_rule(types::thing, scripted_paste_rule{other});
    rule(types::thing, paste_action::create);
    EXPECT_EQ(other.alive, 0);
    EXPECT_TRUE(paste());
}

TEST_F(paste_rules, give_back_the_values_that_they_were_shown) {
    counted_value::enter();
    set(a, props::real, counted_value{3});
    copy(a);
    const long before = counted_value::alive;
    for (const int action : {paste_action::create, paste_action::replace, paste_action::defer,
                             paste_action::map_to_existing, paste_action::fail}) {
        SCOPED_TRACE(action);
        rule(types::thing, action);
        paste();
        far_model->rollback_last_transaction();
        far_model->clear_history();
        EXPECT_EQ(counted_value::alive, before);
    }
}

} // namespace
} // namespace kelm::test
