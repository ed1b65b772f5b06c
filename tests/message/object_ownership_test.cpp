// When deleted objects are freed: with the one message that owns them, and never twice.
// Values that messages own are value_ownership_test.
#include "object/model_impl.h"
#include "tests/support/counted_value.h"
#include "tests/support/listening_world.h"

#include <algorithm>
#include <functional>

namespace kelm::test {
namespace {

/// Coming and going of objects in one transaction, below an owner with two children.
struct life_case {
    const char* why;
    std::function<bool(object*)> change;
    std::size_t before;    ///< objects that are the model's while the change stands undone
    std::size_t after;     ///< and while it stands done
    std::size_t with_both; ///< all that are in memory meanwhile
};

/// A change of a deleted object, or one that names it.
struct late_case {
    const char* why;
    bool was_made; ///< the object's creation is undone; else it is deleted
    std::function<bool(object* gone, object* other)> then;
};

class object_ownership : public listening_world {
protected:
    /// \returns the objects in memory, deleted ones too, beside the model
    std::size_t in_memory() const { return static_cast<model_impl*>(model)->pool().size(); }
    /// \returns the objects that can be found by their ids, beside the model
    std::size_t found() const {
        std::vector<u32> ids;
        model->object_ids(ids);
        return ids.size() - 1;
    }

    static object* create(object* below) { return framework::instance().create_object(types::part, below); }
    static bool remove(object* what) { return framework::instance().delete_object(what); }

    static std::vector<life_case> cases() {
        return {
            {"one made", [](object* o) { return create(o) != nullptr; }, 3, 4, 4},
            {"a tree made", [](object* o) { return create(create(create(o))) != nullptr; }, 3, 6, 6},
            {"one deleted", [](object* o) { return remove(o->child_at(types::part, 0)); }, 3, 2, 3},
            {"a tree deleted", [](object* o) { return remove(o); }, 3, 0, 3},
            {"made and deleted", [](object* o) { return remove(create(o)); }, 3, 3, 4},
            {"made as child of one that goes with it",
             [](object* o) { return create(o->child_at(types::part, 0)) && remove(o); }, 3, 0, 4},
            {"one for another",
             [](object* o) { return remove(o->child_at(types::part, 0)) && create(o) != nullptr; }, 3, 3, 4},
            {"nothing comes or goes with a change of owner",
             [](object* o) { return o->child_at(types::part, 0)->set_owner(o->child_at(types::part, 1)); }, 3,
             3, 3},
            {"nor with being taken out of the list",
             [](object* o) { return o->remove_child(o->child_at(types::part, 0)); }, 3, 3, 3},
        };
    }
    static std::vector<late_case> late_cases() {
        return {
            {"deleted, and watched", false,
             [](object* gone, object* other) { return gone->attach(dynamic_cast<observer*>(other)); }},
            {"deleted, and watching", false,
             [](object* gone, object* other) { return other->attach(dynamic_cast<observer*>(gone)); }},
            {"deleted, and given a child", false,
             [](object* gone, object* other) {
                 object* const child = create(other);
                 return other->remove_child(child) && gone->add_child(child) && gone->remove_child(child);
             }},
            {"deleted, and given another owner", false,
             [](object* gone, object* other) { return gone->set_owner(other); }},
            {"never made, and watched", true,
             [](object* gone, object* other) { return gone->attach(dynamic_cast<observer*>(other)); }},
            {"never made, and watching", true,
             [](object* gone, object* other) { return other->attach(dynamic_cast<observer*>(gone)); }},
            {"never made, and given another owner", true,
             [](object* gone, object* other) { return gone->set_owner(other); }},
        };
    }
    template <class Check>
    void for_each_case(Check&& check) {
        for (const life_case& row : cases()) {
            SCOPED_TRACE(row.why);
            model->set_undo_levels(-1);
            object* const owner = thing("owner");
            part("one", owner);
            part("two", owner);
            ASSERT_EQ(in_memory(), 3u);
            ASSERT_TRUE(change([&] { return row.change(owner); }));
            check(row);
            start_anew();
        }
    }
    void change_something_else() {
        ASSERT_TRUE(change([&] { return root->set_property(props::name, kelm::test::text("m")); }));
    }
    /// Closes the model and takes another one.
    void start_anew() {
        fw.delete_object(root);
        fw.set_in_semantic(false);
        root = fw.create_object(type_id::model, nullptr);
        model = root->model();
    }
};

} // namespace

TEST_F(object_ownership, holds_what_can_come_back) {
    for_each_case([&](const life_case& row) {
        for (int round = 0; round != 3; ++round) {
            EXPECT_EQ(found(), row.after);
            EXPECT_EQ(in_memory(), row.with_both);
            model->undo();
            EXPECT_EQ(found(), row.before);
            EXPECT_EQ(in_memory(), row.with_both);
            model->redo();
        }
    });
}

TEST_F(object_ownership, of_what_cannot_be_undone_any_more_ends_with_the_limit) {
    for (const bool redone : {false, true}) {
        SCOPED_TRACE(redone ? "redone before" : "never undone");
        for_each_case([&](const life_case& row) {
            if (redone) {
                model->undo();
                model->redo();
            }
            model->set_undo_levels(1);
            EXPECT_EQ(in_memory(), row.with_both);
            change_something_else();
            EXPECT_EQ(in_memory(), row.after);
            EXPECT_EQ(found(), row.after);
        });
    }
}

TEST_F(object_ownership, of_what_cannot_be_redone_any_more_ends_with_the_next_transaction) {
    for_each_case([&](const life_case& row) {
        model->undo();
        model->redo();
        model->undo();
        EXPECT_EQ(in_memory(), row.with_both);
        begin();
        EXPECT_EQ(in_memory(), row.before) << "its begin does it";
        end();
        EXPECT_EQ(found(), row.before);
    });
}

TEST_F(object_ownership, ends_with_the_history_on_either_side) {
    for (const bool undone : {false, true}) {
        SCOPED_TRACE(undone ? "undone" : "done");
        for_each_case([&](const life_case& row) {
            if (undone) model->undo();
            model->clear_history();
            EXPECT_EQ(in_memory(), undone ? row.before : row.after);
            EXPECT_EQ(found(), undone ? row.before : row.after);
        });
    }
}

// What a rollback takes back may still be in the hands of the code that it has stopped.
TEST_F(object_ownership, of_what_a_rollback_takes_back_is_left_to_the_model) {
    object* const owner = thing("owner");
    begin();
    object* const made = create(owner);
    ASSERT_TRUE(made);
    model->rollback_transaction_all();
    EXPECT_EQ(made->state(), state::deleted);
    EXPECT_EQ(in_memory(), 2u);
    EXPECT_EQ(found(), 1u);

    change_something_else();
    model->undo();
    change_something_else();
    model->clear_history();
    EXPECT_EQ(made->state(), state::deleted) << "no message owns it, so that none frees it";
    EXPECT_EQ(in_memory(), 2u);
    EXPECT_EQ(made->owner(), owner);

    EXPECT_TRUE(change([&] { return create(owner) != nullptr; }));
    model->rollback_last_transaction();
    EXPECT_EQ(in_memory(), 3u) << "a closed one as well";
}

TEST_F(object_ownership, of_what_was_undone_already_is_not_touched_by_a_rollback_of_another) {
    object* const owner = thing("owner");
    change_something_else();
    EXPECT_TRUE(change([&] { return create(owner) != nullptr; }));
    model->undo();
    EXPECT_EQ(in_memory(), 2u);
    model->rollback_last_transaction();
    model->redo();
    EXPECT_EQ(found(), 2u);
    model->undo();
    begin();
    end();
    EXPECT_EQ(in_memory(), 1u) << "the message of its creation had it all the time";
}

TEST_F(object_ownership, of_a_deletion_that_a_rollback_takes_back_is_the_models_again) {
    object* const owner = thing("owner");
    object* const child = part("child", owner);
    begin();
    EXPECT_TRUE(remove(owner));
    model->rollback_transaction_all();
    change_something_else();
    model->clear_history();
    EXPECT_EQ(child->state(), state::normal);
    EXPECT_EQ(in_memory(), 2u);
    EXPECT_EQ(found(), 2u);
}

// Where no hook asks, deleted objects still change: then a message newer than that of their deletion names them.
TEST_F(object_ownership, of_what_newer_messages_speak_of_is_left_to_the_model) {
    for (const late_case& r : late_cases()) {
        SCOPED_TRACE(r.why);
        object* const other = thing("other");
        object* gone = r.was_made ? nullptr : thing("gone");
        model->set_undo_levels(1);
        ASSERT_TRUE(change([&] { return r.was_made ? (gone = create(root)) != nullptr : remove(gone); }));
        if (r.was_made) model->undo();
        ASSERT_EQ(gone->state(), state::deleted);
        // The first message behind an undo ends what redo could bring back; the limit ends what undo could.
        const std::size_t from = r.was_made ? 0 : 1;
        EXPECT_TRUE(r.was_made ? r.then(gone, other) : change([&] { return r.then(gone, other); }));
        const auto& all = static_cast<model_impl*>(model)->pool().objects();
        ASSERT_NE(std::find(all.begin(), all.end(), static_cast<object_impl*>(gone)), all.end());
        EXPECT_EQ(gone->state(), state::deleted);
        EXPECT_EQ(gone->model(), model);
        EXPECT_NE(history(), "");
        for (int round = 0; round != 2; ++round) {
            for (std::size_t at = model->message_count(); at-- != from;) model->message_at(at)->undo();
            for (std::size_t at = from; at != model->message_count(); ++at) model->message_at(at)->redo();
        }
        EXPECT_EQ(model->find_object(gone->id()), nullptr);
        start_anew();
    }
}

// A freed object takes its values with it: those that it got behind its deletion too.
TEST_F(object_ownership, ends_together_with_that_of_the_values_inside) {
    const long before = counted_value::alive;
    ASSERT_TRUE(change([&] {
        object* const made = create(root);
        return made->set_property(props::text, counted_value{1}) && remove(made);
    }));
    EXPECT_EQ(counted_value::alive, before + 1);
    model->undo();
    EXPECT_EQ(counted_value::alive, before + 1);
    change_something_else();
    EXPECT_EQ(counted_value::alive, before);
    ASSERT_TRUE(change([&] {
        object* const made = create(root);
        return made->set_property(props::text, counted_value{1});
    }));
    start_anew();
    EXPECT_EQ(counted_value::alive, before);
}

} // namespace kelm::test
