// The version of the types of a schema, which saved files carry.
// The library compares; the hooks of version_hooks.cpp keep what it says of the file that is read.
#pragma once

#include <kelm/types.h>

#include <string>

namespace schema {

struct file_version {
    kelm::u32 major = 0;
    kelm::u32 minor = 0;

    auto operator<=>(const file_version&) const = default;
};

/// Of what this program writes.  From 7.14 on the library stores what the end of a transaction says beside its name,
/// and there signatures stand.
inline constexpr file_version current_version{7, 14};

inline std::string to_string(const file_version& version) {
    return std::to_string(version.major) + '.' + std::to_string(version.minor);
}

} // namespace schema
