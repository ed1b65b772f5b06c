// The model that all measurements share: packages of entities of attributes, with names, sizes and references.
// Only public headers: what is measured is what an application gets.
#pragma once

#include <kelm/kelm.h>

#include <cstddef>
#include <vector>

namespace workload {

inline constexpr kelm::u32 package_type = 100;
inline constexpr kelm::u32 entity_type = 101;
inline constexpr kelm::u32 attribute_type = 102;
inline constexpr kelm::u32 length_property = 10;
inline constexpr kelm::u32 nullable_property = 11;
inline constexpr kelm::u32 refers_property = 12;

/// Starts the process up with the three types.
void start();

/// A model of about `wanted` objects below one root, made in one transaction.
struct tree {
    kelm::object* root = nullptr;
    kelm::model* model = nullptr;
    std::vector<kelm::object*> objects; ///< all but the root, in the order of their making
};

/// Builds the tree; every object is recorded for undo.
tree build(std::size_t wanted);
void close(tree& done);

/// \returns how many objects the model has, the root among them
std::size_t object_count(const tree& built);
/// \returns every `step`th package in the order of their making, from the first
std::vector<kelm::object*> some_packages(const tree& built, std::size_t step);

} // namespace workload
