// Laws that hold in every history: undo and redo lead through the same states, a rollback leads to the moment before,
// back-lists equal what is stored, every value is freed once.
// KELM_RANDOM_RUNS sets how many histories are played, KELM_RANDOM_SEED the first seed.
#include "tests/random/random_histories.h"
#include "tests/support/environment.h"
#include "tests/support/world.h"

#include "testing/law_companions.h"

#include <gmock/gmock.h>

#include <functional>
#include <iostream>

namespace kelm::test {

namespace {

void hold_laws(history_mix mix) {
    const u64 runs = from_environment("KELM_RANDOM_RUNS", 600);
    const u64 first = from_environment("KELM_RANDOM_SEED", 1);
    std::cout << "[ seeds    ] " << first << " to " << first + runs - 1 << '\n';
    for (u64 seed = first; seed != first + runs; ++seed) {
        const std::size_t steps = 10 + seed % 60;
        if (play(seed, steps, mix).holds()) continue;
        FAIL() << broken_law(seed, steps, mix);
    }
}

} // namespace

TEST(laws, hold_in_histories_of_values_and_trees) { hold_laws({}); }

TEST(laws, hold_in_histories_with_bases) { hold_laws({.bases = true}); }

TEST(laws, hold_in_histories_with_user_defined_properties) {
    hold_laws({.bases = true, .definitions = true});
}

// A stream says all, and what is read from it goes back and forth like what was written.

TEST(laws, of_streams_hold_in_histories_of_values_and_trees) { hold_laws({.stored = true}); }

TEST(laws, of_streams_hold_in_histories_with_bases) { hold_laws({.bases = true, .stored = true}); }

TEST(laws, of_streams_hold_in_histories_with_user_defined_properties) {
    hold_laws({.bases = true, .definitions = true, .stored = true});
}

// The same calls make the same bytes, wherever memory puts things.  `same_bytes` compares the digest between processes.

TEST(laws, of_repetition_hold_in_all_histories) {
    const u64 runs = from_environment("KELM_RANDOM_RUNS", 600) / 6 + 1;
    const u64 first = from_environment("KELM_RANDOM_SEED", 1);
    u64 digest = 14695981039346656037U;
    for (const history_mix mix : {history_mix{.repeated = true},
                                  {.bases = true, .repeated = true},
                                  {.bases = true, .definitions = true, .repeated = true}})
        for (u64 seed = first; seed != first + runs; ++seed) {
            const std::size_t steps = 10 + seed % 60;
            const told_history once = play_for_bytes(seed, steps, mix);
            const told_history again = play_for_bytes(seed, steps, mix);
            ASSERT_EQ(once.steps, again.steps) << "seed " << seed;
            ASSERT_TRUE(once.bytes == again.bytes)
                << "seed " << seed << '\n'
                << kelm::testing::difference_of_bytes(once.bytes, again.bytes) << once.steps;
            for (const char each : once.bytes)
                digest = (digest ^ static_cast<unsigned char>(each)) * 1099511628211U;
        }
    std::cout << "[ digest   ] " << digest << '\n';
}

// A log of what the user did is a script.

TEST(laws, of_replay_hold_in_histories_of_values_and_trees) { hold_laws({.replayed = true}); }

TEST(laws, of_replay_hold_in_histories_with_bases) { hold_laws({.bases = true, .replayed = true}); }

TEST(laws, of_replay_hold_where_hooks_answer_by_what_they_see) {
    hold_laws({.replayed = true, .answered = true});
    hold_laws({.bases = true, .replayed = true, .answered = true});
}

TEST(laws, of_replay_are_held_against_most_histories) {
    const std::size_t before = replayed_histories();
    for (u64 seed = 1; seed != 101; ++seed) play(seed, 20, {.bases = true, .replayed = true});
    EXPECT_GT(replayed_histories() - before, 50U);
}

// A copy is the same graph.  Where it is not by design, see copy_laws.cpp.

TEST(laws, of_copies_hold_for_what_histories_of_values_and_trees_make) { hold_laws({.copied = true}); }

TEST(laws, of_copies_hold_for_what_histories_with_bases_make) { hold_laws({.bases = true, .copied = true}); }

// A delta is the difference between then and now.  Where it is something else by design, see testing/delta_law.cpp.

TEST(laws, of_deltas_hold_in_histories_of_values_and_trees) { hold_laws({.summed = true}); }

TEST(laws, of_deltas_hold_in_histories_with_bases) { hold_laws({.bases = true, .summed = true}); }

// What is heard of a model equals what is there.  Where messages cannot tell, see `shadow_model` and `law`.

TEST(laws, of_what_is_heard_hold_in_histories_of_values_and_trees) { hold_laws({.shadowed = true}); }

TEST(laws, of_what_is_heard_hold_in_histories_with_bases) { hold_laws({.bases = true, .shadowed = true}); }

TEST(laws, of_what_is_heard_hold_in_histories_with_user_defined_properties) {
    hold_laws({.bases = true, .definitions = true, .shadowed = true});
}

// The same for the shadow: it tells of all that it has not heard.
TEST(laws, of_what_is_heard_find_what_was_not_heard) {
    started_framework();
    const struct {
        const char* why;
        std::function<void(object&, object&)> change;
    } rows[] = {
        {"property 10 is", [](object& what, object&) { what.set_property(props::text, text("new")); }},
        {"property 11 was heard of", [](object& what, object&) { what.delete_property(props::number); }},
        {"heard was ['1'|]",
         [](object& what, object&) { what.append_vector_element(props::list, number(2)); }},
        {"has the bases", [](object& what, object& other) { what.add_inherits_from(&other); }},
        {"has a mark", [](object& what, object&) { what.set_property_not_inheritable(props::flag, true); }},
        {"has lost a mark",
         [](object& what, object&) { what.set_property_not_inheritable(props::text, false); }},
        {"has the children",
         [](object& what, object&) { framework::instance().create_object(types::part, &what); }},
        {"has another owner", [](object& what, object& other) { what.set_owner(&other); }},
        {"is gone", [](object& what, object&) { framework::instance().delete_object(&what); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        object* const root = framework::instance().create_object(type_id::model, nullptr);
        kelm::testing::shadow_model shadow;
        shadow.listen_to(*root);
        root->model()->begin_transaction("");
        object* const what = framework::instance().create_object(types::thing, root);
        object* const other = framework::instance().create_object(types::thing, root);
        what->set_property(props::number, number(1));
        what->append_vector_element(props::list, number(1));
        what->set_property_not_inheritable(props::text, true);
        EXPECT_EQ(shadow.difference_from(*root->model()), "");
        for (object* each : {root, what, other}) each->detach(&shadow);
        row.change(*what, *other);
        EXPECT_THAT(shadow.difference_from(*root->model()), ::testing::HasSubstr(row.why));
        root->model()->rollback_transaction_all();
        framework::instance().delete_object(root);
        framework::instance().set_in_semantic(false);
    }
}

// A test that holds nothing would be quiet as well: this one shows that histories reach what they are to reach.
TEST(laws, are_held_against_histories_in_which_something_happens) {
    std::string all;
    for (u64 seed = 1; seed != 100; ++seed) {
        const auto played = play(seed, 60, {.bases = true, .definitions = true}, true);
        EXPECT_EQ(played.broken.what, "");
        for (const std::string& each : played.lines) all += each + "\n";
    }
    for (const char* const step : {"model.undo()",
                                   "model.redo()",
                                   "rollback_transaction()",
                                   "rollback_transaction_all()",
                                   "refuses",
                                   "calls o",
                                   "calls fw.create_object",
                                   "// an observer calls",
                                   "// a hook of kind 0 ",
                                   "rollback_last_transaction",
                                   "create_object(49999",
                                   "append_vector_element(49998",
                                   "set_property_not_inheritable",
                                   "insert_inherits_from",
                                   "cancel_inherits_from",
                                   "cancel_all_inherits_from",
                                   "detach_object",
                                   "// rolled back to level 1",
                                   "// rolled back to level 0",
                                   "create_object",
                                   "delete_object",
                                   "set_owner",
                                   "remove_child",
                                   "set_child_position",
                                   "set_property(",
                                   "delete_property",
                                   "move_vector_element",
                                   "insert_vector_element",
                                   "replace_inherits_from_at",
                                   "set_inherits_from_position",
                                   "attach(",
                                   "refresh_property",
                                   "set_undo_levels",
                                   "list(kelm::property<kelm::object*>{o(",
                                   "object*>{nullptr}"}) {
        SCOPED_TRACE(step);
        EXPECT_NE(all.find(step), std::string::npos);
    }
}

} // namespace kelm::test
