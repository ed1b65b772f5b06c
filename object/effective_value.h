// What a read of a property finds: the own value, the first along the bases, or what a hook supplies.
// Reads themselves are object_reading.cpp.
#pragma once

#include <kelm/property.h>

#include <memory>

namespace kelm {

class object_impl;

/// A value that was found.
struct effective_value {
    const abstract_property* value = nullptr; ///< borrowed, from an object or from `temporary`; null for none
    std::unique_ptr<abstract_property> temporary; ///< made by a hook for this read
    object_impl* source = nullptr;                ///< the object that stores it; null for a temporary

    /// \returns the value for a reader; a stored one is cloned
    [[nodiscard]] std::unique_ptr<abstract_property> take();
};

/// \returns the value that the object itself stores, borrowed, when reading it asks no hook that could tell; null when
///          there is none, or find_effective_value() must say
const abstract_property* plainly_stored_value(const object_impl& of, u32 id);

/// Looks a property up, running the hooks of reads on every object that it passes.
effective_value find_effective_value(const object_impl& of, u32 id);

} // namespace kelm
