// What the kinds of messages have in common: number, faces, flags, and which of them remember their side.
// What each says and does is tested by family.
#include "tests/message/every_kind.h"

#include "message/message_impl.h"

#include <algorithm>
#include <set>

namespace kelm::test {
namespace {

class message_kinds : public every_kind {
protected:
    static bool remembers_undo(const message* what) {
        return dynamic_cast<const message_impl*>(what)->is_undone();
    }
    /// \returns the level of a bracket; 0 for anything else
    static u32 level_of(const message* what) {
        if (const auto* const begun = message_cast<const tran_begin_message>(what)) return begun->level();
        const auto* const ended = message_cast<const tran_end_message>(what);
        return ended ? ended->level() : 0;
    }
    void expect_first_run(const char* when, const std::vector<message*>& all, bool changes, bool levels) {
        SCOPED_TRACE(when);
        for (const message* each : all)
            EXPECT_EQ(each->is_first_run(), is_silent(each)       ? false
                                            : level_of(each) == 1 ? levels
                                                                  : changes)
                << described(each);
    }
};

} // namespace

TEST_F(message_kinds, the_scenario_makes_all_that_are_stored) {
    std::set<u32> made_kinds;
    for (const message* each : changed_everything()) made_kinds.insert(each->type());
    std::set<u32> all;
    for (u32 type = message_type::tran_begin; type <= message_type::udp_set_attribute_value; ++type)
        if (type != message_type::tran_rollback) all.insert(type);
    EXPECT_EQ(made_kinds, all);
}

TEST_F(message_kinds, are_a_first_run_until_they_are_redone_and_never_again) {
    const std::vector<message*> all = changed_everything();
    expect_first_run("stored", all, true, true);
    model->undo();
    expect_first_run("undone", all, true, true);
    model->redo();
    expect_first_run("redone: levels inside keep silent, and stay as they were", all, false, true);
    model->undo();
    expect_first_run("undone once more", all, false, true);
    model->redo();
    expect_first_run("redone once more", all, false, true);
}

TEST_F(message_kinds, remember_that_they_are_undone_where_they_own_something) {
    using namespace message_type;
    const std::set<u32> remembering{obj_create,
                                    obj_delete,
                                    property_set,
                                    property_set_vec_prop,
                                    property_insert_vec_prop,
                                    property_delete,
                                    property_delete_vec_prop,
                                    property_set_not_inheritable};
    const std::vector<message*> all = changed_everything();
    for (int round = 0; round != 2; ++round) {
        for (const message* each : all) EXPECT_FALSE(remembers_undo(each)) << described(each);
        model->undo();
        for (const message* each : all)
            EXPECT_EQ(remembers_undo(each), remembering.contains(each->type()) && !is_refresh(each))
                << described(each);
        model->redo();
    }
    for (const message* each : all) EXPECT_FALSE(remembers_undo(each)) << described(each);
}

TEST_F(message_kinds, of_transactions_and_user_defined_properties_speak_of_the_model) {
    for (const message* each : changed_everything()) {
        if (is_bracket(each) || each->type() >= message_type::udp_add)
            EXPECT_EQ(each->object(), root) << described(each);
        else
            EXPECT_NE(each->object(), root) << described(each);
    }
}

TEST_F(message_kinds, have_the_face_of_their_kind_and_no_other) {
    using namespace message_type;
    struct row {
        const char* face;
        std::set<u32> kinds;
        /// \returns the message that the face belongs to, null when the message has no such face
        message* (*through)(message*);
    };
    const auto face = []<class Face>(Face*) {
        return [](message* what) { return message_cast<message>(message_cast<Face>(what)); };
    };
    const row rows[] = {
        {"begin", {tran_begin}, face(static_cast<tran_begin_message*>(nullptr))},
        {"end", {tran_end}, face(static_cast<tran_end_message*>(nullptr))},
        {"rollback", {}, face(static_cast<tran_rollback_message*>(nullptr))},
        {"close", {}, face(static_cast<model_close_message*>(nullptr))},
        {"create", {obj_create}, face(static_cast<obj_create_message*>(nullptr))},
        {"pre delete", {obj_pre_delete}, face(static_cast<obj_pre_delete_message*>(nullptr))},
        {"delete", {obj_delete}, face(static_cast<obj_delete_message*>(nullptr))},
        {"shared by six",
         {property_set, property_set_vec_prop, property_insert_vec_prop, property_delete,
          property_delete_vec_prop, element_position_vec_prop},
         face(static_cast<property_change_message*>(nullptr))},
        {"set", {property_set}, face(static_cast<property_set_message*>(nullptr))},
        {"set element", {property_set_vec_prop}, face(static_cast<property_set_vec_prop_message*>(nullptr))},
        {"insert element",
         {property_insert_vec_prop},
         face(static_cast<property_insert_vec_prop_message*>(nullptr))},
        {"delete value", {property_delete}, face(static_cast<property_delete_message*>(nullptr))},
        {"delete element",
         {property_delete_vec_prop},
         face(static_cast<property_delete_vec_prop_message*>(nullptr))},
        {"move element",
         {element_position_vec_prop},
         face(static_cast<element_position_vec_prop_message*>(nullptr))},
        {"mark",
         {property_set_not_inheritable},
         face(static_cast<property_set_not_inheritable_message*>(nullptr))},
        {"add child", {child_add}, face(static_cast<child_add_message*>(nullptr))},
        {"pre remove", {child_pre_remove}, face(static_cast<child_pre_remove_message*>(nullptr))},
        {"remove child", {child_remove}, face(static_cast<child_remove_message*>(nullptr))},
        {"order", {child_order}, face(static_cast<child_order_message*>(nullptr))},
        {"owner", {owner_set}, face(static_cast<owner_set_message*>(nullptr))},
        {"add base", {inherits_add}, face(static_cast<inherits_add_message*>(nullptr))},
        {"cancel base", {inherits_cancel}, face(static_cast<inherits_cancel_message*>(nullptr))},
        {"insert base", {inherits_insert}, face(static_cast<inherits_insert_message*>(nullptr))},
        {"order bases", {inherits_from_order}, face(static_cast<inherits_from_order_message*>(nullptr))},
        {"replace base", {inherits_replace}, face(static_cast<inherits_replace_message*>(nullptr))},
        {"add observer", {observer_add}, face(static_cast<observer_add_message*>(nullptr))},
        {"remove observer", {observer_remove}, face(static_cast<observer_remove_message*>(nullptr))},
        {"add udp", {udp_add}, face(static_cast<udp_add_message*>(nullptr))},
        {"remove udp", {udp_remove}, face(static_cast<udp_remove_message*>(nullptr))},
        {"udp attribute",
         {udp_set_attribute_value},
         face(static_cast<udp_set_attribute_value_message*>(nullptr))},
    };
    const std::vector<message*> all = changed_everything();
    for (const row& r : rows) {
        SCOPED_TRACE(r.face);
        for (message* each : all)
            EXPECT_EQ(r.through(each), r.kinds.contains(each->type()) ? each : nullptr) << described(each);
    }
}

TEST_F(message_kinds, stand_in_for_their_inverse_on_the_way_back_and_for_themselves_forwards) {
    const std::vector<message*> all = changed_everything();
    const auto is_stored = [&](const message* what) { return std::ranges::find(all, what) != all.end(); };
    listen({root, a, b, c, first, second, made});
    std::vector<message*> heard; // addresses only: what undo tells is gone behind it
    ears.meanwhile = [&](message* what) {
        EXPECT_FALSE(what->is_first_run()) << described(what);
        EXPECT_FALSE(is_silent(what)) << described(what);
        if (model->is_undoing()) {
            EXPECT_FALSE(is_stored(what)) << described(what);
        } else if (is_stored(what)) {
            heard.push_back(what);
        } else {
            EXPECT_EQ(what->type() != message_type::property_set &&
                          what->type() != message_type::property_delete,
                      false)
                << "only inherited values have no message of their own: " << described(what);
        }
    };
    for (int round = 0; round != 2; ++round) {
        heard.clear();
        model->undo();
        EXPECT_EQ(model->message_count(), 0u);
        EXPECT_TRUE(heard.empty());
        model->redo();
        EXPECT_EQ(stored(), all);
        std::vector<message*> expected;
        std::ranges::copy_if(all, std::back_inserter(expected),
                             [](const message* each) { return !is_silent(each) && level_of(each) == 0; });
        EXPECT_EQ(heard, expected) << "each once, in the order of the changes";
    }
}

TEST_F(message_kinds, are_walked_past_observers_that_refuse) {
    forget();
    const std::string before = dump();
    changed_everything();
    listen({root, a, b, c, first, second, made});
    ears.answer = false;
    expect_undone_and_redone(before);
}

TEST_F(message_kinds, answer_true_to_undo_and_redo) {
    const std::vector<message*> all = changed_everything();
    const std::string after = dump();
    for (auto each = all.rbegin(); each != all.rend(); ++each)
        EXPECT_TRUE((*each)->undo()) << described(*each);
    for (message* each : all) EXPECT_TRUE(each->redo()) << described(each);
    EXPECT_EQ(dump(), after);
}

TEST_F(message_kinds, that_stand_for_a_bracket_know_only_the_number) {
    const std::vector<message*> all = changed_everything();
    const u32 id = message_cast<tran_begin_message>(all.front())->id();
    int told = 0;
    ears.watch(root);
    ears.meanwhile = [&](message* what) {
        ++told;
        EXPECT_EQ(what->object(), root);
        if (const auto* const begun = message_cast<tran_begin_message>(what)) {
            EXPECT_EQ(begun->id(), id);
            EXPECT_EQ(begun->name(), "");
            EXPECT_EQ(begun->level(), 0u);
            EXPECT_EQ(begun->end_message(), nullptr);
        }
        if (const auto* const ended = message_cast<tran_end_message>(what)) {
            EXPECT_EQ(ended->id(), 0u) << "it has no begin to ask";
            EXPECT_EQ(ended->level(), 0u);
            EXPECT_EQ(ended->begin_message(), nullptr);
            EXPECT_EQ(ended->processed_state(), 1u);
            EXPECT_EQ(ended->processed_err_msg(), "");
        }
    };
    model->undo();
    EXPECT_EQ(told, 2) << "and nothing of the level inside";
}

} // namespace kelm::test
