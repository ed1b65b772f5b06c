// Random histories of the test types: what goes along with them besides the laws of the kit.
// How many histories are played is laws_test.cpp.
#pragma once

#include "tests/random/history_mix.h"

#include "testing/histories.h"

#include <string>

namespace kelm::test {

/// What came of a history, in words.
struct told_history {
    std::string steps; ///< a line each, behind what was broken
    std::string bytes; ///< of the model with its history, without the model's random identity
};

/// Plays a history of `steps` steps behind those that make the first objects.
kelm::testing::played_history play(u64 seed, std::size_t steps, history_mix mix, bool writes = false);
/// The same in words, for repeated histories.
told_history play_for_bytes(u64 seed, std::size_t steps, history_mix mix);
/// Plays a history.  \returns what was broken, in the fewest steps that break it; empty when all laws hold
std::string broken_law(u64 seed, std::size_t steps, history_mix mix);

// Who goes along.  A seed is that of the history.

/// Programmed hooks, and an observer that refuses and reacts; with `shadowed`, who hears all before it.
std::unique_ptr<kelm::testing::companion> make_reactions(u64 seed, history_mix mix,
                                                         const kelm::testing::vocabulary& words);
std::unique_ptr<kelm::testing::companion> make_definition_steps();
std::unique_ptr<kelm::testing::companion> make_replay_law(bool answered);
std::unique_ptr<kelm::testing::companion> make_copy_law(u64 seed);

/// \returns how many histories have been replayed in this process
std::size_t replayed_histories();

} // namespace kelm::test
