// Whether what a model keeps twice agrees.
// What is kept once cannot be wrong in itself.
#pragma once

#include <kelm/model.h>

#include <string>

namespace kelm::test {

/// Computes back-lists, ids and ownership from what the objects store, and compares them with what the model tells.
/// \returns what differs, a line each; empty when all agrees
std::string broken_links(kelm::model& of);

/// The same for what was made of a stream that no model has written.  It may have two objects of one id, list deleted
/// objects, and list an object with another owner; what it links is linked on both sides all the same.
std::string broken_links_of_hostile(kelm::model& of);

} // namespace kelm::test
