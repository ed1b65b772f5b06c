// Objects in the order of their ids, where a list keeps them by address.
// Lists that have an order of their own, of children or of bases, are not for this.
#pragma once

#include <kelm/object.h>

#include <algorithm>
#include <vector>

namespace kelm {

/// \returns the objects among `all` by their ids, then the others.  Those who know an object are listed in the order of
///          their addresses; what is recorded or handed out must not be, or the same calls would not make the same.
template <class Listed>
std::vector<Listed*> in_order_of_ids(std::vector<Listed*> all) {
    const auto id = [](Listed* each) {
        const auto* const listed = dynamic_cast<const object*>(each);
        return listed ? listed->id() : npos32;
    };
    if (all.size() > 1) std::ranges::stable_sort(all, {}, id);
    return all;
}

} // namespace kelm
