// Draws the steps of a history, each for the moment at which the history stands.
// Whether a step can be played is told by player.h; what is drawn from, by vocabulary.h.
#pragma once

#include "testing/player.h"
#include "testing/random_numbers.h"
#include "testing/vocabulary.h"

#include <vector>

namespace kelm::testing {

class random_steps {
public:
    random_steps(random_numbers& numbers, const vocabulary& words, const player& for_history)
        : numbers_(numbers), words_(words), history_(for_history) {}

    /// \returns steps that make a few objects to begin with, which no undo takes away.  Their numbers begin with 1.
    std::vector<step> beginning();
    /// \returns a step, which may not fit; its number is the caller's to give
    step next();

    // For steps of others.
    object* any();
    object* any_or_root();
    object_name name_of(const object* what) const;
    planned_value value_of(const vocabulary::property& which);

private:
    step outside();
    step inside();
    step edit();
    step creation();
    step tree();
    step value();
    step element();
    step base();
    step observing();
    step at(action what, const object* object) const;
    const vocabulary::property* any_property(const object& of, bool only_lists);
    planned_value element_of(const vocabulary::property& which);
    planned_value scalar(u32 kind, const std::vector<std::string>& texts);
    std::string text_of_kind(u32 kind);
    bool one_in(std::size_t n) { return numbers_.one_in(n); }

    random_numbers& numbers_;
    const vocabulary& words_;
    const player& history_;
};

} // namespace kelm::testing
