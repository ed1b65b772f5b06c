// The states of an object from its making to its end in memory, and what each allows.
// Deleting step by step is deletion_test.
#include "tests/object/hook_lines.h"

#include "object/model_impl.h"

namespace kelm::test {

namespace {

class object_state_test : public world {
protected:
    std::size_t objects_in_memory() const { return static_cast<model_impl&>(*model).pool().size(); }
};

} // namespace

TEST_F(object_state_test, while_it_is_made) {
    object* const owner = hooked("owner");
    std::string lines;
    const auto note = [&](hook_call& call) {
        object* const made = call.kind == 1 ? call.at : call.others[0];
        lines += std::to_string(call.kind) + " state " + std::to_string(made->state()) +
                 (model->find_object(made->id()) == made ? " id" : "") +
                 (owner->child_position(made) == npos ? "" : " listed") +
                 (made->owner() == owner ? " owned" : "") + (made->model() == model ? " in model" : "") +
                 "\n";
        return true;
    };
    for (const int kind : {1, 21, 22}) hooks.on(kind, note);
    begin();
    object* const made = fw.create_object(types::hooked, owner);
    end();
    EXPECT_EQ(
        lines,
        "1 state 1 id owned in model\n21 state 1 id owned in model\n22 state 1 id listed owned in model\n");
    EXPECT_EQ(made->state(), state::normal);
    EXPECT_EQ(message_types(), "1 4 14 2");
    EXPECT_TRUE(model->message_at(1)->is_user_created());
    EXPECT_FALSE(model->message_at(2)->is_user_created());
}

TEST_F(object_state_test, hooks_of_the_making_may_fill_it) {
    hooks.on<obj_create_semantic>([&](hook_call& call) {
        return call.at->set_property(props::text, text("filled")) && fw.create_object(types::part, call.at);
    });
    const std::string before = dump();
    begin();
    object* const made = fw.create_object(types::hooked, root);
    end();
    ASSERT_TRUE(made);
    EXPECT_EQ(message_types(), "1 4 7 4 14 14 2");
    EXPECT_EQ(made->child_count(types::part), 1u);
    expect_undone_and_redone(before);
}

TEST_F(object_state_test, a_refused_making_leaves_nothing_behind_a_rollback) {
    object* const owner = hooked("owner");
    const u32 before_id = model->last_object_id();
    u32 uses = 0;
    for (const int kind : {1, 21, 22}) {
        SCOPED_TRACE(kind);
        hooks.refuse(kind);
        const std::string before = dump();
        begin();
        EXPECT_EQ(fw.create_object(types::hooked, owner), nullptr);
        EXPECT_FALSE(model->in_transaction());
        EXPECT_FALSE(fw.in_semantic());
        EXPECT_EQ(dump(), before);
        EXPECT_EQ(model->last_object_id(), before_id + ++uses); // the number is used up
        hooks.clear();
    }
}

TEST_F(object_state_test, a_refused_making_outside_a_transaction_leaves_it_half_made) {
    object* const owner = hooked("owner");
    hooks.refuse<obj_create_semantic>();
    EXPECT_EQ(fw.create_object(types::hooked, owner), nullptr);
    EXPECT_TRUE(fw.in_semantic());
    object* const half = model->find_object(model->last_object_id());
    ASSERT_TRUE(half);
    EXPECT_EQ(half->state(), state::being_created);
    EXPECT_EQ(owner->child_position(half), npos);
    EXPECT_TRUE(fw.delete_object(half)); // true, and nothing happens
    EXPECT_EQ(half->state(), state::being_created);
    EXPECT_EQ(message_types(), "4");
}

TEST_F(object_state_test, an_owner_whose_child_is_half_made_cannot_go) {
    object* const owner = hooked("owner");
    hooks.refuse<post_add_child_semantic>();
    EXPECT_EQ(fw.create_object(types::part, owner), nullptr);
    hooks.clear();
    EXPECT_EQ(owner->child_count(types::part), 1u);
    EXPECT_FALSE(fw.delete_object(owner));
    EXPECT_EQ(owner->state(), state::normal);
}

TEST_F(object_state_test, a_deleted_object_takes_no_values_but_runs_hooks) {
    object* const a = hooked("a");
    fw.delete_object(a);
    const std::size_t from = model->message_count();
    std::string lines;
    write_down(hooks, lines, {7, 8});
    EXPECT_TRUE(a->set_property(props::text, text("x")));
    EXPECT_FALSE(a->defines_property(props::text));
    EXPECT_EQ(message_types(from), "");
    EXPECT_EQ(lines, "7 none none 10\n");
}

TEST_F(object_state_test, nothing_is_made_below_a_deleted_owner) {
    object* const a = thing("a");
    fw.delete_object(a);
    EXPECT_EQ(fw.create_object(types::part, a), nullptr);
}

TEST_F(object_state_test, memory_of_deleted_objects_is_the_historys) {
    const std::size_t before = objects_in_memory();
    object* const top = thing("top");
    part("child", top);
    begin();
    fw.delete_object(top);
    end();
    EXPECT_EQ(objects_in_memory(), before + 2);
    model->undo();
    begin(); // ends the possibility of redo; the objects are the model's again
    end();
    EXPECT_EQ(objects_in_memory(), before + 2);
    EXPECT_EQ(own_names(top->children()), "child");
    begin();
    fw.delete_object(top);
    end();
    model->clear_history();
    EXPECT_EQ(objects_in_memory(), before);
}

TEST_F(object_state_test, memory_of_objects_never_made_is_the_historys) {
    const std::size_t before = objects_in_memory();
    begin();
    object* const top = fw.create_object(types::thing, root);
    fw.create_object(types::part, top);
    end();
    model->undo();
    EXPECT_EQ(objects_in_memory(), before + 2);
    EXPECT_EQ(top->state(), state::deleted);
    begin();
    end();
    EXPECT_EQ(objects_in_memory(), before);
}

TEST_F(object_state_test, memory_goes_when_undo_reaches_no_further) {
    model->set_undo_levels(2);
    const std::size_t before = objects_in_memory();
    object* const a = thing("a");
    begin();
    fw.delete_object(a);
    end();
    for (int i = 0; i != 2; ++i) {
        EXPECT_EQ(objects_in_memory(), before + 1);
        begin();
        root->set_property(props::number, number(i));
        end();
    }
    EXPECT_EQ(objects_in_memory(), before);
}

TEST_F(object_state_test, what_a_rollback_unmakes_stays_readable) {
    const std::size_t before = objects_in_memory();
    begin();
    object* const kept = fw.create_object(types::thing, root);
    kept->set_property(props::name, text("kept"));
    model->rollback_transaction_all();
    EXPECT_EQ(objects_in_memory(), before + 1);
    EXPECT_EQ(kept->state(), state::deleted);
    EXPECT_EQ(kept->owner(), root);
    EXPECT_EQ(kept->model(), model);
    EXPECT_FALSE(kept->defines_property(props::name));
    EXPECT_EQ(model->find_object(kept->id()), nullptr);
    EXPECT_FALSE(root->has_children());
    EXPECT_TRUE(kept->post_read());
}

TEST_F(object_state_test, of_a_bare_object) {
    object* const bare = fw.instantiate_object(types::thing, model, false);
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->id(), 0u);
    EXPECT_EQ(bare->owner(), nullptr);
    EXPECT_EQ(bare->model(), nullptr);
    EXPECT_FALSE(fw.delete_object(bare));
    EXPECT_FALSE(root->add_child(bare)); // it is in no model yet
    EXPECT_FALSE(bare->set_owner(root));
    EXPECT_EQ(bare->find_semantic(1007), nullptr);
}

} // namespace kelm::test
