// Whole histories: played at random, played again step by step, and cut.
// Which histories are played for whom is laws.cpp.
#pragma once

#include "testing/player.h"
#include "testing/vocabulary.h"

#include <functional>
#include <string>
#include <vector>

namespace kelm::testing {

/// What histories of one family have in common.
struct history_setting {
    history_mix mix;
    const vocabulary* words = nullptr; ///< borrowed
    std::function<companions(u64 seed)> go_along;
    /// Asked when the model is gone.  \returns what is wrong; empty when all is well
    std::function<std::string()> afterwards;
};

/// What came of a history.
struct played_history {
    failure broken;
    std::vector<step> steps;        ///< those that were played
    std::vector<std::string> lines; ///< the same as code, when asked for
    std::string text;               ///< of the model behind the last step; only for repeated histories
    std::string bytes;              ///< its stream; the same
    u64 operations = 0;

    bool holds() const { return broken.what.empty(); }
};

/// Plays `size` steps drawn at random, behind those that make the first objects.
played_history play_random(const history_setting& setting, u64 seed, std::size_t size, bool writes = false);

/// Plays steps again; those that do not fit any more are passed over.
played_history play_steps(const history_setting& setting, u64 seed, const std::vector<step>& steps,
                          bool writes = false);

/// \param most_replays  how often the history may be played
/// \returns the fewest and simplest steps found by which the same law is broken
std::vector<step> cut(const history_setting& setting, u64 seed, std::vector<step> steps, law broken,
                      std::size_t most_replays);

/// \returns a source with a function `std::string broken_history(kelm::model&)`
std::string printed(const played_history& history, u64 seed);

} // namespace kelm::testing
