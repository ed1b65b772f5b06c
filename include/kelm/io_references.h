// What a reader of streams cannot resolve before all objects exist.
// Plain records: resolving them is the business of whoever reads a whole model.
#pragma once

#include <kelm/types.h>

namespace kelm {

template <class T>
class property;

/// One object reference that waits for its target.
struct reference_record {
    property<object*>* value = nullptr; ///< borrowed: the box to fill
    u32 target_id = npos32;             ///< npos32 stands for a null reference
    object* holder = nullptr;           ///< the object that the value belongs to; may be null
    bool from_message = false;          ///< true for values of messages: filling them links nothing back
};

} // namespace kelm
