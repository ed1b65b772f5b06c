// The values that one object itself stores, by property id.
// Links of references to their targets are the object's business, not the store's.
#pragma once

#include "util/free_list.h"

#include <kelm/property.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace kelm {

/// A small map as a vector sorted by id.  Owns the values; gives them up only by moving them out.
class value_store {
public:
    struct entry {
        u32 id;
        std::unique_ptr<abstract_property> value;
    };
    using entries = std::vector<entry, pool_allocator<entry>>;
    using const_iterator = entries::const_iterator;

    bool empty() const { return entries_.empty(); }
    std::size_t size() const { return entries_.size(); }
    const_iterator begin() const { return entries_.begin(); }
    const_iterator end() const { return entries_.end(); }

    bool holds(u32 id) const {
        const auto at = lower_bound(id);
        return at != entries_.end() && at->id == id;
    }
    /// \returns borrowed; null when there is none
    abstract_property* find(u32 id) const {
        const auto at = lower_bound(id);
        return at != entries_.end() && at->id == id ? at->value.get() : nullptr;
    }
    /// \returns the former value
    std::unique_ptr<abstract_property> exchange(u32 id, std::unique_ptr<abstract_property> value) {
        auto at = entries_.begin() + (lower_bound(id) - entries_.cbegin());
        if (at != entries_.end() && at->id == id) {
            at->value.swap(value);
            return value;
        }
        if (entries_.capacity() == 0) { // most objects have a few values
            entries_.reserve(usual_size);
            at = entries_.begin();
        }
        entries_.insert(at, entry{id, std::move(value)});
        return nullptr;
    }
    std::unique_ptr<abstract_property> take(u32 id) {
        const auto at = entries_.begin() + (lower_bound(id) - entries_.cbegin());
        if (at == entries_.end() || at->id != id) return nullptr;
        std::unique_ptr<abstract_property> out = std::move(at->value);
        entries_.erase(at);
        return out;
    }

private:
    static constexpr std::size_t usual_size = 3;

    const_iterator lower_bound(u32 id) const {
        return std::lower_bound(entries_.begin(), entries_.end(), id,
                                [](const entry& e, u32 wanted) { return e.id < wanted; });
    }

    entries entries_;
};

} // namespace kelm
