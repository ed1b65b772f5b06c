// How inherited values differ between two moments.
// Who is told of the differences is the caller's business.
#pragma once

#include "message/silent_edit.h"

#include <vector>

namespace kelm {

class object_impl;

/// One inherited value that is another one now, or new, or gone.  The values are borrowed: the log keeps what leaves
/// an object readable as long as a mutation, an undo or a redo is under way.
struct inherited_change {
    inherited_value before; ///< no value and no source where there was none
    inherited_value now;    ///< the same where there is none any more
    bool is_loss;

    u32 id() const { return is_loss ? before.id : now.id; }
};
using inherited_changes = std::vector<inherited_change>;

/// \returns what differs, in the order of the type's properties; what is gone, asked for by `with_losses`, comes last
inherited_changes compare_inherited(const inherited_values& before, const inherited_values& now,
                                    bool with_losses);

/// Tells observers, of the object and of its inheritors, in messages that nobody keeps.
/// \returns false as soon as one refused
bool tell_inherited(object_impl& about, const inherited_changes& changes, bool first_run);

} // namespace kelm
