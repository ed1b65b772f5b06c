// Positions of children that are asked for one after another.
// Children that are copied with their owner are counted along its list instead.
#pragma once

#include <kelm/object.h>

#include <map>
#include <unordered_map>
#include <utility>

namespace kelm {

/// A memory of where children were found.  Each answer is checked against the owner, so the memory may be stale.
class child_positions {
public:
    /// \returns owner.child_position(&child), without a search for one that comes next, and with one search for all when
    ///          they come in another order
    u32 of(const object& owner, object& child) {
        if (runs_.size() > most_runs) runs_.clear();
        run& among = runs_[{owner.id(), child.type()}];
        u32 at = among.next;
        if (!stands_at(owner, child, at)) at = search(among, owner, child);
        among.next = at + 1;
        return at;
    }

private:
    static constexpr std::size_t most_runs = 1000;

    /// The children of one type of an owner.
    struct run {
        u32 next = 0;
        bool was_searched = false;
        std::unordered_map<u32, u32> known{}; // id to position
    };

    static bool stands_at(const object& owner, const object& child, u32 position) {
        return owner.child_at(child.type(), position) == &child;
    }

    static u32 search(run& among, const object& owner, object& child) {
        if (!among.was_searched) {
            among.was_searched = true;
            return static_cast<u32>(owner.child_position(&child));
        }
        const auto found = among.known.find(child.id());
        if (found != among.known.end() && stands_at(owner, child, found->second)) return found->second;
        learn(among, owner, child.type());
        const auto now = among.known.find(child.id());
        return now != among.known.end() && stands_at(owner, child, now->second) ? now->second : npos32;
    }

    static void learn(run& among, const object& owner, u32 type) {
        among.known.clear();
        for (u32 at = 0; const object* each = owner.child_at(type, at); ++at) among.known[each->id()] = at;
    }

    std::map<std::pair<u32, u32>, run> runs_; // by owner and type
};

} // namespace kelm
