// Making and deleting objects and models through the framework: steps, flags, refusals.
// The cascade of a deletion is tested with objects.
#include "tests/support/consistency.h"
#include "tests/support/model_hooks.h"
#include "tests/support/unregistered_value.h"

#include <kelm/structure_messages.h>

#include <algorithm>

namespace kelm::test {
namespace {

/// A value that counts its deaths; what is stored of it is another.
class dying final : public unregistered_value {
public:
    explicit dying(int& deaths) : deaths_(deaths) {}
    ~dying() override { ++deaths_; }
    abstract_property* clone() const override { return new property<int>{1}; }

private:
    int& deaths_;
};

class create_object : public hooked_model_world {
protected:
    /// \returns the models that this test has made itself, closed by it as well
    object* another_model() { return fw.create_object(type_id::model, nullptr); }
    std::size_t open_models() { return fw.models().size(); }
    bool user_created(std::size_t index) { return model->message_at(index)->is_user_created(); }
};

TEST_F(create_object, a_model_is_entered_in_the_list_with_an_empty_history) {
    const std::size_t before = open_models();
    object* const made = another_model();
    ASSERT_TRUE(made);
    kelm::model& its = *made->model();
    EXPECT_EQ(open_models(), before + 1);
    EXPECT_EQ(fw.models().back(), &its) << "in the order of their making";
    EXPECT_EQ(made->id(), 1u);
    EXPECT_EQ(made->type(), type_id::model);
    EXPECT_EQ(made->state(), state::normal);
    EXPECT_EQ(its.find_object(1), made);
    EXPECT_EQ(its.message_count(), 0u);
    EXPECT_FALSE(its.is_modified());
    EXPECT_FALSE(its.in_transaction());
    EXPECT_EQ(its.last_object_id(), 2u);
    EXPECT_EQ(its.last_transaction_id(), 1u) << "its making was a transaction";
    EXPECT_TRUE(fw.delete_object(made));
    EXPECT_EQ(open_models(), before);
    fw.set_in_semantic(false);
}

TEST_F(create_object, what_cannot_be_made_is_null_and_leaves_nothing) {
    object* const deleted = thing("deleted");
    begin();
    fw.delete_object(deleted);
    end();
    object* const bare = fw.instantiate_object(types::thing, model, false);
    const struct {
        const char* why;
        u32 type;
        object* owner;
    } rows[] = {
        {"a generic type of the library", type_id::generic_object, root},
        {"a generic type of the application", types::abstract, root},
        {"an unknown type", 77777, root},
        {"type 0, which nobody has defined", 0, root},
        {"a library", type_id::library, nullptr},
        {"a library with an owner", type_id::library, root},
        {"a plain type without an owner", types::thing, nullptr},
        {"a model with an owner", type_id::model, root},
        {"an owner outside any model", types::thing, bare},
        {"a deleted owner", types::thing, deleted},
    };
    const std::size_t messages = model->message_count();
    const std::size_t models = open_models();
    const u32 last = model->last_object_id();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(fw.create_object(row.type, row.owner), nullptr);
        EXPECT_EQ(model->message_count(), messages);
        EXPECT_EQ(model->last_object_id(), last);
        EXPECT_EQ(open_models(), models);
    }
}

TEST_F(create_object, the_hooks_of_creation_come_between_the_id_map_and_the_children) {
    int calls = 0;
    hooks.on<obj_create_semantic>([&](hook_call& call) {
        ++calls;
        EXPECT_EQ(model->find_object(call.at->id()), call.at);
        EXPECT_EQ(call.at->state(), state::being_created);
        EXPECT_EQ(root->child_position(call.at), npos);
        EXPECT_EQ(call.at->owner(), root);
        EXPECT_EQ(model->message_at(model->message_count() - 1)->type(), message_type::obj_create);
        EXPECT_TRUE(fw.in_semantic());
        EXPECT_TRUE(fw.delete_object(call.at)) << "what is being made is not deleted";
        EXPECT_EQ(call.at->state(), state::being_created);
        return true;
    });
    begin();
    object* const made = fw.create_object(types::hooked, root);
    ASSERT_TRUE(made);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(made->state(), state::normal);
    EXPECT_EQ(root->child_position(made), 0u);
    EXPECT_FALSE(fw.in_semantic());
    end();
    EXPECT_EQ(message_types(), "1 4 14 2");
}

TEST_F(create_object, only_the_creation_itself_is_the_users_own_doing) {
    begin();
    fw.create_object(types::thing, root);
    EXPECT_TRUE(user_created(1)) << "created";
    EXPECT_FALSE(user_created(2)) << "put among the children";
    fw.set_in_semantic(true);
    fw.create_object(types::thing, root);
    EXPECT_FALSE(user_created(3));
    EXPECT_TRUE(fw.in_semantic()) << "as it was";
    fw.set_in_semantic(false);
    end();
}

TEST_F(create_object, the_first_object_gets_the_third_id) {
    EXPECT_EQ(thing("a")->id(), 3u);
    EXPECT_EQ(thing("b")->id(), 4u);
}

TEST_F(create_object, a_refused_creation_is_taken_back_and_has_used_up_its_id) {
    hooks.refuse<obj_create_semantic>();
    begin();
    const u32 refused = model->last_object_id() + 1;
    EXPECT_EQ(fw.create_object(types::hooked, root), nullptr);
    EXPECT_FALSE(model->in_transaction()) << "the level was rolled back";
    EXPECT_EQ(model->find_object(refused), nullptr);
    EXPECT_FALSE(fw.in_semantic()) << "the rollback has cleared it";
    EXPECT_EQ(model->last_object_id(), refused);
    EXPECT_EQ(thing("next")->id(), refused + 1);
}

TEST_F(create_object, outside_a_transaction_a_refused_creation_stays_half_made) {
    hooks.refuse<obj_create_semantic>();
    EXPECT_EQ(fw.create_object(types::hooked, root), nullptr);
    EXPECT_TRUE(fw.in_semantic());
    object* const left = model->find_object(model->last_object_id());
    ASSERT_TRUE(left);
    EXPECT_EQ(left->state(), state::being_created);
    EXPECT_EQ(root->child_position(left), npos);
    EXPECT_EQ(message_types(), "4");
    EXPECT_TRUE(fw.delete_object(left)) << "nothing is done";
    EXPECT_EQ(left->state(), state::being_created);
}

TEST_F(create_object, an_owner_that_refuses_its_child_ends_the_creation) {
    object* const owner = hooked("owner");
    const struct {
        const char* why;
        int kind;
        const char* messages;
        std::size_t position;
    } rows[] = {
        {"before", pre_add_child_semantic::kind, "4", npos},
        {"behind", post_add_child_semantic::kind, "4 14", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        model->clear_history();
        fw.set_in_semantic(false);
        hooks.clear();
        hooks.refuse(row.kind);
        EXPECT_EQ(fw.create_object(types::thing, owner), nullptr);
        EXPECT_TRUE(fw.in_semantic()) << "outside a transaction nothing clears it";
        EXPECT_EQ(message_types(), row.messages);
        object* const left = model->find_object(model->last_object_id());
        EXPECT_EQ(left->state(), state::being_created);
        EXPECT_EQ(owner->child_position(left), row.position);

        model->clear_history();
        begin();
        EXPECT_EQ(fw.create_object(types::part, owner), nullptr);
        EXPECT_EQ(model->find_object(model->last_object_id()), nullptr);
        EXPECT_FALSE(fw.in_semantic());
        EXPECT_EQ(model->message_count(), 0u);
    }
}

TEST_F(create_object, keeps_the_mark_set_when_an_observer_refuses_the_new_child) {
    recorder ear;
    ear.watch(root);
    ear.answer = false;
    begin(); // refused as well, and open all the same
    EXPECT_EQ(fw.create_object(types::thing, root), nullptr);
    EXPECT_TRUE(fw.in_semantic()) << "no rollback has run";
    EXPECT_EQ(message_types(), "1 4 14") << "what was done stays";
    object* const left = model->find_object(model->last_object_id());
    EXPECT_EQ(left->state(), state::being_created);
    EXPECT_EQ(root->child_position(left), 0u);
}

TEST_F(create_object, what_a_hook_rolls_back_and_agrees_to_stays_deleted_and_comes_to_no_owner) {
    const struct {
        const char* why;
        int kind; ///< of the hook that rolls back
        u32 type;
    } rows[] = {
        {"the owner's, behind the addition", post_add_child_semantic::kind, types::thing},
        {"its own", obj_create_semantic::kind, types::hooked},
    };
    const struct {
        const char* why;
        void (kelm::model::*roll_back)();
    } roads[] = {
        {"the level", &kelm::model::rollback_transaction},
        {"all levels", &kelm::model::rollback_transaction_all},
    };
    object* const owner = hooked("owner");
    for (const auto& row : rows) {
        for (const auto& road : roads) {
            SCOPED_TRACE(std::string(row.why) + ", " + road.why);
            hooks.on(row.kind, [&](hook_call&) {
                (model->*road.roll_back)();
                return true;
            });
            begin();
            object* const made = fw.create_object(row.type, owner);
            hooks.clear();
            ASSERT_TRUE(made);
            EXPECT_EQ(made->state(), state::deleted);
            EXPECT_EQ(model->find_object(made->id()), nullptr);
            EXPECT_FALSE(owner->has_children());
            EXPECT_EQ(model->message_count(), 0u) << message_types();
            EXPECT_EQ(broken_links(*model), "");
        }
    }
}

TEST_F(create_object, children_that_hooks_give_a_new_model_stay_and_are_forgotten) {
    at_create = [&](object* made) {
        EXPECT_EQ(made->state(), state::being_created);
        EXPECT_EQ(fw.models().back(), made->model());
        EXPECT_TRUE(made->model()->in_transaction());
        EXPECT_EQ(made->model()->current_transaction()->name(), "New Model");
        return fw.create_object(types::thing, made) != nullptr;
    };
    object* const made = another_model();
    ASSERT_TRUE(made);
    EXPECT_EQ(made->child_count(types::thing), 1u);
    EXPECT_EQ(made->model()->message_count(), 0u);
    EXPECT_FALSE(made->model()->is_modified());
    EXPECT_FALSE(made->model()->can_undo());
    fw.delete_object(made);
}

TEST_F(create_object, a_bare_object_has_no_owner_no_id_no_message) {
    hooks.refuse<obj_create_semantic>();
    object* const bare = fw.instantiate_object(types::hooked, model, false);
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->id(), 0u);
    EXPECT_EQ(bare->owner(), nullptr);
    EXPECT_EQ(bare->state(), state::normal);
    EXPECT_EQ(model->message_count(), 0u);
    std::vector<shared_ptr<semantic>> its;
    EXPECT_FALSE(bare->semantics_of_kind(obj_create_semantic::kind, its));
    EXPECT_FALSE(fw.delete_object(bare)) << "nobody owns it";
    EXPECT_EQ(bare->state(), state::normal);
}

TEST_F(create_object, bare_construction_refuses_what_has_no_meaning) {
    EXPECT_EQ(fw.instantiate_object(type_id::generic_object, model, false), nullptr);
    EXPECT_EQ(fw.instantiate_object(types::abstract, nullptr, false), nullptr);
    EXPECT_EQ(fw.instantiate_object(77777, model, false), nullptr);
    EXPECT_EQ(fw.instantiate_object(type_id::library, nullptr, true), nullptr);
    EXPECT_EQ(fw.instantiate_object(types::thing, model, true), nullptr) << "an id needs an owner";
}

TEST_F(create_object, a_bare_model_is_listed_without_a_transaction) {
    at_create = [](object*) { return false; };
    for (const bool assign_id : {true, false}) {
        SCOPED_TRACE(assign_id);
        object* const bare = fw.instantiate_object(type_id::model, nullptr, assign_id);
        ASSERT_TRUE(bare);
        kelm::model& its = *bare->model();
        EXPECT_EQ(fw.models().back(), &its);
        EXPECT_EQ(bare->id(), assign_id ? 1u : 0u);
        EXPECT_EQ(its.find_object(1), assign_id ? bare : nullptr);
        EXPECT_EQ(bare->state(), state::normal);
        EXPECT_EQ(its.last_transaction_id(), 0u);
        EXPECT_EQ(its.begin_transaction("first")->id(), 1u);
        EXPECT_TRUE(fw.delete_object(bare));
        fw.set_in_semantic(false);
    }
}

TEST_F(create_object, values_are_set_in_order_until_one_is_refused_and_all_are_consumed) {
    int deaths = 0;
    hooks.on<pre_prop_set_semantic>([](hook_call& call) { return call.numbers.at(0) != props::number; });
    initial_values values{{props::text, new dying(deaths)},
                          {props::flag, nullptr},
                          {props::number, new dying(deaths)},
                          {props::real, new dying(deaths)}};
    EXPECT_EQ(fw.create_object_with_properties(types::hooked, root, &values), nullptr);
    EXPECT_EQ(deaths, 3);
    for (const auto& [id, value] : values) EXPECT_EQ(value, nullptr) << id;
    object* const left = model->find_object(model->last_object_id());
    ASSERT_TRUE(left) << "the object stays";
    EXPECT_EQ(left->state(), state::normal);
    EXPECT_TRUE(left->defines_property(props::text));
    EXPECT_FALSE(left->defines_property(props::number));
    EXPECT_FALSE(left->defines_property(props::real)) << "behind the refused one";
}

TEST_F(create_object, values_are_consumed_also_when_nothing_is_made) {
    initial_values values{{props::text, text("x").clone()}};
    EXPECT_EQ(fw.create_object_with_properties(type_id::generic_object, root, &values), nullptr);
    EXPECT_EQ(values[0].second, nullptr);
    object* const made = fw.create_object_with_properties(types::thing, root, nullptr);
    EXPECT_TRUE(made) << "there need not be any";
    initial_values full{{props::text, text("x").clone()}, {props::number, number(3).clone()}};
    object* const with = fw.create_object_with_properties(types::thing, root, &full);
    ASSERT_TRUE(with);
    EXPECT_EQ(as_text(with->get_property(props::text)), "x");
    EXPECT_EQ(as_text(with->get_property(props::number)), "3");
}

TEST_F(create_object, deleting_is_done_once) {
    object* const a = thing("a");
    begin();
    EXPECT_TRUE(fw.delete_object(a));
    EXPECT_EQ(a->state(), state::deleted);
    const std::size_t messages = model->message_count();
    EXPECT_TRUE(fw.delete_object(a));
    EXPECT_EQ(model->message_count(), messages);
    EXPECT_FALSE(fw.delete_object(nullptr));
    end();
}

TEST_F(create_object, only_the_announcement_of_a_deletion_carries_the_callers_mark) {
    object* const a = thing("a");
    part("child", a);
    begin();
    fw.delete_object(a);
    std::string types_of_users;
    for (std::size_t i = 0; i != model->message_count(); ++i)
        if (user_created(i)) types_of_users += std::to_string(model->message_at(i)->type()) + " ";
    EXPECT_EQ(message_types(), "1 5 15 5 15 10 16 6 10 16 6");
    EXPECT_EQ(types_of_users, "1 5 ") << "the child's is the cascade's";
    EXPECT_FALSE(fw.in_semantic());
    end();
}

TEST_F(create_object, deleting_several_passes_over_what_went_with_another) {
    object* const owner = thing("owner");
    object* const child = part("child", owner);
    object* const free = thing("free");
    begin();
    EXPECT_TRUE(fw.delete_objects({}));
    EXPECT_TRUE(fw.delete_objects({owner, nullptr, child, free, free}));
    EXPECT_EQ(child->state(), state::deleted);
    EXPECT_EQ(free->state(), state::deleted);
    EXPECT_EQ(message_types(), "1 5 15 5 15 10 16 6 10 16 6 5 15 10 16 6");
    end();
}

TEST_F(create_object, deleting_several_stops_at_the_first_refusal) {
    object* const first = thing("first");
    object* const refused = hooked("refused");
    object* const last = thing("last");
    hooks.refuse<obj_pre_delete_semantic>();
    EXPECT_FALSE(fw.delete_objects({first, refused, last}));
    EXPECT_EQ(first->state(), state::deleted) << "outside a transaction what was done stays";
    EXPECT_EQ(refused->state(), state::normal);
    EXPECT_EQ(last->state(), state::normal);
}

TEST_F(create_object, models_are_found_by_id_and_taken_out_of_the_list) {
    object* const other = another_model();
    GUID id;
    other->model()->model_id(id);
    EXPECT_EQ(fw.find_model(id), other->model());
    EXPECT_EQ(fw.model_of(other), other->model());
    EXPECT_EQ(fw.model_of(nullptr), nullptr);
    EXPECT_EQ(fw.library_of(other), nullptr) << "there are no libraries";
    EXPECT_EQ(fw.library_of(nullptr), nullptr);
    fw.remove_model(other->model());
    EXPECT_EQ(fw.find_model(id), nullptr);
    EXPECT_EQ(open_models(), 1u + static_cast<std::size_t>(std::ranges::count_if(
                                      fw.models(), [&](kelm::model* each) { return each != model; })));
    EXPECT_EQ(other->state(), state::normal) << "it is not deleted";
    EXPECT_TRUE(fw.delete_object(other));
    EXPECT_EQ(fw.find_model(GUID{}), nullptr);
}

} // namespace
} // namespace kelm::test
