// The values that a change is told with, as texts.
// Which objects changed is told by changes.h.
#pragma once

#include "changes/changes.h"

#include <kelm/object.h>

#include <string>
#include <vector>

namespace schema {

/// \returns all values that a new object has itself or inherits
std::vector<value_change> values_now(const kelm::object& what);
/// \returns all values that an object had which is gone
std::vector<value_change> values_before(kelm::model& in, const kelm::delta_detail& of);
/// \returns the values that differ; without the name
std::vector<value_change> values_changed(const kelm::object& what, kelm::delta_detail& by);

/// \returns the text of a value of before; empty when there was none
std::string text_before(const kelm::delta_detail& of, kelm::u32 property);

} // namespace schema
