// What throws while a paste is running, rules that call back into their copier, and rules that end the transaction.
// What is refused in the usual way is paste_refusals_test.
#include "tests/copier/copy_paste_world.h"
#include "tests/support/approved.h"
#include "tests/support/counted_value.h"

#include <functional>
#include <stdexcept>

namespace kelm::test {
namespace {

struct out_of_luck : std::runtime_error {
    using runtime_error::runtime_error;
};

class paste_exceptions : public copy_paste_world {
protected:
    paste_exceptions() {
        counted_value::enter();
        object* const outside = thing("outside");
        object* const base = linked("base");
        object* const a = linked("a");
        set(a, props::real, counted_value{1});
        set(a, props::text, text("x"));
        set(a, props::reference, base);
        set(a, props::list, {a, base});
        add_base(a, base);
        linked("child", a);
        object* const goes = linked("goes");
        set(goes, props::needed, outside);
        copy_all({a, base, goes});
        clip->add_extra_property(types::linked, props::number);
        alive_ = counted_value::alive;
    }
    /// Expects a paste to throw, to leave no trace, and the next one to succeed.
    void expect_thrown(const std::function<void()>& calm) {
        const std::string before = far_dump();
        pasted.clear();
        EXPECT_THROW(paste(), out_of_luck);
        calm();
        expect_untouched(before);
        far_model->clear_history();
        EXPECT_EQ(counted_value::alive, alive_) << "nothing is left over";
        EXPECT_TRUE(paste());
        EXPECT_EQ(far_tree(), "a(child) base");
        far_model->undo();
        far_model->clear_history();
        EXPECT_EQ(counted_value::alive, alive_);
    }

private:
    long alive_ = 0;
};

TEST_F(paste_exceptions, of_rules_pass_and_leave_everything_as_it_was) {
    const struct {
        const char* why;
        std::function<void()> set;
        std::function<void()> calm;
    } rows[] = {
        {"a paste rule",
         [&] {
             on_paste.on_call = [](const paste_call& call) -> int {
                 if (call.name() == "child") throw out_of_luck{"rule"};
                 return paste_action::create;
             };
             clip->set_paste_rule(types::linked, scripted_paste_rule{on_paste});
         },
         [&] { on_paste.on_call = nullptr; }},
        {"a paste rule asked again",
         [&] {
             on_paste.on_call = [](const paste_call& call) -> int {
                 if (call.is_last) throw out_of_luck{"rule"};
                 return call.name() == "base" ? paste_action::defer : paste_action::create;
             };
             clip->set_paste_rule(types::linked, scripted_paste_rule{on_paste});
         },
         [&] { on_paste.on_call = nullptr; }},
        {"the object of a paste rule",
         [&] {
             on_paste.on_call = [](const paste_call&) { return paste_action::use_existing; };
             on_paste.on_object = []() -> object* { throw out_of_luck{"object"}; };
             clip->set_paste_rule(types::linked, scripted_paste_rule{on_paste});
         },
         [&] { on_paste.on_call = nullptr, on_paste.on_object = nullptr; }},
        {"a rule about values",
         [&] {
             on_value.on_call = [](object*, u32 id, abstract_property*, bool) -> int {
                 if (id == props::real) throw out_of_luck{"value"};
                 return property_paste_result::nothing;
             };
             clip->set_property_paste_rule(types::linked, scripted_value_rule{on_value});
         },
         [&] { on_value.on_call = nullptr; }},
        {"a rule about values asked again",
         [&] {
             auto calls = std::make_shared<int>(0);
             on_value.on_call = [=](object*, u32 id, abstract_property*, bool) -> int {
                 if (id == props::list && ++*calls == 2) throw out_of_luck{"value"};
                 return property_paste_result::nothing;
             };
             clip->set_property_paste_rule(types::linked, scripted_value_rule{on_value});
         },
         [&] { on_value.on_call = nullptr; }},
        {"a rule about the order",
         [&] {
             on_order.on_call = [](object*, u32, const pasted_positions&) -> bool {
                 throw out_of_luck{"order"};
             };
             clip->set_object_order_rule(types::linked, types::linked, scripted_order_rule{on_order});
         },
         [&] { on_order.on_call = nullptr; }},
        {"the rule at the end",
         [&] {
             on_end.on_call = [](kelm::model*) -> bool { throw out_of_luck{"end"}; };
             clip->set_end_transaction_rule(scripted_end_rule{on_end});
         },
         [&] { on_end.on_call = nullptr; }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        row.set();
        expect_thrown(row.calm);
    }
}

TEST_F(paste_exceptions, of_hooks_pass_and_leave_everything_as_it_was) {
    for (const int kind :
         {obj_create_semantic::kind, pre_add_child_semantic::kind, post_add_child_semantic::kind,
          pre_prop_set_semantic::kind, post_prop_set_semantic::kind, pre_add_inherits_from_semantic::kind,
          post_add_inherits_from_semantic::kind, obj_pre_delete_semantic::kind, obj_delete_semantic::kind}) {
        SCOPED_TRACE(kind);
        hooks.on(kind, [](hook_call&) -> bool { throw out_of_luck{"hook"}; });
        expect_thrown([&] {
            hooks.clear();
            fw.set_in_semantic(false);
        });
    }
}

TEST_F(paste_exceptions, take_back_the_paste_alone_inside_a_transaction_of_the_caller) {
    far_model->begin_transaction("mine");
    far(types::thing, "mine");
    on_end.on_call = [](kelm::model*) -> bool { throw out_of_luck{"end"}; };
    clip->set_end_transaction_rule(scripted_end_rule{on_end});
    EXPECT_THROW(paste(), out_of_luck);
    EXPECT_TRUE(far_model->in_transaction());
    EXPECT_EQ(far_tree(), "mine");
    far_model->end_transaction();
    EXPECT_EQ(far_model->undo_name(), "mine");
}

// What an observer throws while levels are taken back comes behind what the paste has failed with.
TEST_F(paste_exceptions, leave_no_level_open_when_observers_throw_while_all_is_taken_back) {
    object* const side = far(types::hooked, "side");
    recorder watcher;
    watcher.watch(side);
    int told = 0;
    watcher.meanwhile = [&](message* what) {
        if (!what->is_first_run() && ++told == 1) throw std::logic_error{"observer"};
    };
    hooks.on<post_prop_set_semantic>([&](hook_call& call) -> bool {
        if (call.at == side) return true;
        far_model->begin_transaction("left open");
        side->set_property(props::text, text("changed"));
        throw out_of_luck{"hook"};
    });
    const std::string before = far_dump();
    EXPECT_THROW(paste(), out_of_luck);
    EXPECT_EQ(told, 1);
    hooks.clear();
    fw.set_in_semantic(false);
    watcher.meanwhile = {};
    expect_untouched(before);
    pasted.clear();
    EXPECT_TRUE(paste());
}

TEST_F(paste_exceptions, tell_that_ids_are_used_up) {
    std::string bytes = approved_bytes("empty_model");
    bytes.replace(16, 4, "\xFD\xFF\xFF\xFF");
    object* const full = fw.create_object(type_id::model, nullptr);
    full->model()->meta_model()->set_version(8);
    std::istringstream in{bytes};
    ASSERT_TRUE(full->model()->read(&in, nullptr));
    const std::string before = dump_of(*full->model());
    EXPECT_THROW(clip->paste(full->model(), {full}, &pasted), std::runtime_error);
    EXPECT_EQ(dump_of(*full->model()), before);
    EXPECT_FALSE(full->model()->in_transaction());
    EXPECT_TRUE(clip->destination_model_id() == GUID{});
    fw.delete_object(full);
    fw.set_in_semantic(false);
    EXPECT_TRUE(paste());
}

// Rules that call back

class calling_back : public copy_paste_world {
protected:
    /// Has every kind of rule, and a hook, do something.
    void from_everywhere(const std::function<void()>& what) {
        on_paste.on_call = [=](const paste_call&) {
            what();
            return paste_action::create;
        };
        on_value.on_call = [=](object*, u32, abstract_property*, bool) {
            what();
            return property_paste_result::nothing;
        };
        on_order.on_call = [=](object*, u32, const pasted_positions&) {
            what();
            return true;
        };
        on_end.on_call = [=](kelm::model*) {
            what();
            return true;
        };
        clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
        clip->set_property_paste_rule(types::thing, scripted_value_rule{on_value});
        clip->set_object_order_rule(type_id::model, types::thing, scripted_order_rule{on_order});
        clip->set_end_transaction_rule(scripted_end_rule{on_end});
    }
    object* const a = thing("a");
    object* const b = part("b", a);
};

TEST_F(calling_back, to_paste_read_or_copy_is_refused) {
    copy(a);
    const std::string bytes = bytes_of(*clip);
    object* const other = thing("other");
    int calls = 0;
    from_everywhere([&] {
        ++calls;
        std::vector<object*> out;
        EXPECT_FALSE(clip->paste(far_model, {far_root}, &out));
        EXPECT_FALSE(clip->paste(model, {root}, nullptr));
        EXPECT_TRUE(out.empty());
        std::istringstream in{bytes};
        EXPECT_FALSE(clip->read(in));
        EXPECT_FALSE(copy(other));
        EXPECT_EQ(bytes_of(*clip), bytes) << "it can be looked at";
        EXPECT_FALSE(clip->destination_model_id() == GUID{});
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(calls, 4);
    EXPECT_EQ(far_tree(), "a(b)");
    EXPECT_EQ(bytes_of(*clip), bytes);
    EXPECT_TRUE(copy(other)) << "and behind it works again";
}

TEST_F(calling_back, may_set_rules) {
    thing("inner", a);
    copy_all({a, thing("c")});
    int calls = 0;
    from_everywhere([&] {
        if (++calls > 100) return; // else each new rule would set new ones
        clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
        clip->set_property_paste_rule(types::thing, scripted_value_rule{on_value});
        for (const u32 type : {types::thing, types::part, types::other})
            clip->set_object_order_rule(type_id::model, type, scripted_order_rule{on_order});
        clip->set_end_transaction_rule(scripted_end_rule{on_end});
        clip->set_copy_rule(types::thing, scripted_copy_rule{on_copy});
        clip->set_type_order({types::thing});
        clip->add_extra_property(types::thing, props::text);
        clip->add_user_id(1);
    });
    EXPECT_TRUE(paste());
    EXPECT_GT(calls, 5);
    EXPECT_EQ(far_tree(), "a(inner b) c");
}

TEST_F(calling_back, may_paste_with_another_copier) {
    copy(a);
    const shared_ptr<copier> other = fw.create_copier(model);
    other->copy_object(b, true);
    const std::string before = far_dump();
    on_end.on_call = [&](kelm::model* where) { return other->paste(where, {far_root}, nullptr); };
    clip->set_end_transaction_rule(scripted_end_rule{on_end});
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(b) b");
    expect_paste_undone_and_redone(before);
}

TEST_F(calling_back, that_rolls_back_fails_the_paste) {
    copy_all({a, thing("c")});
    int calls = 0;
    from_everywhere([&] {
        ++calls;
        far_model->rollback_transaction_all();
    });
    expect_failure();
    EXPECT_EQ(calls, 2) << "the first rule, and the last word";
}

TEST_F(calling_back, that_ends_the_transaction_fails_the_paste) {
    copy_all({a, thing("c")});
    int calls = 0;
    from_everywhere([&] {
        if (++calls == 1) far_model->end_transaction();
    });
    EXPECT_FALSE(paste());
    EXPECT_FALSE(far_model->in_transaction());
    EXPECT_EQ(far_tree(), "");
    EXPECT_TRUE(clip->destination_model_id() == GUID{});
}

TEST_F(calling_back, that_leaves_a_transaction_open_leaves_none_open) {
    copy(a);
    from_everywhere([&] { far_model->begin_transaction("left open"); });
    const std::string before = far_dump();
    EXPECT_TRUE(paste());
    EXPECT_FALSE(far_model->in_transaction());
    EXPECT_EQ(far_tree(), "a(b)");
    expect_paste_undone_and_redone(before);
}

} // namespace
} // namespace kelm::test
