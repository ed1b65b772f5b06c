// The hooks behind a change of a value, as every operation calls them that changes one or brings a change along.
// When they run, and on whom, is the operation's business.
#pragma once

#include "object/object_impl.h"

namespace kelm {

/// \param old     cloned for the hooks; null for none
/// \param source  where the old value came from
inline bool run_post_set(object_impl& at, u32 id, const abstract_property& value,
                         const abstract_property* old, object* origin, object* source) {
    return at.run_with_clone<post_prop_set_semantic>(
        old, [&](post_prop_set_semantic& h, const value_ptr& copy) {
            // Kept: of all kinds only this one ends, content, when a hook before has deleted the object.
            if (at.state() != state::normal && at.state() != state::being_created) return true;
            return h.do_it(&at, id, value, copy, origin, source);
        });
}

/// \param old  cloned for the hooks; null for none
inline bool run_post_delete(object_impl& at, u32 id, const abstract_property* old, object* origin) {
    return at.run_with_clone<post_prop_delete_semantic>(
        old,
        [&](post_prop_delete_semantic& h, const value_ptr& copy) { return h.do_it(&at, id, copy, origin); });
}

} // namespace kelm
