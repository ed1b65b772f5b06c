// Every message that a log stores: its number, its name, and how a reader makes an empty one.
// The fields of each are told by its class.
#pragma once

#include "message/message_impl.h"

#include <memory>
#include <span>

namespace kelm {

struct message_row {
    u32 code;         ///< in streams; the two refresh messages have codes of their own
    const char* name; ///< of the class
    /// Makes one as it is before its fields are read: pointers null, names empty, numbers 0, but -1 for most positions.
    std::unique_ptr<message_impl> (*blank)(silent_edit* about);
    u8 owned_when_done =
        0; ///< the values that a message which stands done owns: bit 0 the first, bit 1 the second
};

/// \returns all rows, by ascending code
std::span<const message_row> message_rows();

/// \returns null for a code that no stored message has
const message_row* message_row_of(u32 code);

/// \returns the code under which a log stores the message: its type, but for refresh messages
u32 stored_code(const message_impl& what);

} // namespace kelm
