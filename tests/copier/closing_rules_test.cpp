// Rules at the end of a paste: the order of children, and the last word.
// Rules for nodes are paste_rules_test.
#include "tests/copier/copy_paste_world.h"

#include <algorithm>

namespace kelm::test {
namespace {

class order_rules : public copy_paste_world {
protected:
    order_rules() {
        for (const char* name : {"p", "q", "r"}) part(name, a);
    }
    void rule(u32 owner, u32 child) {
        clip->set_object_order_rule(owner, child, scripted_order_rule{on_order});
    }
    object* const a = thing("a");
};

TEST_F(order_rules, are_told_children_that_were_pasted_with_their_source_positions) {
    object* const into = far(types::thing, "into");
    far(types::part, "there before", into);
    copy_all({a->children()[2], a->children()[0]});
    rule(types::thing, types::part);
    EXPECT_TRUE(paste({into}));
    EXPECT_EQ(on_order.take(), "into 101: r@2 p@0\n");
    EXPECT_EQ(far_tree(), "into(there before r p)");
}

TEST_F(order_rules, may_put_children_in_order) {
    object* const into = far(types::thing, "into");
    far(types::part, "there before", into);
    copy_all({a->children()[2], a->children()[0]});
    on_order.on_call = [](object* owner, u32, pasted_positions children) {
        std::ranges::sort(children, {}, &std::pair<object*, u32>::second);
        std::size_t position = 0;
        for (const auto& [child, wanted] : children) owner->set_child_position(child, position++);
        return true;
    };
    rule(types::thing, types::part);
    const std::string before = far_dump();
    EXPECT_TRUE(paste({into}));
    EXPECT_EQ(far_tree(), "into(p r there before)");
    expect_paste_undone_and_redone(before);
}

TEST_F(order_rules, are_for_a_pair_of_types_and_each_owner_that_got_such_children) {
    thing("inner", a);
    object* const b = thing("b");
    part("s", b);
    make(types::special_thing, "special", b);
    copy_all({a, b});
    rule(types::thing, types::part);
    rule(types::part, types::part);
    rule(types::thing, types::hooked);
    rule(type_id::model, types::part);
    EXPECT_TRUE(paste());
    EXPECT_LT(found("a")->id(), found("b")->id());
    EXPECT_EQ(on_order.take(), "a 101: p@0 q@1 r@2\nb 101: s@0\n") << "by id";
}

TEST_F(order_rules, leave_children_of_derived_types_to_their_own_rules) {
    make(types::special_thing, "special", a);
    thing("plain", a);
    copy(a);
    rule(types::thing, types::thing);
    EXPECT_TRUE(paste());
    EXPECT_EQ(on_order.take(), "a 100: plain@0\n");
}

TEST_F(order_rules, go_in_the_order_in_which_they_were_set_last) {
    thing("inner", a);
    copy(a);
    rule(types::thing, types::part);
    rule(types::thing, types::thing);
    rule(types::thing, types::part);
    EXPECT_TRUE(paste());
    EXPECT_EQ(on_order.take(), "a 100: inner@0\na 101: p@0 q@1 r@2\n");
}

TEST_F(order_rules, see_what_was_used_and_mapped_as_well) {
    object* const into = far(types::thing, "into");
    object* const used = far(types::part, "used", into);
    object* const mapped = far(types::part, "mapped", into);
    far(types::part, "other", into);
    for (object* each : a->children()) copy(each);
    on_paste.on_call = [&](const paste_call& call) {
        on_paste.target = call.name() == "p" ? used : mapped;
        return call.name() == "p"   ? paste_action::use_existing
               : call.name() == "q" ? paste_action::map_to_existing
                                    : paste_action::create;
    };
    clip->set_paste_rule(types::part, scripted_paste_rule{on_paste});
    rule(types::thing, types::part);
    EXPECT_TRUE(paste({into}));
    EXPECT_EQ(on_order.take(), "into 101: p@0 mapped@1 r@2\n");
}

TEST_F(order_rules, are_not_asked_where_everything_was_mapped) {
    object* const into = far(types::thing, "into");
    on_paste.target = far(types::part, "mapped", into);
    on_paste.on_call = [](const paste_call&) { return paste_action::map_to_existing; };
    clip->set_paste_rule(types::part, scripted_paste_rule{on_paste});
    copy(a->children()[0]);
    rule(types::thing, types::part);
    EXPECT_TRUE(paste({into}));
    EXPECT_EQ(on_order.take(), "");
}

TEST_F(order_rules, come_behind_what_had_to_go_and_behind_extra_values) {
    object* const base = linked("base");
    set(base, props::text, text("extra"));
    object* const owner = thing("owner");
    object* const stays = linked("stays", owner);
    object* const goes = linked("goes", owner);
    set(goes, props::needed, thing("outside"));
    add_base(stays, base);
    clip->add_extra_property(types::linked, props::text);
    copy(owner);
    std::string seen;
    on_order.on_call = [&](object*, u32, const pasted_positions& children) {
        seen = as_text(children[0].first->get_own_property(props::text));
        return true;
    };
    rule(types::thing, types::linked);
    EXPECT_TRUE(paste());
    EXPECT_EQ(on_order.take(), "owner 42001: stays@0\n");
    EXPECT_EQ(seen, "extra");
}

TEST_F(order_rules, are_not_asked_about_owners_that_had_to_go) {
    object* const owner = linked("owner");
    set(owner, props::needed, thing("outside"));
    part("child", owner);
    copy(owner);
    rule(types::linked, types::part);
    EXPECT_TRUE(paste());
    EXPECT_EQ(on_order.take(), "");
}

TEST_F(order_rules, may_fail_the_paste) {
    copy(a);
    on_order.on_call = [](object*, u32, const pasted_positions&) { return false; };
    rule(types::thing, types::part);
    expect_failure();
}

TEST_F(order_rules, that_fail_leave_the_later_ones_unasked) {
    thing("inner", a);
    copy(a);
    on_order.on_call = [](object*, u32, const pasted_positions&) { return false; };
    rule(types::thing, types::thing);
    rule(types::thing, types::part);
    EXPECT_FALSE(paste());
    EXPECT_EQ(on_order.take(), "a 100: inner@0\n");
}

class end_rules : public copy_paste_world {
protected:
    void rule(std::function<bool(kelm::model*)> what = {}) {
        on_end.on_call = std::move(what);
        clip->set_end_transaction_rule(scripted_end_rule{on_end});
    }
    object* const a = thing("a");
};

TEST_F(end_rules, have_the_last_word_inside_the_transaction) {
    copy(a);
    rule([&](kelm::model* where) {
        EXPECT_EQ(where, far_model);
        EXPECT_EQ(far_tree(), "a");
        return found("a")->set_property(props::text, text("by rule"));
    });
    const std::string before = far_dump();
    EXPECT_TRUE(paste());
    EXPECT_EQ(on_end.take(), "open\n");
    EXPECT_EQ(own("a", props::text), "'by rule'");
    expect_paste_undone_and_redone(before);
}

TEST_F(end_rules, that_refuse_take_everything_back) {
    copy(a);
    rule([](kelm::model*) { return false; });
    expect_failure();
    EXPECT_EQ(on_end.take(), "open\n");
    rule();
    EXPECT_TRUE(paste());
}

TEST_F(end_rules, are_asked_about_an_empty_paste) {
    rule([](kelm::model*) { return false; });
    expect_failure();
    EXPECT_EQ(on_end.take(), "open\n");
}

TEST_F(end_rules, are_asked_behind_a_failure_and_cannot_undo_it) {
    copy(a);
    on_paste.on_call = [](const paste_call&) { return paste_action::fail; };
    clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
    rule();
    expect_failure();
    EXPECT_EQ(on_end.take(), "open\n");
}

TEST_F(end_rules, are_asked_behind_a_refusal_that_has_rolled_everything_back) {
    object* const b = hooked("b");
    set(b, props::text, text("x"));
    copy(b);
    hooks.on<pre_prop_set_semantic>([](hook_call& call) { return call.numbers[0] != props::text; });
    rule();
    expect_failure();
    EXPECT_EQ(on_end.take(), "closed\n");
}

TEST_F(end_rules, that_refuse_leave_told_what_was_pasted) {
    copy(a);
    rule([](kelm::model*) { return false; });
    EXPECT_FALSE(paste());
    EXPECT_EQ(pasted.size(), 1U) << "it is stale, and told all the same";
}

TEST_F(end_rules, are_replaced_by_the_next) {
    end_script other;
    other.on_call = [](kelm::model*) { return false; };
    clip->set_end_transaction_rule(scripted_end_rule{other});
    rule();
    EXPECT_EQ(other.alive, 0);
    EXPECT_TRUE(paste());
}

} // namespace
} // namespace kelm::test
