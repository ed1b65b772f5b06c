// The calls that steps stand for: what they need, what they do, and how they are printed.
// When they are played is player.cpp.
#pragma once

#include "testing/history_mix.h"
#include "testing/object_names.h"
#include "testing/planned_value.h"

#include <memory>
#include <optional>
#include <string>

namespace kelm::testing {

/// An edit whose objects and values are there.
struct edit_call {
    object* at = nullptr;
    object* other = nullptr;
    std::unique_ptr<abstract_property> value;
    std::unique_ptr<abstract_property> other_value;
};

/// \returns whether an object's type declares a property
bool has_declared(const object& what, u32 id);

/// \returns none when the edit cannot be made now, or is left out of the mix
std::optional<edit_call> prepare(const step& what, const history_mix& mix, const object_names& names);

/// Makes the edit.  \returns what a creation has made; else null
object* perform(const step& what, const edit_call& call);

/// \returns the edit as code, without a semicolon
std::string code_of(const step& what, const edit_call& call, const object_names& names);

/// \returns the same of a step that is no edit
std::string code_of(const step& what);

inline bool is_edit(action what) { return what >= action::create_object; }

} // namespace kelm::testing
