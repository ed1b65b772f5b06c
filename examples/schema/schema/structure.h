// Whether what was read from a file is a schema at all.
// The rules that hold while a schema is edited are in hooks.h.
#pragma once

#include <kelm/model.h>

namespace schema {

/// The library reads any tree of known types.  This asks whether each object stands where its type may stand, and
/// each value is of the kind that its property has: all that is taken for granted elsewhere.
bool is_well_formed(kelm::model& model);

} // namespace schema
