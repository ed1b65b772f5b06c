// Numbers that are the same everywhere.
// What is drawn with them is the business of random_steps.h.
#pragma once

#include <kelm/types.h>

namespace kelm::testing {

/// A small generator.
class random_numbers {
public:
    explicit random_numbers(u64 seed) { restart(seed); }

    /// Begins anew.  Neighbouring seeds do not share a stream.
    void restart(u64 seed) {
        state_ = seed;
        state_ = next();
    }
    /// \returns a number below `end`; 0 when that is 0
    std::size_t below(std::size_t end) { return end == 0 ? 0 : static_cast<std::size_t>(next() % end); }
    bool one_in(std::size_t n) { return below(n) == 0; }
    /// \returns one of a list that is not empty
    template <class List>
    const auto& one_of(const List& list) {
        return list[below(std::size(list))];
    }

private:
    u64 next() {
        u64 mixed = state_ += 0x9E3779B97F4A7C15U;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31);
    }

    u64 state_ = 0;
};

} // namespace kelm::testing
