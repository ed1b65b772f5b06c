// The log of one model as others see it.
// Undo, redo and rollback are operations of the model.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

namespace kelm {

/// Tells its observers of each end of a transaction, at every level, that is stored.
class KELM_EXPORT message_history {
public:
    virtual bool attach(observer* who) = 0;
    virtual bool detach(observer* who) = 0;
    virtual ~message_history() = default;
};

} // namespace kelm
