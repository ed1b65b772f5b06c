// Positions of children that are asked for one after another.
// Children that are copied with their owner are counted along its list instead.
#pragma once

#include <kelm/object.h>

#include <unordered_map>

namespace kelm {

/// A memory for the owner asked about last.  Each answer is checked against the owner, so the memory may be stale.
class child_positions {
public:
    /// \returns owner.child_position(&child), without a search for one that comes next, and with one search for all when
    ///          they come in another order
    u32 of(const object& owner, object& child) {
        if (owner_ != owner.id() || type_ != child.type()) *this = child_positions{owner.id(), child.type()};
        u32 at = next_;
        if (!stands_at(owner, child, at)) at = search(owner, child);
        next_ = at + 1;
        return at;
    }

    child_positions() = default;

private:
    child_positions(u32 owner, u32 type) : owner_(owner), type_(type) {}

    bool stands_at(const object& owner, const object& child, u32 position) const {
        return owner.child_at(type_, position) == &child;
    }

    u32 search(const object& owner, object& child) {
        if (!was_searched_) {
            was_searched_ = true;
            return static_cast<u32>(owner.child_position(&child));
        }
        const auto found = known_.find(child.id());
        if (found != known_.end() && stands_at(owner, child, found->second)) return found->second;
        learn(owner);
        const auto now = known_.find(child.id());
        return now != known_.end() && stands_at(owner, child, now->second) ? now->second : npos32;
    }

    void learn(const object& owner) {
        known_.clear();
        for (u32 at = 0; const object* each = owner.child_at(type_, at); ++at) known_[each->id()] = at;
    }

    u32 owner_ = 0;
    u32 type_ = 0;
    u32 next_ = 0;
    bool was_searched_ = false;
    std::unordered_map<u32, u32> known_; // id to position
};

} // namespace kelm
