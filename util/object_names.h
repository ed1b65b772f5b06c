// The names that objects keep, so that a walk that asks for each of them many times reads each value once.
// What a name is, is told by fast_unsafe_object_name, which gives these out while the mark
// process_state::use_cached_object_names is set.
#pragma once

#include <kelm/types.h>

#include <string>

namespace kelm {

// Declared here, where names are asked for; defined in object/, where they are kept.

/// \returns the name that the object keeps; empty until cache_names() has come by.  Later names do not change it.
const std::string& cached_name(const object& what);

/// Has `top` and all objects below it, found by listing children, keep their present names.
/// Hooks of reads run; the mark must not be set yet.
void cache_names(object& top);

} // namespace kelm
