// Objects as observers of objects: what is recorded, how their hooks react, and the end of the relation.
// Plain observers and the walk of a message are subject_test.
#include "tests/object/hook_lines.h"

#include "object/object_impl.h"

namespace kelm::test {

namespace {

observer* as_observer(object* what) { return dynamic_cast<observer*>(what); }

class object_observers_test : public world {
protected:
    object* const subject_object = thing("subject");
    object* const watcher = hooked("watcher");

    static std::set<u32> observer_ids(object* of) {
        const std::set<u32>* const ids = impl_of(of)->observer_ids();
        return ids ? *ids : std::set<u32>{};
    }
};

} // namespace

TEST_F(object_observers_test, attach_and_detach_are_recorded_and_told_to_nobody) {
    recorder heard;
    heard.watch(subject_object);
    begin();
    EXPECT_TRUE(subject_object->attach(as_observer(watcher)));
    EXPECT_FALSE(subject_object->attach(as_observer(watcher)));
    EXPECT_EQ(observer_ids(subject_object), (std::set<u32>{watcher->id()}));
    EXPECT_EQ(watcher->subjects().size(), 1u);
    EXPECT_TRUE(subject_object->detach_object(watcher));
    EXPECT_FALSE(subject_object->detach_object(watcher));
    EXPECT_FALSE(subject_object->detach(as_observer(watcher)));
    EXPECT_TRUE(observer_ids(subject_object).empty());
    EXPECT_TRUE(watcher->subjects().empty());
    end();
    EXPECT_EQ(heard.take(), "");
    EXPECT_EQ(history(1), "24 Add Observer - observer: Hooked:watcher, subject: Thing:subject\n"
                          "25 Remove Observer - observer: Hooked:watcher, subject: Thing:subject\n"
                          "2  End Transaction - t\n");
    EXPECT_FALSE(model->message_at(1)->is_first_run());
    EXPECT_EQ(model->message_at(1)->object(), subject_object);
    EXPECT_EQ(message_cast<observer_add_message>(model->message_at(1))->observer(), as_observer(watcher));
    EXPECT_EQ(message_cast<observer_remove_message>(model->message_at(2))->observer(), as_observer(watcher));
}

TEST_F(object_observers_test, plain_observers_are_not_recorded) {
    recorder heard;
    begin();
    EXPECT_TRUE(subject_object->attach(&heard));
    EXPECT_FALSE(subject_object->attach(&heard));
    EXPECT_TRUE(subject_object->detach(&heard));
    EXPECT_FALSE(subject_object->detach(&heard));
    EXPECT_EQ(message_types(), "1");
    EXPECT_TRUE(observer_ids(subject_object).empty());
    end();
    EXPECT_FALSE(subject_object->attach(nullptr));
    EXPECT_FALSE(subject_object->detach(nullptr));
    EXPECT_FALSE(subject_object->detach_object(nullptr));
}

TEST_F(object_observers_test, the_relation_is_undone_and_redone_in_silence) {
    begin();
    subject_object->attach(as_observer(watcher));
    end();
    begin();
    subject_object->detach_object(watcher);
    end();
    recorder heard;
    heard.watch(subject_object);
    heard.watch(watcher);
    const auto is_on = [&] {
        const bool on = dynamic_cast<subject*>(subject_object)->is_attached(as_observer(watcher));
        EXPECT_EQ(observer_ids(subject_object).contains(watcher->id()), on);
        EXPECT_EQ(watcher->subjects().size(), on ? 1u : 0u);
        return on;
    };
    EXPECT_FALSE(is_on());
    model->undo();
    EXPECT_TRUE(is_on());
    model->undo();
    EXPECT_FALSE(is_on());
    model->redo();
    EXPECT_TRUE(is_on());
    model->redo();
    EXPECT_FALSE(is_on());
    EXPECT_EQ(heard.take(), "");
}

TEST_F(object_observers_test, works_on_deleted_objects_as_on_any) {
    fw.delete_object(subject_object);
    model->clear_modified();
    const std::size_t from = model->message_count();
    EXPECT_TRUE(subject_object->attach(as_observer(watcher)));
    EXPECT_TRUE(subject_object->detach_object(watcher));
    EXPECT_EQ(message_types(from), "24 25");
}

TEST_F(object_observers_test, an_observing_object_reacts_through_its_hooks) {
    subject_object->attach(as_observer(watcher));
    model->clear_history();
    std::string lines;
    hooks.on<update_semantic>([&](hook_call& call) {
        lines += own_name(call.at) + " hears " + std::to_string(call.told->type()) + " of " +
                 own_name(call.told->object()) + (fw.in_semantic() ? " marked\n" : "\n");
        return watcher->set_property(props::text, text("seen"));
    });
    const std::string before = dump();
    begin();
    EXPECT_TRUE(subject_object->set_property(props::text, text("x")));
    EXPECT_FALSE(fw.in_semantic());
    end();
    EXPECT_EQ(lines, "watcher hears 7 of subject marked\n");
    EXPECT_EQ(message_types(), "1 7 7 2");
    EXPECT_TRUE(model->message_at(1)->is_user_created());
    EXPECT_FALSE(model->message_at(2)->is_user_created());
    hooks.clear();
    model->undo();
    EXPECT_EQ(dump(), before);
}

// What is answered is taken back by the very walk, and that is told as well: the undo ends when the answers do.
TEST_F(object_observers_test, two_that_answer_each_other_hold_an_undo_up_as_long_as_they_do) {
    object* const other = hooked("other");
    begin();
    watcher->attach(as_observer(other));
    other->attach(as_observer(watcher));
    end();
    model->clear_history();
    begin();
    watcher->set_property(props::text, text("x"));
    end();
    for (const int most : {1, 10, 1000}) {
        SCOPED_TRACE(most);
        int answers = 0;
        hooks.on<update_semantic>([&](hook_call& call) {
            if (call.told->is_first_run() || answers == most) return true;
            return call.at->set_property(props::number, number(++answers));
        });
        model->undo();
        EXPECT_EQ(answers, most) << "there was never an end before";
        EXPECT_EQ(model->message_count(), 0u);
        EXPECT_FALSE(watcher->defines_property(props::text));
        EXPECT_FALSE(watcher->defines_property(props::number));
        EXPECT_FALSE(other->defines_property(props::number));
        hooks.clear();
        model->redo();
        EXPECT_EQ(as_text(watcher->get_property(props::text)), "x");
        EXPECT_FALSE(model->can_redo()) << "what was answered is redone in the same step";
    }
}

TEST_F(object_observers_test, without_hooks_an_observing_object_accepts_and_leaves_the_mark) {
    object* const dull = thing("dull");
    subject_object->attach(as_observer(dull));
    EXPECT_TRUE(subject_object->set_property(props::text, text("x")));
    EXPECT_FALSE(fw.in_semantic());
    EXPECT_TRUE(as_observer(dull)->update(nullptr, nullptr));
}

TEST_F(object_observers_test, an_observing_object_that_refuses_rolls_back) {
    subject_object->attach(as_observer(watcher));
    model->clear_history();
    // A hook that refuses what the rollback tells as well leaves the mark set once more.
    hooks.on<update_semantic>([](hook_call& call) { return !call.told->is_first_run(); });
    const std::string before = dump();
    begin();
    EXPECT_FALSE(subject_object->set_property(props::text, text("x")));
    EXPECT_FALSE(model->in_transaction());
    EXPECT_FALSE(fw.in_semantic());
    EXPECT_EQ(dump(), before);
    EXPECT_FALSE(subject_object->set_property(props::text, text("x")));
    EXPECT_TRUE(fw.in_semantic()); // nothing to roll back
    EXPECT_EQ(message_types(), "7");
    EXPECT_EQ(as_text(subject_object->get_property(props::text)), "x");
}

TEST_F(object_observers_test, a_refusal_in_a_tree_change_is_safe_as_well) {
    root->attach(as_observer(watcher));
    subject_object->attach(as_observer(watcher));
    model->clear_history();
    const std::string before = dump();
    for (const u32 type : {5u, 15u, 10u, 16u, 6u}) {
        SCOPED_TRACE(type);
        hooks.on<update_semantic>([&](hook_call& call) { return call.told->type() != type; });
        begin();
        EXPECT_FALSE(fw.delete_object(subject_object));
        hooks.clear();
        EXPECT_FALSE(model->in_transaction());
        EXPECT_EQ(dump(), before);
        EXPECT_EQ(subject_object->state(), state::normal);
    }
}

TEST_F(object_observers_test, the_deletion_of_either_ends_the_relation_until_it_is_undone) {
    subject_object->attach(as_observer(watcher));
    watcher->attach(as_observer(subject_object));
    for (object* const gone : {subject_object, watcher}) {
        SCOPED_TRACE(own_name(gone));
        object* const other = gone == watcher ? subject_object : watcher;
        model->clear_history();
        const std::string before = dump();
        begin();
        EXPECT_TRUE(fw.delete_object(gone));
        end();
        EXPECT_EQ(message_types(), "1 5 15 10 25 16 6 25 2");
        EXPECT_TRUE(gone->observers().empty());
        EXPECT_TRUE(gone->subjects().empty());
        EXPECT_TRUE(other->observers().empty());
        EXPECT_TRUE(other->subjects().empty());
        EXPECT_TRUE(observer_ids(other).empty());
        model->undo();
        EXPECT_EQ(dump(), before);
        EXPECT_EQ(observer_ids(other), (std::set<u32>{gone->id()}));
    }
}

TEST_F(object_observers_test, watching_something_else_than_an_object_ends_as_well) {
    subject_impl thing_to_watch;
    thing_to_watch.attach(as_observer(watcher));
    EXPECT_TRUE(fw.delete_object(watcher));
    EXPECT_TRUE(thing_to_watch.observers().empty());
}

TEST_F(object_observers_test, of_another_model_are_let_go_when_it_closes) {
    object* const second_root = fw.create_object(type_id::model, nullptr);
    object* const foreign = fw.create_object(types::hooked, second_root);
    subject_object->attach(as_observer(foreign));
    foreign->attach(as_observer(subject_object));
    model->clear_history();
    EXPECT_TRUE(fw.delete_object(second_root));
    fw.set_in_semantic(false);
    EXPECT_TRUE(subject_object->observers().empty());
    EXPECT_TRUE(subject_object->subjects().empty());
    EXPECT_TRUE(observer_ids(subject_object).empty());
    EXPECT_TRUE(subject_object->set_property(props::text, text("x")));
}

} // namespace kelm::test
