// The seven hooks behind user-defined properties, for those who register them.
// What they do is told in their source and in udp_definition.h.
#pragma once

#include <kelm/meta_model.h>
#include <kelm/semantic.h>

namespace kelm {

/// The hook behind reads that supplies the value of a user-defined property that an object does not store.
/// \returns a new hook
owned<semantic*> make_udp_default_value();

/// Registers, on the type of definitions, the six hooks that turn a change of one into changes of the model's
/// types.
void add_udp_scratch_semantics(meta_object& type);

} // namespace kelm
