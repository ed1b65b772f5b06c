// Looking along the bases of an object without hooks: who stores a value, and who inherits from whom.
// Reads of an application, with hooks, are effective_value.
#pragma once

#include "object/object_impl.h"

#include <unordered_set>
#include <vector>

namespace kelm {

/// The objects that a walk up the bases has been at.  Only an object with several inheritors can be met twice, so
/// that a walk along a plain chain keeps nothing.
class met_objects {
public:
    /// \returns false when the object was met before
    bool meet(const object_impl& at) {
        const back_links* const inheritors = at.inheritor_links();
        return !inheritors || inheritors->size() < 2 || met_.insert(&at).second;
    }
    void clear() { met_.clear(); }

private:
    std::unordered_set<const object_impl*> met_;
};

/// Finds the object along the bases that stores a value, depth first in the order of the lists.  Runs no hook, and
/// is linear in the objects it passes, also where several roads lead to one.
class base_search {
public:
    /// \returns the first of `base` and its bases that stores the property; null when none does, or when `of` does
    ///          not ask this base for it
    object_impl* source_by(const object_impl& of, const object_impl& base, u32 id);
    /// The same for all bases of `of`, whose own value and marks are not looked at.
    object_impl* source_above(const object_impl& of, u32 id);

private:
    void ask_bases_of(const object_impl& at, u32 id);
    object_impl* first_of_pending(u32 id);

    std::vector<object_impl*> pending_; // the next is the last
    met_objects met_;
};

/// \returns whether `of` inherits values of this property at all: it stores none, does not refuse them, and its type
///          lets them pass
bool inherits_values_of(const object_impl& of, u32 id);

/// \returns whether `base` is among the bases of `of`, or their bases
bool inherits_in_turn(const object_impl& of, const object_impl& base);

} // namespace kelm
