// Performing a recorded change on a live model, through the operations that applications call.
// Where the messages come from is the reader's business.
#pragma once

#include "message/message_impl.h"

namespace kelm {

class model_impl;

/// Does what the message tells, hooks and all.
/// \returns false when the operation was refused, or speaks of something that the model has not; true for messages that
///          follow from others
bool replay_message(message_impl& what, model_impl& on);

} // namespace kelm
