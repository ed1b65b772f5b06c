// Strategies of listings: a sorter says which of two objects comes first.
// How a listing uses them is object::children.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

namespace kelm {

/// Orders the objects of a listing.
class KELM_EXPORT sorter {
public:
    virtual ~sorter() = default;
    /// \returns true when `a` comes before `b`
    virtual bool do_it(const object* a, const object* b) const = 0;

protected:
    sorter() = default;
    sorter(const sorter&) = default;
    sorter& operator=(const sorter&) = default;
};

} // namespace kelm
