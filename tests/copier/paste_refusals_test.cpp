// What hooks and observers refuse or delete while a paste is running.
// Rules that refuse are in the tests of each kind of rule; what throws is paste_exceptions_test.
#include "tests/copier/copy_paste_world.h"
#include "tests/support/model_hooks.h"

namespace kelm::test {
namespace {

class paste_refusals : public copy_paste_world {
protected:
    paste_refusals() {
        begin();
        nameless->delete_property(props::name);
        end();
        model->clear_history();
        set(full, props::text, text("x"));
        set(full, props::reference, later);
        add_base(full, base);
        add_base(full, later);
        begin();
        full->set_property_not_inheritable(props::flag, true);
        end();
        hooked("child", full);
    }
    /// Copies a base, an object with something of everything, what it waits for, and one without a name.
    void copy_everything() { copy_all({base, full, later, nameless}); }

    object* const base = hooked("base");
    object* const full = hooked("full");
    object* const later = hooked("later");
    object* const nameless = hooked("nameless");
};

struct refusal_row {
    int kind;
    const char* why;
};
const refusal_row refusals[] = {
    {obj_create_semantic::kind, "a creation"},
    {pre_add_child_semantic::kind, "a child, before"},
    {post_add_child_semantic::kind, "a child, behind"},
    {pre_prop_delete_semantic::kind, "taking the name away, before"},
    {pre_prop_set_not_inheritable_semantic::kind, "a mark, before"},
    {post_prop_set_not_inheritable_semantic::kind, "a mark, behind"},
    {pre_add_inherits_from_semantic::kind, "a base, before"},
    {post_add_inherits_from_semantic::kind, "a base, behind"},
    {pre_prop_set_semantic::kind, "a value, before"},
    {post_prop_set_semantic::kind, "a value, behind"},
};

TEST_F(paste_refusals, by_hooks_fail_the_paste_and_take_everything_back) {
    copy_everything();
    for (const refusal_row& row : refusals) {
        SCOPED_TRACE(row.why);
        bool was_asked = false;
        hooks.on(row.kind, [&](hook_call&) {
            was_asked = true;
            return false;
        });
        expect_failure();
        EXPECT_TRUE(was_asked);
        hooks.clear();
    }
    EXPECT_TRUE(paste());
}

TEST_F(paste_refusals, by_hooks_that_come_late_fail_the_paste_too) {
    copy_everything();
    for (const refusal_row& row : refusals) {
        int calls = 0;
        hooks.on(row.kind, [&](hook_call&) { return ++calls > 0; });
        ASSERT_TRUE(paste());
        far_model->rollback_last_transaction();
        for (int refused = 1; refused <= calls; ++refused) {
            SCOPED_TRACE(std::string(row.why) + ", call " + std::to_string(refused));
            int call = 0;
            hooks.on(row.kind, [&](hook_call&) { return ++call != refused; });
            expect_failure();
            EXPECT_EQ(call, refused) << "nothing goes on behind it";
        }
        hooks.clear();
    }
}

TEST_F(paste_refusals, take_back_the_paste_alone_inside_a_transaction_of_the_caller) {
    copy_everything();
    for (const refusal_row& row : refusals) {
        SCOPED_TRACE(row.why);
        far_model->begin_transaction("mine");
        far(types::thing, "mine");
        const std::string before = far_dump();
        const std::size_t messages = far_model->message_count();
        hooks.refuse(row.kind);
        EXPECT_FALSE(paste());
        hooks.clear();
        EXPECT_TRUE(far_model->in_transaction());
        EXPECT_EQ(far_dump(), before);
        EXPECT_EQ(far_model->message_count(), messages);
        EXPECT_TRUE(paste()) << "the transaction goes on";
        far_model->end_transaction();
        EXPECT_EQ(far_model->undo_name(), "mine");
        far_model->undo();
        EXPECT_EQ(far_tree(), "");
        far_model->clear_history();
    }
}

TEST_F(paste_refusals, by_rules_take_back_the_paste_alone_too) {
    copy_everything();
    far_model->begin_transaction("mine");
    far(types::thing, "mine");
    const std::string before = far_dump();
    on_end.on_call = [](kelm::model*) { return false; };
    clip->set_end_transaction_rule(scripted_end_rule{on_end});
    EXPECT_FALSE(paste());
    EXPECT_TRUE(far_model->in_transaction());
    EXPECT_EQ(far_dump(), before);
    far_model->end_transaction();
    EXPECT_EQ(far_tree(), "mine");
}

// Refusals by observers roll nothing back by themselves.

class refusing_observers : public paste_refusals {
protected:
    /// Has an observer refuse messages of a type, of each new object, or of the root.
    void refuse(u32 message_type) {
        ears.line = [=, this](message* what) {
            ears.answer = what->type() != message_type || !what->is_first_run();
            return std::string{};
        };
        ears.watch(far_root);
        hooks.on<obj_create_semantic>([this](hook_call& call) {
            ears.watch(call.at);
            return true;
        });
    }
    void calm() {
        ears.line = nullptr;
        ears.answer = true;
    }
    ~refusing_observers() override {
        far_root->detach(&ears);
        std::vector<u32> ids;
        far_model->object_ids(ids);
        for (const u32 id : ids) far_model->find_object(id)->detach(&ears);
    }
    recorder ears;
};

TEST_F(refusing_observers, fail_the_paste_for_what_must_succeed) {
    copy_everything();
    for (const u32 type : {message_type::child_add, message_type::property_set, message_type::tran_begin}) {
        SCOPED_TRACE(type);
        refuse(type);
        const std::string before = far_dump();
        EXPECT_FALSE(paste());
        calm();
        expect_untouched(before);
        far_root->detach(&ears);
    }
}

TEST_F(refusing_observers, change_nothing_about_the_end) {
    copy_everything();
    refuse(message_type::tran_end);
    const std::string before = far_dump();
    EXPECT_TRUE(paste());
    calm();
    EXPECT_FALSE(far_model->in_transaction());
    EXPECT_EQ(pasted.size(), 4U);
    expect_paste_undone_and_redone(before);
}

TEST_F(refusing_observers, end_the_node_for_marks_and_present_bases) {
    add_base(nameless, base);
    begin();
    nameless->set_property_not_inheritable(props::flag, true);
    end();
    set(nameless, props::text, text("y"));
    part("p", nameless);
    for (const u32 type : {message_type::property_set_not_inheritable, message_type::inherits_add}) {
        SCOPED_TRACE(type);
        clip = fw.create_copier(model);
        copy_all({base, nameless, thing("c")});
        refuse(type);
        EXPECT_TRUE(paste());
        calm();
        ASSERT_EQ(pasted.size(), 3U);
        EXPECT_EQ(as_text(pasted[1]->get_own_property(props::text)), "none");
        EXPECT_FALSE(pasted[1]->has_children());
        EXPECT_EQ(own("c", props::name), "'c'") << "what comes behind it is pasted";
        EXPECT_FALSE(far_model->in_transaction());
        far_model->undo();
        EXPECT_EQ(far_tree(), "");
        far_root->detach(&ears);
    }
}

// Hooks that delete what is being pasted

TEST_F(paste_refusals, are_not_what_a_hook_does_that_deletes_the_object) {
    set(nameless, props::number, number(1)); // marks the victim
    const struct {
        int kind;
        const char* why;
    } rows[] = {
        {pre_prop_set_not_inheritable_semantic::kind, "before a mark"},
        {post_prop_set_not_inheritable_semantic::kind, "behind a mark"},
        {pre_add_inherits_from_semantic::kind, "before a base"},
        {post_add_inherits_from_semantic::kind, "behind a base"},
        {pre_prop_set_semantic::kind, "before a value"},
        {post_prop_set_semantic::kind, "behind a value"},
    };
    copy_everything();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        u32 victim = 0;
        hooks.on(row.kind, [&](hook_call& call) {
            // The second of the top objects is the full one.
            if (victim == 0 && far_root->children().size() == 2 && call.at == far_root->children()[1]) {
                victim = call.at->id();
                fw.delete_object(call.at);
            }
            return true;
        });
        EXPECT_TRUE(paste());
        hooks.clear();
        EXPECT_NE(victim, 0U);
        EXPECT_EQ(far_model->find_object(victim), nullptr);
        EXPECT_EQ(far_root->children().size(), 3U) << far_tree();
        EXPECT_EQ(found("child"), nullptr);
        EXPECT_EQ(broken_links(*far_model), "");
        far_model->undo();
        EXPECT_EQ(far_tree(), "");
        far_model->redo();
        far_model->rollback_last_transaction();
    }
}

TEST_F(paste_refusals, are_not_what_a_hook_does_that_deletes_a_name_less_object) {
    copy_all({nameless, thing("b")});
    hooks.on<pre_prop_delete_semantic>([&](hook_call& call) {
        if (call.at->state() == state::normal) fw.delete_object(call.at);
        return true;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "b");
    EXPECT_EQ(pasted, std::vector<object*>{found("b")}) << "nothing ever stood for the first";
}

TEST_F(paste_refusals, are_not_what_a_hook_does_that_deletes_during_the_creation) {
    copy_everything();
    hooks.on<obj_create_semantic>([&](hook_call& call) {
        EXPECT_TRUE(fw.delete_object(call.at)) << "it does nothing yet";
        return true;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_root->children().size(), 4U);
}

TEST_F(paste_refusals, are_not_what_a_hook_does_that_deletes_the_owner_of_a_new_child) {
    for (const int kind : {pre_add_child_semantic::kind, post_add_child_semantic::kind}) {
        SCOPED_TRACE(kind);
        clip = fw.create_copier(model);
        copy_all({full, later});
        hooks.on(kind, [&](hook_call& call) {
            if (call.at->type() == types::hooked) fw.delete_object(call.at);
            return true;
        });
        const std::string before = far_dump();
        EXPECT_TRUE(paste());
        // One that is being given a child refuses to go behind that.
        EXPECT_EQ(far_tree(), kind == pre_add_child_semantic::kind ? "later" : "full(child) later");
        EXPECT_FALSE(far_model->in_transaction());
        EXPECT_EQ(broken_links(*far_model), "");
        far_model->undo();
        EXPECT_EQ(far_dump(), before);
        hooks.clear();
        far_model->clear_history();
    }
}

TEST_F(paste_refusals, are_what_a_hook_does_that_deletes_the_owner_pasted_into) {
    object* const into = far(types::thing, "into");
    copy_everything();
    hooks.on<post_prop_set_semantic>([&](hook_call&) {
        fw.delete_object(into);
        return true;
    });
    const std::string before = far_dump();
    EXPECT_FALSE(paste({into})) << "the next object has nowhere to go";
    hooks.clear();
    expect_untouched(before);
}

// Hooks of the model itself, behind the outermost end.

class refused_ends : public hooked_model_world {};

// The end of a transaction answers nothing, so a paste does not learn of it.
TEST_F(refused_ends, keep_a_paste_true_that_they_take_back) {
    object* const a = thing("a");
    const shared_ptr<copier> clip = fw.create_copier(model);
    clip->copy_object(a, true);
    const std::string before = dump();
    at_end = [](kelm::model*) { return false; };
    std::vector<object*> pasted;
    EXPECT_TRUE(clip->paste(model, {root}, &pasted)) << "the paste itself had gone well";
    EXPECT_EQ(dump(), before);
    ASSERT_EQ(pasted.size(), 1U);
    EXPECT_FALSE(model->in_transaction());
    EXPECT_TRUE(clip->destination_model_id() == GUID{});
}

} // namespace
} // namespace kelm::test
