// The laws that go along with a history.
// Undo, redo and rollback are held by the player itself, repetition by who plays a history twice.
#pragma once

#include "testing/companion.h"
#include "testing/shadow_model.h"

#include <kelm/testing/laws.h>

#include <memory>
#include <vector>

namespace kelm::testing {

std::unique_ptr<companion> make_link_law();
std::unique_ptr<companion> make_delta_law();
/// \param laws      of streams, documents and reloading
/// \param elements  for documents; may be empty
std::unique_ptr<companion> make_stream_law(law_set laws, element_maker elements);
/// One at a time.
std::unique_ptr<companion> make_hearing_law();
/// \param shadow  borrowed and fresh.  It must be told before any other observer that refuses or reacts, and observers
///                are told in the order of their addresses: static storage lies below all objects
std::unique_ptr<companion> make_hearing_law(shadow_model& shadow);
std::unique_ptr<companion> make_own_laws(std::vector<own_law> laws);

/// The bytes of a model with its history, without its random identity.
std::string bytes_of(kelm::model& of);
/// \returns the bytes around the place from which on two streams differ; empty when they are the same
std::string difference_of_bytes(const std::string& expected, const std::string& is);

/// The version that has all fields of a stream.
inline constexpr u32 newest_version = 8;

} // namespace kelm::testing
