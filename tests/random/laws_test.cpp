// Laws that hold in every history: undo and redo lead through the same states, a rollback leads to the moment before,
// back-lists equal what is stored, every value is freed once.
// KELM_RANDOM_RUNS sets how many histories are played, KELM_RANDOM_SEED the first seed.
#include "tests/random/random_edits.h"

#include <cstdlib>
#include <iostream>

namespace kelm::test {

namespace {

u64 from_environment(const char* name, u64 otherwise) {
    const char* const given = std::getenv(name);
    return given ? std::strtoull(given, nullptr, 10) : otherwise;
}

void hold_laws(bool with_bases) {
    const u64 runs = from_environment("KELM_RANDOM_RUNS", 600);
    const u64 first = from_environment("KELM_RANDOM_SEED", 1);
    std::cout << "[ seeds    ] " << first << " to " << first + runs - 1 << '\n';
    for (u64 seed = first; seed != first + runs; ++seed) {
        const std::size_t steps = 10 + seed % 60;
        if (play(seed, steps, with_bases).empty()) continue;
        FAIL() << cut(seed, steps, with_bases);
    }
}

} // namespace

TEST(laws, hold_in_histories_of_values_and_trees) { hold_laws(false); }

TEST(laws, hold_in_histories_with_bases) { hold_laws(true); }

// A test that holds nothing would be quiet as well: this one shows that histories reach what they are to reach.
TEST(laws, are_held_against_histories_in_which_something_happens) {
    std::string all;
    for (u64 seed = 1; seed != 100; ++seed) {
        random_run run{seed, true};
        for (int i = 0; i != 60; ++i) run.step();
        run.finish();
        EXPECT_EQ(run.failure(), "");
        for (const std::string& each : run.steps()) all += each + "\n";
    }
    for (const char* const step : {"model->undo()",
                                   "model->redo()",
                                   "rollback_transaction()",
                                   "rollback_transaction_all()",
                                   "refuses",
                                   "a hook calls",
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
                                   "list(reference(",
                                   "reference(nullptr)"}) {
        SCOPED_TRACE(step);
        EXPECT_NE(all.find(step), std::string::npos);
    }
}

} // namespace kelm::test
