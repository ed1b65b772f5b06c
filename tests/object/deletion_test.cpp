// Deleting objects: hooks, refusals, hooks that hinder, sizes, and what is still there at each moment.
// The order of what is told is deletion_told_test.
#include "tests/object/hook_lines.h"

#include <kelm/object_helpers.h>

namespace kelm::test {

namespace {

using deletion_test = world;

} // namespace

TEST_F(deletion_test, of_null_and_of_what_is_deleted) {
    object* const a = thing("a");
    EXPECT_FALSE(fw.delete_object(nullptr));
    begin();
    EXPECT_TRUE(fw.delete_object(a));
    end();
    const std::size_t count = model->message_count();
    EXPECT_TRUE(fw.delete_object(a));
    EXPECT_EQ(model->message_count(), count);
    EXPECT_EQ(a->state(), state::deleted);
    EXPECT_EQ(model->find_object(a->id()), nullptr);
    EXPECT_EQ(a->owner(), root); // its place in the tree can be asked for still
    EXPECT_EQ(a->model(), model);
}

TEST_F(deletion_test, hooks_run_each_at_its_moment) {
    object* const owner = hooked("owner");
    object* const a = hooked("a", owner);
    part("child", a);
    std::string lines;
    const auto note = [&](hook_call& call) {
        lines += std::to_string(call.kind) + (owner->has_children() ? " listed" : " gone") +
                 (a->has_children() ? " child" : "") + (a->defines_property(props::name) ? " name" : "") +
                 " state " + std::to_string(a->state()) + (model->find_object(a->id()) == a ? " id" : "") +
                 (fw.in_semantic() ? "\n" : " unmarked\n");
        return true;
    };
    for (const int kind : {1, 2, 3, 23, 24})
        hooks.on(kind, [&, kind](hook_call& call) {
            return call.at == owner || (kind < 20 && call.at == a) ? note(call) : true;
        });
    begin();
    EXPECT_TRUE(fw.delete_object(a));
    end();
    EXPECT_EQ(lines, "3 listed child name state 2 id\n"
                     "23 listed child name state 2 id\n"
                     "24 gone state 2 id\n"
                     "2 gone state 2 id\n");
    EXPECT_FALSE(fw.in_semantic());
    EXPECT_FALSE(model->find_object(a->id()));
    lines.clear();
    model->undo();
    model->redo();
    EXPECT_EQ(lines, ""); // the messages bring back what hooks did
}

TEST_F(deletion_test, is_refused_by_any_of_its_hooks) {
    struct row {
        int kind;
        const char* left; // messages, outside a transaction
    };
    for (const row& r : {row{3, ""}, row{23, "5 15"}, row{24, "5 15 10 16"}, row{2, "5 15 10 16"}}) {
        SCOPED_TRACE(r.kind);
        object* const owner = hooked("owner");
        object* const a = hooked("a", owner);
        hooks.refuse(r.kind);
        const std::string before = dump();
        begin();
        root->set_property(props::text, text("x"));
        EXPECT_FALSE(fw.delete_object(a));
        EXPECT_FALSE(model->in_transaction());
        EXPECT_FALSE(fw.in_semantic());
        EXPECT_EQ(a->state(), state::normal);
        EXPECT_EQ(dump(), before);
        EXPECT_FALSE(fw.delete_object(a)); // now outside a transaction: nothing is taken back
        EXPECT_TRUE(fw.in_semantic());
        EXPECT_EQ(message_types(), r.left);
        EXPECT_EQ(a->state(), state::normal);
        EXPECT_EQ(model->find_object(a->id()), a);
        fw.set_in_semantic(false);
        hooks.clear();
        model->clear_history();
    }
}

TEST_F(deletion_test, of_a_tree_is_refused_by_one_below) {
    object* const top = thing("top");
    part("first", top);
    object* const stubborn = hooked("stubborn", top);
    hooks.refuse<obj_pre_delete_semantic>();
    const std::string before = dump();
    begin();
    EXPECT_FALSE(fw.delete_object(top));
    EXPECT_FALSE(model->in_transaction());
    EXPECT_EQ(dump(), before);
    EXPECT_FALSE(fw.delete_object(top));
    EXPECT_EQ(top->state(), state::normal);
    EXPECT_EQ(stubborn->state(), state::normal);
    EXPECT_EQ(names_of(top->children()), "stubborn"); // the first one is gone
}

TEST_F(deletion_test, refused_by_an_observer_is_not_rolled_back) {
    struct row {
        u32 type;
        u32 state;
    };
    for (const row& r :
         {row{message_type::obj_pre_delete, state::normal}, row{message_type::property_delete, state::normal},
          row{message_type::obj_delete, state::being_deleted}}) {
        SCOPED_TRACE(r.type);
        object* const a = thing("a");
        recorder heard;
        heard.watch(a);
        heard.meanwhile = [&](message* what) { heard.answer = what->type() != r.type; };
        begin();
        EXPECT_FALSE(fw.delete_object(a));
        EXPECT_TRUE(model->in_transaction());
        EXPECT_EQ(a->state(), r.state); // the last message refused: it stays as it is
        EXPECT_EQ(model->find_object(a->id()), a);
        EXPECT_TRUE(fw.in_semantic());
        EXPECT_EQ(last_message()->type(), r.type);
        model->rollback_transaction_all();
        EXPECT_EQ(a->state(), state::normal);
        EXPECT_EQ(own_name(a), "a");
    }
}

TEST_F(deletion_test, observers_of_the_last_message_still_find_the_object_and_leave_it) {
    object* const a = thing("a");
    recorder heard;
    heard.watch(a);
    std::string seen;
    heard.meanwhile = [&](message* what) {
        if (what->type() != message_type::obj_delete) return;
        seen = std::to_string(a->state()) + (model->find_object(a->id()) == a ? " found" : "");
    };
    fw.delete_object(a);
    EXPECT_EQ(seen, "2 found");
    EXPECT_TRUE(a->observers().empty());
    EXPECT_TRUE(heard.subjects().empty());
}

TEST_F(deletion_test, by_hooks_of_the_object_itself_is_no_change) {
    object* const a = hooked("a");
    int asked = 0;
    for (const int kind : {2, 3})
        hooks.on(kind, [&](hook_call& call) {
            ++asked;
            return fw.delete_object(call.at); // state 2: true, and nothing happens
        });
    EXPECT_TRUE(fw.delete_object(a));
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(message_types(), "5 15 10 16 6");
    bool deleted = false;
    hooks.on<obj_create_semantic>([&](hook_call& call) { return deleted = fw.delete_object(call.at); });
    object* const made = fw.create_object(types::hooked, root);
    ASSERT_TRUE(made);
    EXPECT_TRUE(deleted);
    EXPECT_EQ(made->state(), state::normal);
}

TEST_F(deletion_test, ends_where_a_hook_puts_things_back) {
    object* const base = thing("base");
    struct row {
        const char* why;
        int kind;
        std::function<bool(hook_call&)> put_back;
    };
    for (const row& r :
         {row{"a value", 16,
              [](hook_call& c) { return c.at->set_property(static_cast<u32>(c.numbers[0]), text("again")); }},
          row{"a child", 24, [](hook_call& c) { return c.at->add_child(c.others[0]); }},
          row{"a base", 32, [](hook_call& c) { return c.at->add_inherits_from(c.others[0]); }}}) {
        SCOPED_TRACE(r.why);
        object* const a = hooked("a");
        part("child", a);
        begin();
        a->add_inherits_from(base);
        end();
        model->clear_history();
        const std::string before = dump();
        hooks.on(r.kind, r.put_back);
        begin();
        EXPECT_FALSE(fw.delete_object(a));
        EXPECT_EQ(a->state(), state::normal);
        hooks.clear();
        model->rollback_transaction_all();
        EXPECT_EQ(dump(), before);
        EXPECT_TRUE(fw.delete_object(a));
        model->clear_history();
    }
}

TEST_F(deletion_test, ends_where_an_inheritor_or_a_vector_is_put_back) {
    object* const a = thing("a");
    object* const heir = hooked("heir");
    begin();
    heir->add_inherits_from(a);
    vector_property list;
    list.elements.push_back(new property<object*>(a));
    heir->set_property(props::list, list);
    end();
    model->clear_history();
    const std::string before = dump();
    hooks.on<post_cancel_inherits_from_semantic>(
        [](hook_call& c) { return c.at->add_inherits_from(c.others[0]); });
    begin();
    EXPECT_FALSE(fw.delete_object(a));
    model->rollback_transaction_all();
    EXPECT_EQ(dump(), before);
    hooks.clear();
    hooks.on<post_prop_delete_vecprop_semantic>(
        [&](hook_call& c) { return c.at->append_vector_element(props::list, reference(a)); });
    begin();
    EXPECT_FALSE(fw.delete_object(a));
    model->rollback_transaction_all();
    EXPECT_EQ(dump(), before);
}

TEST_F(deletion_test, goes_on_where_a_hook_adds_what_can_go_as_well) {
    object* const a = hooked("a");
    part("child", a);
    bool added = false;
    hooks.on<post_remove_child_semantic>([&](hook_call& call) {
        if (call.at != a || added) return true;
        return added = fw.create_object(types::part, a) != nullptr;
    });
    hooks.on<pre_prop_delete_semantic>([&](hook_call& call) {
        return call.numbers[0] != props::name || call.at->set_property(props::text, text("late"));
    });
    const std::string before = dump();
    begin();
    EXPECT_TRUE(fw.delete_object(a));
    end();
    EXPECT_TRUE(added);
    hooks.clear();
    model->undo();
    EXPECT_EQ(dump(), before);
}

TEST_F(deletion_test, follows_an_object_that_a_hook_moves) {
    object* const from = hooked("from");
    object* const to = hooked("to");
    for (const int kind : {3, 16}) {
        SCOPED_TRACE(kind);
        object* const a = hooked("a", from);
        hooks.on(kind, [&](hook_call& call) { return call.at != a || call.at->set_owner(to); });
        const std::string before = dump();
        begin();
        EXPECT_TRUE(fw.delete_object(a));
        end();
        EXPECT_FALSE(from->has_children());
        EXPECT_FALSE(to->has_children());
        hooks.clear();
        model->undo();
        EXPECT_EQ(dump(), before);
        fw.delete_object(a);
        model->clear_history();
    }
}

TEST_F(deletion_test, of_an_object_in_no_list) {
    object* const owner = thing("owner");
    object* const a = part("a", owner);
    for (const bool removed : {true, false}) {
        removed ? owner->remove_child(a) : owner->set_child_position(a, 5);
        model->clear_history();
        const std::string before = dump();
        begin();
        EXPECT_TRUE(fw.delete_object(a));
        end();
        EXPECT_EQ(message_types(), "1 5 15 10 16 6 2");
        EXPECT_EQ(message_cast<child_remove_message>(model->message_at(4))->pos(), 0xFFFFFFFFu);
        model->undo();
        EXPECT_EQ(dump(), before); // it comes back, and into no list
        model->redo();
        EXPECT_EQ(a->state(), state::deleted);
        model->undo();
        owner->add_child(a);
    }
}

TEST_F(deletion_test, of_the_model_that_a_hook_or_observer_runs_in_is_refused) {
    object* const owner = hooked("owner");
    object* const a = hooked("a", owner);
    int asked = 0;
    bool closed = false;
    const auto close = [&] {
        ++asked;
        closed = closed || fw.delete_object(root);
    };
    for (int kind = 0; kind <= 40; ++kind)
        hooks.on(kind, [&](hook_call&) {
            close();
            return true;
        });
    recorder heard;
    for (object* each : {root, owner, a}) heard.watch(each);
    heard.line = [](message*) { return std::string{}; };
    heard.meanwhile = [&](message*) { close(); };
    begin();
    object* const b = fw.create_object(types::hooked, owner);
    b->set_owner(a);
    owner->add_child(b);
    a->remove_child(b);
    owner->add_child(b);
    owner->set_child_position(b, 0);
    owner->children();
    a->set_property(props::text, text("x"));
    a->add_inherits_from(b);
    a->get_property(props::text);
    std::string out;
    a->get_property_as_string(props::text, out);
    fw.delete_object(b);
    end();
    model->undo();
    model->redo();
    begin();
    a->set_property(props::text, text("y"));
    model->rollback_transaction();
    begin();
    end();
    EXPECT_FALSE(closed);
    EXPECT_GT(asked, 40);
    EXPECT_TRUE(fw.find_model([&] {
        GUID id;
        model->model_id(id);
        return id;
    }()));
}

TEST_F(deletion_test, of_several_passes_over_what_has_gone_with_another) {
    object* const owner = thing("owner");
    object* const child = part("child", owner);
    object* const stubborn = hooked("stubborn");
    object* const last = thing("last");
    EXPECT_TRUE(fw.delete_objects({}));
    EXPECT_TRUE(fw.delete_objects({owner, nullptr, child}));
    EXPECT_EQ(child->state(), state::deleted);
    hooks.refuse<obj_pre_delete_semantic>();
    EXPECT_FALSE(fw.delete_objects({stubborn, last}));
    EXPECT_EQ(last->state(), state::normal);
}

TEST_F(deletion_test, of_a_tree_as_deep_as_the_model_is_big) {
    constexpr int levels = 100000;
    begin();
    object* leaf = root;
    for (int i = 0; i != levels; ++i) leaf = fw.create_object(types::thing, leaf);
    end();
    leaf->set_property(props::name, text("leaf"));
    object* const top = root->child_at(types::thing, 0);
    EXPECT_EQ(object_full_path_name(leaf), "leaf");
    EXPECT_EQ(leaf->model(), model);
    EXPECT_EQ(leaf->owner(type_id::model), root);
    EXPECT_EQ(leaf->owner(types::other), nullptr);
    EXPECT_FALSE(top->set_owner(leaf)); // a circle
    model->clear_history();
    fw.set_in_semantic(false);
    begin();
    EXPECT_TRUE(fw.delete_object(top));
    end();
    EXPECT_EQ(leaf->state(), state::deleted);
    model->undo();
    EXPECT_EQ(own_name(leaf), "leaf");
    EXPECT_EQ(leaf->state(), state::normal);
    model->redo();
    model->clear_history(); // frees them
    EXPECT_FALSE(root->has_children());
    begin();
    leaf = root;
    for (int i = 0; i != levels; ++i) leaf = fw.create_object(types::thing, leaf);
    end();
    EXPECT_TRUE(fw.delete_object(root)); // closing
    fw.set_in_semantic(false);
    model = nullptr;
}

TEST_F(deletion_test, of_one_child_after_the_other_from_the_front) {
    constexpr std::size_t count = 100000;
    object* const owner = thing("owner");
    begin();
    for (std::size_t i = 0; i != count; ++i) fw.create_object(types::part, owner);
    end();
    object* const first = owner->child_at(types::part, 0);
    object* const last = owner->child_at(types::part, count - 1);
    begin();
    while (object* const child = owner->child_at(types::part, 0)) ASSERT_TRUE(fw.delete_object(child));
    end();
    EXPECT_FALSE(owner->has_children());
    model->undo();
    EXPECT_EQ(owner->child_count(types::part), count);
    EXPECT_EQ(owner->child_at(types::part, 0), first);
    EXPECT_EQ(owner->child_position(last), count - 1);
    model->redo();
    EXPECT_FALSE(owner->has_children());
    model->undo();
    begin();
    EXPECT_TRUE(fw.delete_object(owner));
    end();
    model->undo();
    model->undo(); // and the creation
    EXPECT_FALSE(owner->has_children());
}

} // namespace kelm::test
