// Whether what a model keeps twice agrees, for models that no library has made.
// Of all others <kelm/testing/laws.h> tells.
#pragma once

#include <kelm/model.h>

#include <string>

namespace kelm::testing {

/// broken_links() of what was made of a stream that no model has written.  It may have two objects of one id, list
/// deleted objects, and list an object with another owner; what it links is linked on both sides all the same.
std::string broken_links_of_hostile(kelm::model& of);

} // namespace kelm::testing
