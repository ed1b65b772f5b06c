// Who points at an object: a list sorted by address.
// Kept in step by whoever makes and breaks the links.
#pragma once

#include "util/gap_vector.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace kelm {

class object;
class object_impl;

/// Sorted; one entry for each link, so that one object may stand in it more than once.
class back_links {
public:
    using const_iterator = gap_vector<object_impl*>::const_iterator;

    bool empty() const { return links_.empty(); }
    std::size_t size() const { return links_.size(); }
    const_iterator begin() const { return links_.begin(); }
    const_iterator end() const { return links_.end(); }

    void add(object_impl* who) {
        if (links_.empty() || std::less<>{}(links_.back(), who))
            links_.push_back(who);
        else
            links_.insert(place_of(who), who);
    }
    /// Removes one entry; does nothing when there is none.
    void remove(object_impl* who) {
        const std::size_t at = place_of(who);
        if (at != links_.size() && links_[at] == who) links_.erase(at);
    }
    /// Removes the entry at the place of `who`, which callers know to be in the list.
    void remove_member(object_impl* who) {
        // Kept: nobody asks whose entry it is, so that of one who is not there the next one's would go.
        if (const std::size_t at = place_of(who); at != links_.size()) links_.erase(at);
    }
    bool holds(object_impl* who) const { return std::binary_search(begin(), end(), who, std::less<>{}); }
    std::vector<object_impl*> copy() const { return {begin(), end()}; }
    /// \returns each once
    std::vector<object*> distinct() const;

private:
    std::size_t place_of(object_impl* who) const {
        return static_cast<std::size_t>(std::lower_bound(begin(), end(), who, std::less<>{}) - begin());
    }

    gap_vector<object_impl*> links_;
};

} // namespace kelm
