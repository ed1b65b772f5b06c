// Nodes that a paste rule puts off: when it is asked again, and what comes of them.
// The other actions of paste rules are paste_rules_test.
#include "tests/copier/copy_paste_world.h"

#include <set>

namespace kelm::test {
namespace {

class deferred_nodes : public copy_paste_world {
protected:
    /// A rule for things that asks `ready` about each.
    void defer_until(std::function<bool(const paste_call&)> ready) {
        on_paste.on_call = [=](const paste_call& call) {
            return ready(call) ? paste_action::create : paste_action::defer;
        };
        clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
    }
    object* const a = thing("a");
};

TEST_F(deferred_nodes, that_are_put_off_for_ever_are_left_out) {
    part("p", a);
    object* const b = part("b");
    set(b, props::reference, a);
    copy_all({a, b});
    defer_until([](const paste_call&) { return false; });
    EXPECT_TRUE(paste());
    EXPECT_EQ(on_paste.take(), "#1 100 a\n#1 100 a\n#1 100 a last\n") << "once more, and a last time";
    EXPECT_EQ(far_tree(), "b");
    EXPECT_EQ(own("b", props::reference), "none");
    EXPECT_EQ(pasted, std::vector<object*>{found("b")});
}

TEST_F(deferred_nodes, that_wait_for_the_last_pass_are_made_then) {
    part("p", a);
    object* const b = part("b");
    set(b, props::reference, a);
    copy_all({a, b});
    defer_until([](const paste_call& call) { return call.is_last; });
    const std::string before = far_dump();
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(p) b");
    EXPECT_EQ(own("b", props::reference), "->a") << "what waits is looked at again behind it";
    EXPECT_EQ(pasted, (std::vector<object*>{found("a"), found("b")}));
    expect_paste_undone_and_redone(before);
}

TEST_F(deferred_nodes, are_asked_again_behind_every_progress) {
    thing("b"); // b waits for c, a for b
    copy_all({a, root->child_at(types::thing, 1), thing("c")});
    defer_until([&](const paste_call& call) {
        if (call.name() == "a") return found("b") != nullptr;
        if (call.name() == "b") return found("c") != nullptr;
        return true;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(on_paste.take(), "#1 100 a\n#1 100 b\n#1 100 c\n" // c is made
                               "#1 100 a\n#1 100 b\n"           // b is made
                               "#1 100 a\n");                   // a is made
    EXPECT_EQ(far_tree(), "c b a");
}

TEST_F(deferred_nodes, see_values_that_have_come_meanwhile) {
    object* const b = part("b");
    set(a, props::reference, b);
    copy_all({a, b});
    defer_until([](const paste_call& call) { return call.value(props::reference) != "null"; });
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("a", props::reference), "->b");
    EXPECT_EQ(on_paste.take(), "#1 100 a 13=null\n#1 100 a 13=#" + std::to_string(found("b")->id()) + "\n");
}

TEST_F(deferred_nodes, below_others_are_made_under_their_owner) {
    object* const owner = part("owner");
    object* const child = thing("child", owner);
    part("grandchild", child);
    part("sibling", owner);
    copy(owner);
    defer_until([](const paste_call& call) { return call.is_last; });
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "owner(child(grandchild) sibling)");
    EXPECT_EQ(on_paste.take(), "owner 100 child\nowner 100 child\nowner 100 child last\n");
}

TEST_F(deferred_nodes, with_deferred_ones_below_come_one_after_the_other) {
    thing("c", thing("b", a));
    copy(a);
    std::multiset<u32> asked;
    defer_until([&](const paste_call& call) {
        asked.insert(call.source_id);
        return asked.count(call.source_id) == 2;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(b(c))");
}

TEST_F(deferred_nodes, on_the_last_pass_bring_their_children_on_that_pass) {
    object* const b = thing("b", a);
    thing("c", b);
    copy(a);
    defer_until([&](const paste_call& call) { return call.is_last; });
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(b(c))");
    EXPECT_EQ(on_paste.take(), "#1 100 a\n#1 100 a\n#1 100 a last\na 100 b last\nb 100 c last\n");
}

TEST_F(deferred_nodes, whose_owner_goes_are_forgotten) {
    object* const owner = part("owner");
    thing("child", owner);
    copy_all({owner, a});
    defer_until([&](const paste_call& call) {
        if (call.name() == "child") return false;
        fw.delete_object(found("owner"));
        return true;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a");
    EXPECT_EQ(on_paste.take(), "owner 100 child\n#1 100 a\n");
}

TEST_F(deferred_nodes, that_are_mapped_meanwhile_are_forgotten) {
    // What is mapped stands for the ids that its subtree has in the other model.
    object* const waiting = thing("waiting");
    object* const b = thing("b");
    copy_all({waiting, b});
    object* const present = far(types::part, "present");
    while (far_model->last_object_id() + 1 < waiting->id()) far(types::part, "filler");
    object* const inside = far(types::part, "inside", present);
    ASSERT_EQ(inside->id(), waiting->id());
    on_paste.target = present;
    on_paste.on_call = [](const paste_call& call) {
        return call.name() == "waiting" ? paste_action::defer : paste_action::map_to_existing;
    };
    clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
    EXPECT_TRUE(paste());
    EXPECT_EQ(on_paste.take(), "#1 100 waiting\n#1 100 b\n");
    EXPECT_EQ(pasted, (std::vector<object*>{inside, present}));
}

TEST_F(deferred_nodes, may_fail_the_paste_later) {
    copy_all({a, part("p")});
    on_paste.on_call = [](const paste_call& call) {
        return call.is_last ? paste_action::fail : paste_action::defer;
    };
    clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
    expect_failure();
    EXPECT_TRUE(far_tree().empty());
}

TEST_F(deferred_nodes, may_use_or_map_what_has_come_meanwhile) {
    for (const int action : {paste_action::use_existing, paste_action::map_to_existing}) {
        SCOPED_TRACE(action);
        clip = fw.create_copier(model);
        object* const b = part("b");
        object* const referrer = part("r");
        set(referrer, props::reference, a);
        copy_all({a, referrer, b});
        on_paste.on_object = [&] { return found("b"); };
        on_paste.on_call = [&](const paste_call&) { return found("b") ? action : paste_action::defer; };
        clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
        EXPECT_TRUE(paste());
        EXPECT_EQ(far_tree(), action == paste_action::use_existing ? "r a" : "r b");
        EXPECT_EQ(own("r", props::reference), action == paste_action::use_existing ? "->a" : "->b");
        far_model->undo();
    }
}

TEST_F(deferred_nodes, that_are_left_out_do_not_return_in_the_next_paste) {
    copy(a);
    defer_until([](const paste_call&) { return false; });
    EXPECT_TRUE(paste());
    on_paste.take();
    defer_until([](const paste_call&) { return true; });
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a");
    EXPECT_EQ(on_paste.take(), "#1 100 a\n");
}

TEST_F(deferred_nodes, of_a_failed_paste_do_not_return_in_the_next) {
    object* const p = part("p");
    copy_all({a, p});
    defer_until([](const paste_call&) { return false; });
    paste_script failing;
    failing.on_call = [](const paste_call&) { return paste_action::fail; };
    clip->set_paste_rule(types::part, scripted_paste_rule{failing});
    EXPECT_FALSE(paste());
    on_paste.take();
    failing.on_call = nullptr;
    defer_until([](const paste_call&) { return true; });
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a p");
    EXPECT_EQ(on_paste.take(), "#1 100 a\n");
    clip.reset(); // before its script
}

TEST_F(deferred_nodes, lend_their_values_to_nobody_once_the_snapshot_is_replaced) {
    copy(a);
    defer_until([](const paste_call&) { return false; });
    EXPECT_TRUE(paste());
    const shared_ptr<copier> empty = fw.create_copier(model);
    std::istringstream in{bytes_of(*empty)};
    EXPECT_TRUE(clip->read(in));
    on_paste.take();
    EXPECT_TRUE(paste());
    EXPECT_EQ(on_paste.take(), "");
}

} // namespace
} // namespace kelm::test
