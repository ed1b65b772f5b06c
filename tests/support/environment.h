// Numbers that whoever runs the tests may set.
// What each of them means is told where it is asked for.
#pragma once

#include <kelm/types.h>

#include <cstdlib>

namespace kelm::test {

/// \returns the number that the environment has under that name, or `otherwise`
inline u64 from_environment(const char* name, u64 otherwise) {
    const char* const given = std::getenv(name);
    return given ? std::strtoull(given, nullptr, 10) : otherwise;
}

} // namespace kelm::test
