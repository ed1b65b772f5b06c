// Whose a value is: the object's while it stands there, else the message's that can bring it back; and when it dies.
// Objects that messages own are object_ownership_test.
#include "tests/object/value_lines.h"
#include "tests/support/counted_value.h"

#include <functional>

namespace kelm::test {
namespace {

/// One change, and how many values its messages own beside what the object holds.
struct owned_case {
    const char* why;
    std::function<bool(object*)> prepare;
    std::function<bool(object*)> change;
    long in_object; ///< behind the change
    long done;      ///< owned by messages while they stand done
    long undone;    ///< and while they stand undone
    long before;    ///< in the object while they stand undone
};

class value_ownership : public value_world {
protected:
    static constexpr u32 id = props::text;
    static constexpr u32 list_id = props::list;

    /// \returns the values that live beyond those of before the test
    long alive() const { return counted_value::alive - at_start_; }

    static bool nothing(object*) { return true; }
    static bool set_one(object* to) { return to->set_property(id, counted_value{1}); }
    static bool append_one(object* to) { return to->append_vector_element(list_id, counted_value{1}); }
    static bool append_two(object* to) { return append_one(to) && append_one(to); }

    static std::vector<owned_case> cases() {
        return {
            {"a first value: undone, it is the message's", nothing, set_one, 1, 0, 1, 0},
            {"over another: the one that does not stand there is the message's", set_one,
             [](object* o) { return o->set_property(id, counted_value{2}); }, 1, 1, 1, 1},
            {"twice", nothing, [](object* o) { return set_one(o) && set_one(o); }, 1, 1, 2, 0},
            {"a deletion: done, the value is the message's", set_one,
             [](object* o) { return o->delete_property(id); }, 0, 1, 0, 1},
            {"set and deleted", nothing, [](object* o) { return set_one(o) && o->delete_property(id); }, 0, 1,
             1, 0},
            {"deleted and set", set_one, [](object* o) { return o->delete_property(id) && set_one(o); }, 1, 1,
             1, 1},
            {"an element replaced", append_one,
             [](object* o) { return o->set_vector_element(list_id, counted_value{2}, 0); }, 1, 1, 1, 1},
            {"an element inserted", append_one,
             [](object* o) { return o->insert_vector_element(list_id, counted_value{2}, 0); }, 2, 0, 1, 1},
            {"an element that found no place is always the message's", append_one,
             [](object* o) { return o->insert_vector_element(list_id, counted_value{2}, 7); }, 1, 1, 1, 1},
            {"an element taken out", append_two,
             [](object* o) { return o->delete_vector_element(list_id, 0); }, 1, 1, 0, 2},
            {"an element moved: nobody else has anything", append_two,
             [](object* o) { return o->move_vector_element(list_id, 0, 1); }, 2, 0, 0, 2},
            {"an element moved and taken out", append_two,
             [](object* o) {
                 return o->move_vector_element(list_id, 0, 1) && o->delete_vector_element(list_id, 1);
             },
             1, 1, 0, 2},
            {"a list that goes with its elements", append_two,
             [](object* o) { return o->delete_property(list_id); }, 0, 2, 0, 2},
            {"a list that comes with its first element", nothing, append_one, 1, 0, 1, 0},
            {"a refresh owns both on either side", set_one,
             [](object* o) {
                 const counted_value now{2};
                 const counted_value then{3};
                 return o->refresh_property(props::definition, &now, &then);
             },
             1, 2, 2, 1},
            {"a refresh from nothing", nothing,
             [](object* o) {
                 const counted_value now{2};
                 return o->refresh_property(props::definition, &now, nullptr);
             },
             0, 1, 1, 0},
            {"a refresh to nothing", nothing,
             [](object* o) {
                 const counted_value then{2};
                 return o->refresh_property(props::definition, nullptr, &then);
             },
             0, 1, 1, 0},
            {"a mark owns nothing", set_one,
             [](object* o) { return o->set_property_not_inheritable(id, true); }, 1, 0, 0, 1},
        };
    }
    /// Runs each case on an object of its own, with its change made in a transaction.
    template <class Check>
    void for_each_case(Check&& check) {
        for (const owned_case& row : cases()) {
            SCOPED_TRACE(row.why);
            model->set_undo_levels(-1);
            object* const to = thing("to");
            prepare([&] { ASSERT_TRUE(row.prepare(to)); });
            ASSERT_EQ(alive(), row.before);
            ASSERT_TRUE(change([&] { return row.change(to); }));
            check(row, to);
            model->clear_history();
            begin();
            fw.delete_object(to);
            end();
            model->clear_history();
            ASSERT_EQ(alive(), 0) << "with the object all of them go";
        }
    }
    /// A transaction without values.
    void change_something_else() {
        ASSERT_TRUE(change([&] { return root->set_property(props::name, kelm::test::text("m")); }));
    }

private:
    const long at_start_ = counted_value::alive;
};

} // namespace

TEST_F(value_ownership, is_passed_between_object_and_message) {
    for_each_case([&](const owned_case& row, object*) {
        for (int round = 0; round != 3; ++round) {
            EXPECT_EQ(alive(), row.in_object + row.done);
            model->undo();
            EXPECT_EQ(alive(), row.before + row.undone);
            model->redo();
        }
    });
}

TEST_F(value_ownership, of_what_cannot_be_undone_any_more_ends_with_the_limit) {
    for (const bool redone : {false, true}) {
        SCOPED_TRACE(redone ? "redone before" : "never undone");
        for_each_case([&](const owned_case& row, object*) {
            if (redone) {
                model->undo();
                model->redo();
            }
            model->set_undo_levels(1);
            EXPECT_EQ(alive(), row.in_object + row.done) << "not before the next transaction ends";
            change_something_else();
            EXPECT_EQ(alive(), row.in_object);
        });
    }
}

TEST_F(value_ownership, of_what_cannot_be_redone_any_more_ends_with_the_next_transaction) {
    for_each_case([&](const owned_case& row, object*) {
        model->undo();
        model->redo();
        model->undo();
        EXPECT_EQ(alive(), row.before + row.undone);
        change_something_else();
        EXPECT_EQ(alive(), row.before);
    });
}

TEST_F(value_ownership, ends_with_the_history_on_either_side) {
    for (const bool undone : {false, true}) {
        SCOPED_TRACE(undone ? "undone" : "done");
        for_each_case([&](const owned_case& row, object*) {
            if (undone) model->undo();
            model->clear_history();
            EXPECT_EQ(alive(), undone ? row.before : row.in_object);
        });
    }
}

TEST_F(value_ownership, ends_with_a_rollback) {
    for (const owned_case& row : cases()) {
        SCOPED_TRACE(row.why);
        object* const to = thing("to");
        prepare([&] { ASSERT_TRUE(row.prepare(to)); });
        begin();
        ASSERT_TRUE(row.change(to));
        model->rollback_transaction_all();
        EXPECT_EQ(alive(), row.before);
        ASSERT_TRUE(change([&] { return row.change(to); }));
        model->rollback_last_transaction();
        EXPECT_EQ(alive(), row.before);
        begin();
        fw.delete_object(to);
        end();
        model->clear_history();
        ASSERT_EQ(alive(), 0);
    }
}

TEST_F(value_ownership, ends_with_the_model_on_either_side) {
    for (const owned_case& row : cases()) {
        for (const bool undone : {false, true}) {
            SCOPED_TRACE(std::string{row.why} + (undone ? ", undone" : ", done"));
            object* const other = fw.create_object(type_id::model, nullptr);
            object* const to = fw.create_object(types::thing, other);
            kelm::model& in = *other->model();
            in.begin_transaction("prepared");
            ASSERT_TRUE(row.prepare(to));
            in.end_transaction();
            in.begin_transaction("changed");
            ASSERT_TRUE(row.change(to));
            in.end_transaction();
            if (undone) in.undo();
            EXPECT_GE(alive(), row.before);
            EXPECT_TRUE(fw.delete_object(other));
            fw.set_in_semantic(false);
            EXPECT_EQ(alive(), 0);
        }
    }
}

TEST_F(value_ownership, of_an_inherited_value_is_a_clone_that_stays_the_messages) {
    object* const base = thing("base");
    object* const to = thing("to");
    prepare([&] {
        ASSERT_TRUE(set_one(base));
        ASSERT_TRUE(to->add_inherits_from(base));
    });
    ASSERT_EQ(alive(), 1);
    ASSERT_TRUE(change([&] { return to->set_property(id, counted_value{2}); }));
    for (int round = 0; round != 2; ++round) {
        EXPECT_EQ(alive(), 3)
            << "two values stand in objects, and the message has a clone of the inherited one";
        model->undo();
        EXPECT_EQ(alive(), 3) << "one value stands in the base, and the message has the other and the clone";
        model->redo();
    }
    model->undo();
    change_something_else();
    EXPECT_EQ(alive(), 1);
    ASSERT_TRUE(change([&] { return to->set_property(id, counted_value{2}); }));
    model->clear_history();
    EXPECT_EQ(alive(), 2);
}

TEST_F(value_ownership, of_messages_that_are_only_told_is_none) {
    object* const to = thing("to");
    prepare([&] { ASSERT_TRUE(set_one(to)); });
    ASSERT_TRUE(change([&] { return to->set_property(id, counted_value{2}); }));
    listen({to});
    const long before = alive();
    ears.meanwhile = [&](message* what) {
        EXPECT_EQ(alive(), before);
        const auto* const set = message_cast<property_set_message>(what);
        ASSERT_TRUE(set);
        const value_ptr handed_out = set->new_value();
        EXPECT_EQ(alive(), before + 1);
    };
    model->undo();
    model->redo();
    EXPECT_EQ(ears.take(), "7 again user to: 10 in to 'counted 2' of to to 'counted 1'\n"
                           "7 again user to: 10 in to 'counted 1' of to to 'counted 2'\n");
    EXPECT_EQ(alive(), before);
}

TEST_F(value_ownership, of_a_deleted_object_is_that_of_the_messages_of_its_deletion) {
    object* const gone = thing("gone");
    prepare([&] {
        ASSERT_TRUE(set_one(gone));
        ASSERT_TRUE(append_two(gone));
    });
    ASSERT_TRUE(change([&] { return fw.delete_object(gone); }));
    for (int round = 0; round != 2; ++round) {
        EXPECT_EQ(alive(), 3);
        model->undo();
        EXPECT_EQ(alive(), 3);
        model->redo();
    }
    model->clear_history();
    EXPECT_EQ(alive(), 0);
}

// A property of the model's types is set and taken away outside any object.
TEST_F(value_ownership, of_attributes_is_the_messages_beside_the_types) {
    meta_object* const type = model->meta_model()->find_meta_object(types::thing);
    meta_property* own = nullptr;
    const auto set_default = [&](int to) {
        return change([&] {
            return model->set_user_defined_property_attribute(type, own, attribute_id::default_value,
                                                              counted_value{to});
        });
    };
    ASSERT_TRUE(change([&] {
        own = model->add_user_defined_property(types::thing, "Own", data_type::string, "", 0);
        return own != nullptr;
    }));
    const u32 own_id = own->id();
    ASSERT_TRUE(set_default(1));
    EXPECT_EQ(alive(), 2) << "the attribute's and the message's";
    ASSERT_TRUE(set_default(2));
    EXPECT_EQ(alive(), 4) << "the second message has the former one too";
    ASSERT_TRUE(change([&] { return model->remove_user_defined_property(types::thing, own_id); }));
    EXPECT_EQ(alive(), 4) << "the attribute went; the message has its default";
    model->undo();
    EXPECT_EQ(alive(), 5) << "a clone stands in the attribute again";
    model->undo();
    model->undo();
    EXPECT_EQ(alive(), 4) << "the attribute has none";
    model->redo();
    EXPECT_EQ(alive(), 5);
    model->undo();
    change_something_else();
    EXPECT_EQ(alive(), 0);
    own = model->meta_model()->find_meta_object(types::thing)->find_property(own_id);
    ASSERT_TRUE(own) << "its making was not undone";
    ASSERT_TRUE(set_default(1));
    ASSERT_TRUE(set_default(2));
    model->clear_history();
    EXPECT_EQ(alive(), 1);
}

} // namespace kelm::test
