// Adding and removing children: places, messages, hooks, refusals.
// Order inside a type is child_order_test, listings are listing_test.
#include "tests/object/hook_lines.h"

namespace kelm::test {

namespace {

class children_test : public world {
protected:
    /// \returns an object that names its owner and stands in no list
    object* unlisted(u32 type, const std::string& name) {
        object* const made = make(type, name);
        root->remove_child(made);
        model->clear_history();
        return made;
    }
};

} // namespace

TEST_F(children_test, stand_in_the_order_of_types_and_inside_a_type_in_the_order_of_coming) {
    object* const owner = thing("owner");
    object* const a = part("a", owner);
    object* const b = part("b", owner);
    object* const c = thing("c", owner);
    EXPECT_EQ(names_of(owner->children()), "c a b");
    EXPECT_EQ(owner->child_position(b), 1u);
    EXPECT_EQ(owner->child_position(c), 0u);
    EXPECT_EQ(owner->child_at(types::part, 0), a);
    EXPECT_EQ(owner->child_at(types::part, 2), nullptr);
    EXPECT_EQ(owner->child_at(types::other, 0), nullptr);
}

TEST_F(children_test, of_a_lower_type_move_nothing_in_the_runs_of_other_types) {
    object* const owner = thing("owner");
    object* const a = part("a", owner);
    object* const b = part("b", owner);
    thing("c", owner);
    make(types::other, "d", owner);
    EXPECT_EQ(owner->child_position(a), 0u);
    EXPECT_EQ(owner->child_position(b), 1u);
    EXPECT_EQ(names_of(owner->children()), "c a b d");
}

TEST_F(children_test, positions_and_counts_without_any_child) {
    object* const owner = thing("owner");
    EXPECT_FALSE(owner->has_children());
    EXPECT_EQ(owner->child_position(root), npos);
    EXPECT_EQ(owner->child_position(nullptr), npos);
    EXPECT_EQ(owner->child_at(types::part, 0), nullptr);
    EXPECT_EQ(owner->child_count(types::part), 0u);
}

TEST_F(children_test, adding_sets_the_owner_and_is_told_by_it) {
    object* const owner = thing("owner");
    part("first", owner);
    object* const child = unlisted(types::part, "child");
    recorder heard;
    heard.watch(owner);
    heard.watch(child);
    begin();
    EXPECT_TRUE(owner->add_child(child));
    end();
    EXPECT_EQ(child->owner(), owner);
    EXPECT_EQ(heard.take(), "14 first Added Part owner.child of Thing owner\n");
    const auto* const said = message_cast<child_add_message>(model->message_at(1));
    ASSERT_TRUE(said);
    EXPECT_EQ(said->child(), child);
    EXPECT_EQ(said->pos(), 1u);
    EXPECT_TRUE(model->message_at(1)->is_user_created());
    EXPECT_EQ(model->message_at(1)->object(), owner);
}

TEST_F(children_test, adding_is_undone_and_redone) {
    object* const owner = thing("owner");
    object* const child = unlisted(types::part, "child");
    begin();
    owner->add_child(child);
    end();
    const std::string with = dump();
    recorder heard;
    heard.watch(owner);
    model->undo();
    EXPECT_FALSE(owner->has_children());
    EXPECT_EQ(heard.take(), "16 again Remove Child - Part owner.child from Thing owner\n");
    model->redo();
    EXPECT_EQ(dump(), with);
    EXPECT_EQ(heard.take(), "14 again Added Part owner.child of Thing owner\n");
}

TEST_F(children_test, removing_leaves_the_owner_as_it_is) {
    object* const owner = thing("owner");
    part("a", owner);
    object* const b = part("b", owner);
    part("c", owner);
    const std::string before = dump();
    recorder heard;
    heard.watch(owner);
    begin();
    EXPECT_TRUE(owner->remove_child(b));
    end();
    EXPECT_EQ(names_of(owner->children()), "a c");
    EXPECT_EQ(b->owner(), owner);
    EXPECT_EQ(b->model(), model);
    EXPECT_EQ(b->state(), state::normal);
    EXPECT_EQ(heard.take(), "16 first Remove Child - Part owner.b from Thing owner\n");
    EXPECT_EQ(message_cast<child_remove_message>(model->message_at(1))->pos(), 1u);
    model->undo();
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(heard.take(), "14 again Added Part owner.b of Thing owner\n");
    model->redo();
    EXPECT_EQ(names_of(owner->children()), "a c");
    EXPECT_EQ(heard.take(), "16 again Remove Child - Part owner.b from Thing owner\n");
}

TEST_F(children_test, removing_a_stranger_is_no_change) {
    object* const owner = hooked("owner");
    object* const stranger = thing("stranger");
    std::string lines;
    write_down(hooks, lines, {23, 24});
    begin();
    EXPECT_TRUE(owner->remove_child(stranger)); // no list yet: not even the hooks are asked
    EXPECT_EQ(lines, "");
    end();
    part("child", owner);
    begin();
    EXPECT_TRUE(owner->remove_child(stranger));
    EXPECT_TRUE(owner->remove_child(nullptr));
    EXPECT_EQ(lines, "23 owner stranger\n");
    EXPECT_EQ(message_types(), "1");
    end();
}

TEST_F(children_test, that_cannot_be_owned_are_refused) {
    object* const owner = thing("owner");
    object* const below = part("below", owner);
    object* const elsewhere = part("elsewhere", thing("another"));
    object* const second_root = fw.create_object(type_id::model, nullptr);
    object* const foreign = fw.create_object(types::thing, second_root);
    struct row {
        const char* why;
        object* owner;
        object* child;
    };
    for (const row& r :
         {row{"null", owner, nullptr}, row{"itself", owner, owner}, row{"its owner", below, owner},
          row{"the model", owner, root}, row{"an object of another model", owner, foreign},
          row{"a child of another owner", owner, elsewhere}}) {
        SCOPED_TRACE(r.why);
        const std::string before = dump();
        begin();
        root->set_property(props::text, text("x"));
        EXPECT_FALSE(r.owner->add_child(r.child));
        EXPECT_FALSE(model->in_transaction()); // rolled back
        EXPECT_EQ(dump(), before);
        EXPECT_FALSE(r.owner->add_child(r.child));
        EXPECT_EQ(dump(), before);
        EXPECT_EQ(model->message_count(), 0u);
    }
    EXPECT_EQ(foreign->owner(), second_root);
    fw.delete_object(second_root);
    fw.set_in_semantic(false);
}

TEST_F(children_test, that_are_there_already_are_no_change) {
    object* const owner = thing("owner");
    object* const a = part("a", owner);
    part("b", owner);
    begin();
    EXPECT_TRUE(owner->add_child(a));
    EXPECT_EQ(message_types(), "1");
    EXPECT_EQ(names_of(owner->children()), "a b");
    end();
}

TEST_F(children_test, hooks_run_before_and_behind_the_change) {
    object* const owner = hooked("owner");
    object* const child = unlisted(types::part, "child");
    recorder heard;
    heard.watch(owner);
    std::string lines;
    heard.meanwhile = [&](message* what) { lines += "told " + std::to_string(what->type()) + "\n"; };
    const auto note = [&](hook_call& call) {
        lines += test::line_of(call) + " at " + std::to_string(owner->child_position(child)) +
                 (fw.in_semantic() ? " marked" : "") + "\n";
        return true;
    };
    for (const int kind : {21, 22, 23, 24}) hooks.on(kind, note);
    begin();
    EXPECT_TRUE(owner->add_child(child));
    EXPECT_TRUE(owner->remove_child(child));
    end();
    const std::string none = std::to_string(npos);
    EXPECT_EQ(lines, "21 owner child at " + none + " marked\ntold 14\n22 owner child at 0 marked\n" +
                         "23 owner child at 0 marked\ntold 16\n24 owner child at " + none + " marked\n");
    EXPECT_FALSE(fw.in_semantic());
}

TEST_F(children_test, hooks_that_refuse_have_the_open_level_rolled_back) {
    object* const owner = hooked("owner");
    object* const first = part("first", owner);
    part("second", owner);
    object* const loose = part("loose", owner);
    owner->remove_child(loose);
    model->clear_history();
    object* const moving = hooked("moving");
    object* const place = thing("place");
    struct row {
        int kind;
        std::function<bool()> act;
    };
    const std::function<bool()> add = [&] { return owner->add_child(loose); };
    const std::function<bool()> remove = [&] { return owner->remove_child(first); };
    const std::function<bool()> order = [&] { return owner->set_child_position(first, 1); };
    const std::function<bool()> move = [&] { return moving->set_owner(place); };
    for (const row& r : {row{21, add}, row{22, add}, row{23, remove}, row{24, remove}, row{25, order},
                         row{26, order}, row{39, move}, row{40, move}}) {
        SCOPED_TRACE(r.kind);
        hooks.refuse(r.kind);
        const std::string before = dump();
        begin();
        root->set_property(props::text, text("outer"));
        begin();
        EXPECT_FALSE(r.act());
        EXPECT_FALSE(fw.in_semantic()); // the rollback has cleared it
        EXPECT_EQ(message_types(), "1 7");
        EXPECT_FALSE(r.act());
        EXPECT_FALSE(model->in_transaction());
        EXPECT_EQ(dump(), before);
        EXPECT_EQ(model->message_count(), 0u);
        hooks.clear();
    }
}

TEST_F(children_test, hooks_that_refuse_outside_a_transaction_leave_what_was_done) {
    object* const owner = hooked("owner");
    object* const child = unlisted(types::part, "child");
    hooks.refuse<pre_add_child_semantic>();
    EXPECT_FALSE(owner->add_child(child));
    EXPECT_TRUE(fw.in_semantic());
    EXPECT_FALSE(owner->has_children());
    fw.set_in_semantic(false);
    hooks.clear();
    hooks.refuse<post_add_child_semantic>();
    EXPECT_FALSE(owner->add_child(child));
    EXPECT_TRUE(fw.in_semantic());
    EXPECT_EQ(owner->child_position(child), 0u);
    EXPECT_EQ(message_types(), "14");
    fw.set_in_semantic(false);
    hooks.clear();
    hooks.refuse<pre_remove_child_semantic>();
    EXPECT_FALSE(owner->remove_child(child));
    EXPECT_EQ(owner->child_position(child), 0u);
    hooks.clear();
    hooks.refuse<post_remove_child_semantic>();
    EXPECT_FALSE(owner->remove_child(child));
    EXPECT_FALSE(owner->has_children());
    EXPECT_EQ(message_types(), "14 16");
    hooks.clear();
    fw.set_in_semantic(false);
}

TEST_F(children_test, observers_that_refuse_leave_change_and_message) {
    object* const owner = hooked("owner");
    object* const child = unlisted(types::part, "child");
    std::string lines;
    write_down(hooks, lines, {22, 24});
    recorder heard;
    heard.watch(owner);
    heard.answer = false;
    begin();
    EXPECT_FALSE(owner->add_child(child));
    EXPECT_TRUE(model->in_transaction());
    EXPECT_EQ(owner->child_position(child), 0u);
    EXPECT_FALSE(owner->remove_child(child));
    EXPECT_FALSE(owner->has_children());
    EXPECT_EQ(message_types(), "1 14 16");
    EXPECT_EQ(lines, ""); // nor do the hooks behind run
    end();
}

TEST_F(children_test, hooks_may_react_in_the_same_transaction) {
    object* const owner = hooked("owner");
    object* const child = unlisted(types::part, "child");
    const std::string before = dump();
    hooks.on<post_add_child_semantic>(
        [](hook_call& call) { return call.others[0]->set_property(props::text, text("adopted")); });
    begin();
    EXPECT_TRUE(owner->add_child(child));
    end();
    EXPECT_EQ(message_types(), "1 14 7 2");
    EXPECT_TRUE(model->message_at(1)->is_user_created());
    EXPECT_FALSE(model->message_at(2)->is_user_created());
    model->undo();
    EXPECT_FALSE(child->defines_property(props::text));
    EXPECT_FALSE(owner->has_children());
    model->redo();
    EXPECT_EQ(as_text(child->get_property(props::text)), "adopted");
    EXPECT_NE(dump(), before);
}

TEST_F(children_test, keeps_changing_those_of_the_deleted_where_no_hook_asks) {
    struct row {
        const char* why;
        u32 type;
        const char* messages;
        std::size_t count;
    };
    for (const row& r : {row{"no hooks: the change is made", types::thing, "14 17 16", 0},
                         row{"hooks: they run, and nothing changes", types::hooked, "", 0}}) {
        SCOPED_TRACE(r.why);
        object* const owner = make(r.type, "owner");
        object* const child = unlisted(types::part, "child");
        std::string lines;
        write_down(hooks, lines, {21, 22, 23, 24, 25, 26});
        begin();
        fw.delete_object(owner);
        end();
        const std::size_t from = model->message_count();
        EXPECT_TRUE(owner->add_child(child));
        EXPECT_EQ(owner->child_position(child), r.type == types::thing ? 0u : npos);
        EXPECT_TRUE(owner->set_child_position(child, 0));
        EXPECT_TRUE(owner->remove_child(child));
        EXPECT_EQ(message_types(from), r.messages);
        // An object that never had children is not even asked when one is removed.
        EXPECT_EQ(lines,
                  r.type == types::thing ? "" : "21 none child\n25 none child 0\n"); // the name is gone
        hooks.clear();
    }
}

TEST_F(children_test, removing_several_goes_by_the_filter_and_past_refusals) {
    object* const owner = hooked("owner");
    part("a", owner);
    part("b", owner);
    part("c", owner);
    thing("d", owner);
    hooks.on<pre_remove_child_semantic>([](hook_call& call) { return own_name(call.others[0]) != "b"; });
    obj_filter_type parts{types::part};
    EXPECT_FALSE(owner->remove_children(&parts));
    EXPECT_EQ(names_of(owner->children()), "d b");
    hooks.clear();
    fw.set_in_semantic(false);
    EXPECT_TRUE(owner->remove_children(&parts));
    EXPECT_EQ(names_of(owner->children()), "d");
    EXPECT_TRUE(owner->remove_children(nullptr));
    EXPECT_FALSE(owner->has_children());
    EXPECT_TRUE(owner->remove_children(nullptr));
    EXPECT_TRUE(thing("empty")->remove_children(nullptr));
}

TEST_F(children_test, removing_several_reads_them_through_the_hooks_of_reads) {
    object* const owner = hooked("owner");
    part("a", owner);
    hooks.refuse<pre_children_get_semantic>();
    EXPECT_TRUE(owner->remove_children(nullptr));
    hooks.clear();
    fw.set_in_semantic(false);
    EXPECT_EQ(names_of(owner->children()), "a");
}

TEST_F(children_test, one_that_goes_while_several_are_removed_is_passed_over) {
    object* const owner = hooked("owner");
    object* const a = part("a", owner);
    object* const b = part("b", owner);
    std::string lines;
    hooks.on<post_remove_child_semantic>([&](hook_call& call) {
        lines += test::line_of(call) + "\n";
        return call.others[0] != a || owner->remove_child(b);
    });
    EXPECT_TRUE(owner->remove_children(nullptr));
    EXPECT_EQ(lines, "24 owner a\n24 owner b\n");
}

} // namespace kelm::test
