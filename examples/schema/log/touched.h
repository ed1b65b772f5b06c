// The objects that a change needs.
// Which of them were there before is asked of the model, see replay_log.cpp.
#pragma once

#include <kelm/message.h>
#include <kelm/object.h>

#include <vector>

namespace schema {

/// \returns the object that was changed, and those that the change puts it in relation to; what it makes as well
std::vector<const kelm::object*> objects_touched(const kelm::message& by);

} // namespace schema
