// Children of several types with short and long names, for what picks some of them.
// Nothing is asserted here.
#pragma once

#include "tests/support/world.h"

#include <kelm/object_helpers.h>

namespace kelm::test {

/// Leaves out the objects whose name is longer than a letter.
class long_names final : public filter {
public:
    bool do_it(const object* candidate) const override { return object_name(candidate).size() > 1; }
};

/// An owner with children, in this order.
class family : public world {
protected:
    object* const owner = thing("owner");
    object* const a = thing("a", owner);
    object* const long_a = thing("aa", owner);
    object* const b = part("b", owner);
    object* const long_b = part("bb", owner);
    object* const special = make(types::special_thing, "s", owner);
};

} // namespace kelm::test
