// Making values from their plans, and printing plans as code.
// The plans are step.h.
#pragma once

#include "testing/object_names.h"

#include <memory>
#include <string>

namespace kelm::testing {

/// \returns the value; null for a plan of no value, for an unknown kind, and where a target is not there
std::unique_ptr<abstract_property> make_value(const planned_value& plan, const object_names& names);

/// \returns an expression of a value, in terms of the helpers that printed histories have
std::string code_of(const planned_value& plan, const object_names& names);

/// \returns an expression of an object: `o(7)`
std::string code_of(const object* what);

/// \returns whether a value leads to objects, null included
bool has_targets(const planned_value& plan);

} // namespace kelm::testing
