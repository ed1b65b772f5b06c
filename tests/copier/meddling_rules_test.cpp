// Rules and hooks that pull the ground from under a copy or a paste: that drop history, close levels or models, let go of
// the copier, or give no clone.
// Rules that throw or call back into their copier are paste_exceptions_test.
#include "tests/copier/copy_paste_world.h"

namespace kelm::test {
namespace {

class meddling : public copy_paste_world {
protected:
    void rule(u32 type, std::function<int(const paste_call&)> what) {
        on_paste.on_call = std::move(what);
        clip->set_paste_rule(type, scripted_paste_rule{on_paste});
    }
    object* const a = thing("a");
};

// The history

class pruning : public meddling {
protected:
    pruning() {
        far_model->set_undo_levels(50);
        for (const char* name : {"one", "two", "three", "four"}) {
            far_model->begin_transaction(name);
            far(types::thing, name);
            far_model->end_transaction();
        }
        copy_all({part("p"), a, thing("b")});
        rule(types::thing, [this](const paste_call& call) {
            if (call.name() == "b") return at_b;
            const std::size_t messages = far_model->message_count();
            far_model->set_undo_levels(2);
            EXPECT_LT(far_model->message_count(), messages) << "the oldest went";
            return paste_action::create;
        });
    }
    int at_b = paste_action::create;
};

TEST_F(pruning, before_a_failure_leaves_nothing_and_no_transaction) {
    at_b = paste_action::fail;
    const std::string before = far_dump();
    EXPECT_FALSE(paste());
    EXPECT_EQ(far_dump(), before);
    EXPECT_FALSE(far_model->in_transaction());
    EXPECT_EQ(far_model->undo_name(), "four");
    EXPECT_EQ(broken_links(*far_model), "");
}

TEST_F(pruning, does_not_fail_a_paste) {
    const std::string before = far_dump();
    EXPECT_TRUE(paste());
    EXPECT_FALSE(far_model->in_transaction());
    EXPECT_EQ(far_tree(), "one two three four a b p");
    EXPECT_EQ(far_model->undo_name(), "Paste Objects");
    expect_paste_undone_and_redone(before);
}

// Levels

class closing_levels : public meddling {
protected:
    /// Expects a paste inside a transaction of the caller to fail and to leave just what the caller has done.
    void expect_failure_inside() {
        far_model->begin_transaction("mine");
        object* const mine = far(types::thing, "mine");
        const std::string before = far_dump();
        const std::size_t messages = far_model->message_count();
        EXPECT_FALSE(paste());
        EXPECT_EQ(far_dump(), before);
        EXPECT_EQ(far_model->message_count(), messages) << "nothing was done in the caller's own level";
        EXPECT_TRUE(far_model->in_transaction());
        EXPECT_EQ(mine->state(), state::normal);
        far_model->rollback_transaction_all();
    }
    /// Has an object of the other model stand in, which is there behind a rollback.
    void use_present() {
        on_paste.target = far(types::hooked, "present");
        rule(types::hooked, [](const paste_call&) { return paste_action::use_existing; });
    }
    /// Has a hook of reads roll the level back that is open when the text of an object of the other model is first read.
    void roll_back_at_first_read(int kind) {
        was_read = false;
        hooks.on(kind, [this](hook_call& call) {
            if (call.at->model() == far_model && call.numbers[0] == props::text &&
                far_model->in_transaction() && !std::exchange(was_read, true))
                far_model->rollback_transaction();
            return true;
        });
    }
    /// Expects the paste to fail by such a hook, on its own and inside a transaction of the caller.
    void expect_failures_by_reads(int kind) {
        roll_back_at_first_read(kind);
        expect_failure();
        EXPECT_TRUE(std::exchange(was_read, false));
        expect_failure_inside();
        EXPECT_TRUE(was_read);
        hooks.clear();
    }
    /// Expects the paste to fail on its own and inside a transaction of the caller.
    void expect_failures() {
        expect_failure();
        expect_failure_inside();
        expect_failure();
    }

private:
    bool was_read = false;
};

TEST_F(closing_levels, while_telling_the_object_has_nothing_done_to_it) {
    object* const present = far(types::thing, "present");
    far(types::part, "child", present);
    set(a, props::text, text("x"));
    part("p", a);
    copy(a);
    on_paste.on_object = [&] {
        far_model->rollback_transaction();
        return present;
    };
    for (const int action :
         {paste_action::replace, paste_action::use_existing, paste_action::map_to_existing}) {
        SCOPED_TRACE(action);
        rule(types::thing, [=](const paste_call&) { return action; });
        expect_failures();
        EXPECT_EQ(far_tree(), "present(child)");
    }
}

TEST_F(closing_levels, while_the_present_value_is_read_has_none_set) {
    object* const b = hooked("b");
    set(b, props::text, text("x"));
    copy(b);
    use_present();
    for (const int kind : {pre_prop_get_semantic::kind, post_prop_get_semantic::kind}) {
        SCOPED_TRACE(kind);
        expect_failures_by_reads(kind);
    }
}

TEST_F(closing_levels, while_an_extra_value_is_compared_has_none_set) {
    object* const base = hooked("base");
    object* const b = hooked("b");
    set(base, props::text, text("x"));
    add_base(b, base);
    clip->add_extra_property(types::hooked, props::text);
    copy(b);
    use_present();
    expect_failures_by_reads(pre_prop_get_semantic::kind);
}

TEST_F(closing_levels, during_a_creation_has_no_name_taken_away) {
    object* const owner = hooked("owner");
    object* const nameless = hooked("nameless", owner);
    begin();
    nameless->delete_property(props::name);
    end();
    copy(owner);
    for (const int kind : {obj_create_semantic::kind, post_add_child_semantic::kind}) {
        SCOPED_TRACE(kind);
        hooks.on(kind, [&](hook_call&) {
            far_model->rollback_transaction();
            return true;
        });
        hooks.on<pre_prop_delete_semantic>([&](hook_call& call) {
            ADD_FAILURE() << "a name is taken away from " << call.at->id();
            return true;
        });
        expect_failures();
        hooks.clear();
    }
}

TEST_F(closing_levels, by_an_end_keeps_what_was_made_and_is_a_failure) {
    part("p", a);
    copy_all({a, thing("b"), thing("c")});
    rule(types::thing, [&](const paste_call& call) {
        if (call.name() == "b") far_model->end_transaction();
        return paste_action::create;
    });
    const std::string before = far_dump();
    EXPECT_FALSE(paste());
    EXPECT_FALSE(far_model->in_transaction());
    EXPECT_EQ(far_tree(), "a(p)") << "what was committed stays";
    EXPECT_EQ(pasted, std::vector<object*>{found("a")});
    EXPECT_EQ(found("a")->state(), state::normal);
    EXPECT_EQ(far_model->undo_name(), "Paste Objects");
    expect_paste_undone_and_redone(before);
}

TEST_F(closing_levels, by_clearing_the_history_keeps_what_was_made_and_is_a_failure) {
    part("p", a);
    copy_all({a, thing("b"), thing("c")});
    rule(types::thing, [&](const paste_call& call) {
        if (call.name() == "b") far_model->clear_history();
        return paste_action::create;
    });
    EXPECT_FALSE(paste());
    EXPECT_FALSE(far_model->in_transaction());
    EXPECT_EQ(far_model->message_count(), 0U);
    EXPECT_EQ(far_tree(), "a(p)") << "there is nothing left to roll it back by";
    EXPECT_EQ(broken_links(*far_model), "");
    on_paste.on_call = nullptr;
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(p) a(p) b c");
}

TEST_F(closing_levels, by_rolling_back_all_takes_the_callers_own_work_back_too) {
    copy(a);
    rule(types::thing, [&](const paste_call&) {
        far_model->rollback_transaction_all();
        return paste_action::create;
    });
    far_model->begin_transaction("mine");
    far(types::thing, "mine");
    EXPECT_FALSE(paste());
    EXPECT_FALSE(far_model->in_transaction());
    EXPECT_EQ(far_tree(), "");
}

// Models

TEST_F(meddling, with_a_model_whose_objects_wait_to_be_copied_is_refused) {
    object* const b = part("b", a);
    for (const char* name : {"f", "g"}) far(types::thing, name); // else its ids would be those of the copied
    object* const x = far(types::thing, "x");
    object* const y = far(types::part, "y", x);
    object* const z = far(types::part, "z");
    on_copy.on_call = [&](const object* of, std::vector<object*>& out) {
        if (of == a) out = {x, z};
        if (of == x) {
            EXPECT_FALSE(fw.delete_object(far_root));
        }
        return true;
    };
    clip->set_copy_rule(types::thing, scripted_copy_rule{on_copy});
    ASSERT_GT(x->id(), b->id());
    EXPECT_TRUE(copy(a));
    EXPECT_EQ(on_copy.take(), "a\nx\n");
    EXPECT_EQ(shape_of(*clip), "x(y) z *a(b)");
    EXPECT_EQ(y->state(), state::normal);
}

TEST_F(meddling, with_the_model_of_an_owner_is_refused) {
    copy_all({a, thing("b")});
    int calls = 0;
    rule(types::thing, [&](const paste_call& call) {
        ++calls;
        EXPECT_EQ(call.owner, far_root);
        EXPECT_FALSE(fw.delete_object(far_root));
        return paste_action::create;
    });
    clip->paste(model, {far_root}, nullptr);
    EXPECT_GT(calls, 0);
    EXPECT_EQ(far_root->state(), state::normal);
}

TEST_F(meddling, with_the_model_of_an_object_that_stands_in_is_refused) {
    set(a, props::text, text("x"));
    copy(a);
    object* const present = far(types::thing, "present");
    rule(types::thing, [](const paste_call&) { return paste_action::use_existing; });
    on_paste.target = present;
    int calls = 0;
    on_value.on_call = [&](object* what, u32, abstract_property*, bool) {
        ++calls;
        EXPECT_EQ(what, present);
        EXPECT_FALSE(fw.delete_object(far_root));
        return property_paste_result::done;
    };
    clip->set_property_paste_rule(types::thing, scripted_value_rule{on_value});
    clip->paste(model, {root}, nullptr);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(present->state(), state::normal);
}

// The copier

class letting_go : public meddling {
protected:
    letting_go() {
        set(a, props::text, text("x"));
        part("p", a);
        clip->set_copy_rule(types::thing, scripted_copy_rule{on_copy});
        clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
        clip->set_property_paste_rule(types::thing, scripted_value_rule{on_value});
        clip->set_object_order_rule(type_id::model, types::thing, scripted_order_rule{on_order});
        clip->set_end_transaction_rule(scripted_end_rule{on_end});
    }
    int alive() const {
        return on_copy.alive + on_paste.alive + on_value.alive + on_order.alive + on_end.alive;
    }
    /// Lets go of the last pointer to the copier, whose rules live on.
    void let_go() {
        ASSERT_TRUE(clip);
        clip.reset();
        EXPECT_EQ(alive(), 5);
    }
};

TEST_F(letting_go, of_the_copier_while_it_copies_lets_it_finish) {
    on_copy.on_call = [&](const object*, std::vector<object*>& out) {
        let_go();
        out.push_back(thing("more"));
        on_copy.on_call = nullptr;
        return true;
    };
    EXPECT_TRUE(copy(a));
    EXPECT_EQ(on_copy.take(), "a\nmore\n");
    EXPECT_EQ(alive(), 0) << "it went at the end";
}

class letting_go_from : public letting_go, public ::testing::WithParamInterface<const char*> {};

TEST_P(letting_go_from, a_rule_lets_the_paste_finish) {
    const std::string where = GetParam();
    const auto at = [this, where](const char* here) {
        if (where == here) let_go();
    };
    on_paste.on_call = [=](const paste_call&) { return at("node"), paste_action::create; };
    on_value.on_call = [=, is_first = true](object*, u32, abstract_property*, bool) mutable {
        if (std::exchange(is_first, false)) at("value");
        return property_paste_result::nothing;
    };
    on_order.on_call = [=](object*, u32, const pasted_positions&) { return at("order"), true; };
    on_end.on_call = [=](kelm::model*) { return at("end"), true; };
    copy(a);
    const std::string before = far_dump();
    EXPECT_TRUE(paste());
    EXPECT_FALSE(clip);
    EXPECT_EQ(alive(), 0) << "it went at the end";
    EXPECT_EQ(far_tree(), "a(p)");
    EXPECT_EQ(pasted, std::vector<object*>{found("a")});
    expect_paste_undone_and_redone(before);
}
INSTANTIATE_TEST_SUITE_P(meddling, letting_go_from, ::testing::Values("node", "value", "order", "end"),
                         [](const auto& row) { return std::string(row.param); });

// Clones

class without_clones : public letting_go {
protected:
    /// Sets all rules again, without clones.
    void set_again() {
        on_copy.gives_clones = on_paste.gives_clones = on_value.gives_clones = on_order.gives_clones =
            on_end.gives_clones = false;
        clip->set_copy_rule(types::thing, scripted_copy_rule{on_copy});
        clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
        clip->set_property_paste_rule(types::thing, scripted_value_rule{on_value});
        clip->set_object_order_rule(type_id::model, types::thing, scripted_order_rule{on_order});
        clip->set_object_order_rule(types::thing, types::part, scripted_order_rule{on_order});
        clip->set_end_transaction_rule(scripted_end_rule{on_end});
    }
};

TEST_F(without_clones, rules_count_as_none_and_the_former_go) {
    set_again();
    EXPECT_EQ(alive(), 0);
    EXPECT_TRUE(copy(a));
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(p)");
    EXPECT_EQ(on_copy.heard + on_paste.heard + on_value.heard + on_order.heard + on_end.heard, "");
}

} // namespace
} // namespace kelm::test
