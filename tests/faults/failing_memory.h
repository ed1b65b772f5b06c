// Memory that runs out: the global operator new of the program of these tests, counted, and failing on demand.
// What must hold when it does is told by the tests.
#pragma once

#include "util/free_list.h"

#include <cstddef>

namespace kelm::test {

/// What the global operators new of this program do.
struct memory_plan {
    long until_failure = 0;       ///< the allocation that fails, counted from 1; 0 for none
    bool stays_exhausted = false; ///< all behind it fail as well
    std::size_t only_of_size = 0; ///< counts and fails those of this size alone; 0 for all
};

/// \returns how many blocks of the global operator new live.  Slabs of the free lists are not counted: they stay.
long live_blocks();

/// Has memory run out for the length of a scope.
class failing_memory {
public:
    explicit failing_memory(const memory_plan& plan);
    failing_memory(const failing_memory&) = delete;
    failing_memory& operator=(const failing_memory&) = delete;
    ~failing_memory();
    /// \returns how many allocations have failed
    static long failures();
};

/// Leaves free lists, where they are built in, no block and `room` fresh bytes for the length of a scope, so that
/// whatever needs more asks for a slab.
class short_lists {
public:
    short_lists(free_list::lists& which, std::size_t room);
    short_lists(const short_lists&) = delete;
    short_lists& operator=(const short_lists&) = delete;
    ~short_lists();

private:
    free_list::lists& which_;
    free_list::lists put_aside_;
};

} // namespace kelm::test
