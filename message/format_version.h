// Versions of an application's meta model: the only mark of format that streams have.
// What a version brought is told where it is written and read.
#pragma once

#include <kelm/types.h>

#include <utility>

namespace kelm {

/// The version of the application's meta model as a stream has it; the numbers compare with their sign.
struct format_version {
    int version = 0;
    int minor_version = 0;

    bool is_at_least(int wanted, int minor) const {
        return std::pair(version, minor_version) >= std::pair(wanted, minor);
    }
    bool operator>(const format_version& other) const {
        return std::pair(version, minor_version) > std::pair(other.version, other.minor_version);
    }
    /// \returns whether a log with that stamp has the fields that came with `wanted`.minor.  The readers of 7.2 to 7.13
    ///          do without some; whoever is older reads no log, or is an application that counts in a way of its own.
    bool stores(int wanted, int minor) const {
        const bool is_older_reader = is_at_least(7, 2) && !is_at_least(7, 14);
        return !is_older_reader || is_at_least(wanted, minor);
    }
};

} // namespace kelm
