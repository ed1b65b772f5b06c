// Own plus inherited: what a type declares, and the flat list of all that it has.
// When such a list is built and dropped is told in flattening.cpp and meta_object_impl.cpp.
#pragma once

#include <kelm/types.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kelm {

/// Has the next push_back not fail.
template <class List>
void make_room(List& list) {
    if (list.size() == list.capacity()) list.reserve(2 * list.size() + 4);
}

/// Things by id: a sorted vector, binary searched without touching the things.
template <class Thing>
class id_index {
public:
    Thing* find(u32 id) const {
        const auto at = place(id);
        return at != entries_.end() && at->first == id ? at->second : nullptr;
    }
    /// \returns false when the id is taken
    bool insert(u32 id, Thing* thing) {
        const auto at = place(id);
        if (at != entries_.end() && at->first == id) return false;
        entries_.insert(at, {id, thing});
        return true;
    }
    void erase(u32 id) {
        const auto at = place(id);
        if (at != entries_.end() && at->first == id) entries_.erase(at);
    }
    void clear() { entries_.clear(); }

private:
    using entry = std::pair<u32, Thing*>;

    auto place(u32 id) const { return std::ranges::lower_bound(entries_, id, {}, &entry::first); }

    std::vector<entry> entries_;
};

/// What one type declares itself: owned, in the order of declaration and by id.
template <class Thing>
class declarations {
public:
    bool holds(u32 id) const { return by_id_.find(id) != nullptr; }
    Thing* find(u32 id) const { return by_id_.find(id); }
    /// \param made  of an id that is not declared
    Thing* add(std::unique_ptr<Thing> made) {
        Thing* const thing = made.get();
        make_room(in_order_);
        make_room(owned_);
        by_id_.insert(thing->id(), thing); // the last that may fail
        in_order_.push_back(thing);
        owned_.push_back(std::move(made));
        return thing;
    }
    /// \returns the thing, no longer declared; null when there is none
    std::unique_ptr<Thing> take(u32 id) {
        const auto at = std::ranges::find(in_order_, find(id));
        if (at == in_order_.end()) return nullptr;
        const auto owner = owned_.begin() + (at - in_order_.begin());
        std::unique_ptr<Thing> taken = std::move(*owner);
        owned_.erase(owner);
        in_order_.erase(at);
        by_id_.erase(id);
        return taken;
    }
    const std::vector<Thing*>& in_order() const { return in_order_; }
    void clear() {
        by_id_.clear();
        in_order_.clear();
        owned_.clear();
    }

private:
    std::vector<std::unique_ptr<Thing>> owned_; // parallel to in_order_
    std::vector<Thing*> in_order_;
    id_index<Thing> by_id_;
};

/// All that a type has: what it declares first, then what its bases pass on.  The first of an id hides the others.
template <class Thing>
class flattened {
public:
    void append(const std::vector<Thing*>& more) {
        append(more, [](const Thing&) { return true; });
    }
    template <class Keep>
    void append(const std::vector<Thing*>& more, Keep keep) {
        for (Thing* thing : more)
            if (keep(*thing) && by_id_.insert(thing->id(), thing)) in_order_.push_back(thing);
    }
    Thing* find(u32 id) const { return by_id_.find(id); }
    const std::vector<Thing*>& in_order() const { return in_order_; }
    /// \returns whether all has been appended; a list of nothing can be complete as well
    bool is_complete() const { return is_complete_; }
    void set_complete() { is_complete_ = true; }
    void clear() {
        is_complete_ = false;
        by_id_.clear();
        in_order_.clear();
    }

private:
    std::vector<Thing*> in_order_;
    id_index<Thing> by_id_;
    bool is_complete_ = false;
};

/// \returns the first of exactly that name; null when there is none
template <class Thing>
Thing* find_named(const std::vector<Thing*>& list, const std::string& name) {
    const auto found = std::ranges::find_if(list, [&](const Thing* thing) { return thing->name() == name; });
    return found == list.end() ? nullptr : *found;
}

/// The same by alternative name.
template <class Thing>
Thing* find_alternatively_named(const std::vector<Thing*>& list, const std::string& name) {
    const auto found =
        std::ranges::find_if(list, [&](const Thing* thing) { return thing->alternative_name() == name; });
    return found == list.end() ? nullptr : *found;
}

} // namespace kelm
