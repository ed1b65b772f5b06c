// Moving objects to another owner, and asking for owners and models.
// Lists of children are children_test.
#include "tests/object/hook_lines.h"

#include <kelm/object_helpers.h>

namespace kelm::test {

namespace {

using owner_test = world;

} // namespace

TEST_F(owner_test, is_the_direct_one_or_the_nearest_of_a_type) {
    object* const outer = thing("outer");
    object* const middle = part("middle", outer);
    object* const inner = thing("inner", middle);
    object* const leaf = thing("leaf", inner);
    EXPECT_EQ(leaf->owner(), inner);
    EXPECT_EQ(leaf->owner(types::thing), inner); // never the object itself
    EXPECT_EQ(leaf->owner(types::part), middle);
    EXPECT_EQ(inner->owner(types::thing), outer);
    EXPECT_EQ(leaf->owner(type_id::model), root);
    EXPECT_EQ(leaf->owner(types::other), nullptr);
    EXPECT_EQ(root->owner(), nullptr);
    EXPECT_EQ(root->owner(type_id::model), nullptr);
    EXPECT_EQ(root->model(), model);
    EXPECT_EQ(leaf->model(), model);
}

TEST_F(owner_test, changes_with_two_changes_of_lists_and_one_of_its_own) {
    object* const from = thing("from");
    object* const to = thing("to");
    object* const moved = part("moved", from);
    part("other", to);
    thing("low", to);
    const std::string before = dump();
    recorder heard;
    for (object* each : {from, to, moved}) heard.watch(each);
    begin();
    EXPECT_TRUE(moved->set_owner(to));
    end();
    const std::string after = dump();
    EXPECT_EQ(moved->owner(), to);
    EXPECT_EQ(names_of(to->children()), "low other moved");
    EXPECT_FALSE(from->has_children());
    EXPECT_EQ(heard.take(), "16 first Remove Child - Part from.moved from Thing from\n"
                            "14 first Added Part to.moved of Thing to\n"
                            "18 first Set Owner - for Part to.moved to Thing:to, old owner: Thing:from\n");
    const auto* const said = message_cast<owner_set_message>(model->message_at(3));
    EXPECT_EQ(said->new_owner(), to);
    EXPECT_EQ(said->old_owner(), from);
    model->undo();
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(heard.take(), "18 again Set Owner - for Part from.moved to Thing:from, old owner: Thing:to\n"
                            "16 again Remove Child - Part from.moved from Thing to\n"
                            "14 again Added Part from.moved of Thing from\n");
    model->redo();
    EXPECT_EQ(dump(), after);
    EXPECT_EQ(heard.take(), "16 again Remove Child - Part from.moved from Thing from\n"
                            "14 again Added Part to.moved of Thing to\n"
                            "18 again Set Owner - for Part to.moved to Thing:to, old owner: Thing:from\n");
}

TEST_F(owner_test, while_it_is_taken_back_the_list_still_answers) {
    object* const from = thing("from");
    object* const to = thing("to");
    object* const moved = part("moved", from);
    begin();
    moved->set_owner(to);
    end();
    std::size_t place = npos;
    recorder heard;
    heard.watch(moved);
    heard.meanwhile = [&](message*) { place = to->child_position(moved); };
    model->undo();
    EXPECT_EQ(place, 0u); // told of between the owner and the lists
    EXPECT_EQ(to->child_position(moved), npos);
}

TEST_F(owner_test, given_once_more_moves_to_the_end_of_its_run) {
    object* const owner = thing("owner");
    object* const a = part("a", owner);
    part("b", owner);
    const std::string before = dump();
    begin();
    EXPECT_TRUE(a->set_owner(owner));
    end();
    EXPECT_EQ(names_of(owner->children()), "b a");
    EXPECT_EQ(message_types(), "1 16 14 18 2");
    model->undo();
    EXPECT_EQ(dump(), before);
}

TEST_F(owner_test, runs_the_hooks_of_all_three) {
    object* const from = hooked("from");
    object* const to = hooked("to");
    object* const moved = hooked("moved", from);
    std::string lines;
    write_down(hooks, lines, {21, 22, 23, 24, 39, 40});
    begin();
    EXPECT_TRUE(moved->set_owner(to));
    end();
    EXPECT_EQ(lines,
              "39 moved to\n23 from moved\n24 from moved\n21 to moved\n22 to moved\n40 moved to from\n");
}

TEST_F(owner_test, that_does_not_fit_is_refused_before_anything_moves) {
    object* const from = thing("from");
    object* const moved = part("moved", from);
    object* const below = part("below", moved);
    object* const deeper = thing("deeper", below);
    object* const second_root = fw.create_object(type_id::model, nullptr);
    object* const foreign = fw.create_object(types::thing, second_root);
    struct row {
        const char* why;
        object* what;
        object* owner;
    };
    for (const row& r :
         {row{"null", moved, nullptr}, row{"itself", moved, moved}, row{"a child", moved, below},
          row{"a descendant", moved, deeper}, row{"another model", moved, second_root},
          row{"an object of another model", moved, foreign}, row{"a model is owned by none", root, from},
          row{"a model, of another one", second_root, root}}) {
        SCOPED_TRACE(r.why);
        const std::string before = dump();
        begin();
        root->set_property(props::text, text("x"));
        EXPECT_FALSE(r.what->set_owner(r.owner));
        EXPECT_EQ(model->in_transaction(), r.what->model() != model);
        model->rollback_transaction_all();
        EXPECT_EQ(dump(), before);
        EXPECT_FALSE(r.what->set_owner(r.owner)); // outside a transaction as well
        EXPECT_EQ(dump(), before);
        EXPECT_EQ(model->message_count(), 0u);
    }
    fw.delete_object(second_root);
    fw.set_in_semantic(false);
}

TEST_F(owner_test, stays_when_the_old_or_the_new_one_refuses) {
    object* const from = hooked("from");
    object* const to = hooked("to");
    object* const moved = part("moved", from);
    const std::string before = dump();
    for (const int kind : {21, 22, 23, 24}) {
        SCOPED_TRACE(kind);
        hooks.refuse(kind);
        begin();
        EXPECT_FALSE(moved->set_owner(to));
        EXPECT_FALSE(model->in_transaction());
        EXPECT_EQ(dump(), before);
        hooks.clear();
    }
    hooks.refuse<pre_add_child_semantic>();
    EXPECT_FALSE(moved->set_owner(to)); // outside a transaction the first half stays
    EXPECT_FALSE(from->has_children());
    EXPECT_EQ(moved->owner(), from);
    EXPECT_EQ(message_types(), "16");
    EXPECT_TRUE(fw.in_semantic());
}

// The two halves are done by then, and undone: to go on would tell of a move that is none, and record it outside any
// transaction, behind which nothing can be undone any more.
TEST_F(owner_test, stays_untold_when_an_observer_of_a_half_rolls_back_and_answers_true) {
    object* const from = thing("from");
    object* const to = thing("to");
    object* const moved = part("moved", from);
    begin();
    from->set_property(props::text, text("earlier"));
    end();
    const std::string before = dump();
    for (object* const at : {from, to}) {
        SCOPED_TRACE(object_name(at));
        recorder ear;
        ear.watch(at);
        ear.meanwhile = [&](message* what) {
            if (what->is_first_run()) model->rollback_transaction();
        };
        begin();
        EXPECT_FALSE(moved->set_owner(to));
        EXPECT_FALSE(model->in_transaction());
        EXPECT_EQ(dump(), before);
        EXPECT_TRUE(model->can_undo()) << "the earlier transaction is the last one again";
    }
}

TEST_F(owner_test, keeps_moving_the_deleted_where_no_hook_asks) {
    object* const to = thing("to");
    object* const plain = thing("plain");
    object* const asked = hooked("asked");
    std::string lines;
    write_down(hooks, lines, {39, 40});
    begin();
    fw.delete_object(plain);
    fw.delete_object(asked);
    end();
    std::size_t from = model->message_count();
    EXPECT_TRUE(asked->set_owner(to));
    EXPECT_EQ(message_types(from), "");
    EXPECT_EQ(lines, "39 none to\n");
    EXPECT_EQ(asked->owner(), root);
    // Kept: without hooks nobody looks at the state.
    EXPECT_TRUE(plain->set_owner(to));
    EXPECT_EQ(message_types(from), "14 18");
    EXPECT_EQ(plain->owner(), to);
    EXPECT_EQ(to->child_at(types::thing, 0), plain);
    EXPECT_EQ(plain->state(), state::deleted);
    // The owner can go all the same, and nothing is left pointing at freed memory.
    from = model->message_count();
    EXPECT_TRUE(fw.delete_object(to));
    EXPECT_EQ(message_types(from), "5 15 10 16 6");
    model->clear_history();
}

TEST_F(owner_test, of_a_freed_deleted_object_forgets_it) {
    object* const to = thing("to");
    object* const plain = thing("plain");
    begin();
    fw.delete_object(plain);
    end();
    EXPECT_TRUE(plain->set_owner(to));
    EXPECT_TRUE(to->has_children());
    model->clear_history();
    EXPECT_FALSE(to->has_children());
}

TEST_F(owner_test, outlives_its_deletion_as_long_as_an_object_names_it) {
    object* const owner = thing("owner");
    object* const loose = part("loose", owner);
    owner->remove_child(loose);
    fw.delete_object(owner);
    model->clear_history(); // nothing can bring the owner back
    EXPECT_EQ(loose->owner(), owner);
    EXPECT_EQ(owner->state(), state::deleted);
    EXPECT_EQ(object_full_path_name(loose), "loose");
    EXPECT_EQ(loose->model(), model);
    EXPECT_TRUE(loose->set_owner(root));
    EXPECT_EQ(root->child_at(types::part, 0), loose);
    begin();
    EXPECT_TRUE(fw.delete_object(loose));
    end();
    model->undo();
    EXPECT_EQ(loose->owner(), root);
}

TEST_F(owner_test, that_was_kept_for_a_child_goes_with_it) {
    object* const top = thing("top");
    object* const owner = thing("owner", top);
    object* const loose = part("loose", owner);
    owner->remove_child(loose);
    fw.delete_object(top);
    model->clear_history();
    EXPECT_EQ(loose->owner()->owner(), top);
    EXPECT_TRUE(fw.delete_object(loose));
    model->clear_history();
    EXPECT_EQ(dump(), "1 type 1 state 0 owner -1\n");
}

TEST_F(owner_test, is_still_named_after_a_rollback_and_the_owners_end) {
    begin();
    object* const owner = fw.create_object(types::thing, root);
    end();
    begin();
    object* const kept = fw.create_object(types::part, owner);
    model->rollback_transaction_all();
    EXPECT_EQ(kept->state(), state::deleted);
    model->undo();
    begin(); // the creation of the owner can no more be redone
    end();
    EXPECT_EQ(kept->owner(), owner);
    EXPECT_EQ(kept->owner(type_id::model), root);
}

} // namespace kelm::test
