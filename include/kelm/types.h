// The few names that all of the interface shares: widths, positions, shared values, ownership marks.
// No classes of the library itself.
#pragma once

#include <kelm/fwd.h>

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <map>

namespace kelm {

/// @{
/// A number without a sign, of that many bits.
using u8 = std::uint8_t;
using u16 = std::uint16_t;
using u32 = std::uint32_t;
using u64 = std::uint64_t;
/// @}

/// "Not there" as a position, and "no position" as an argument: the all-ones value.
inline constexpr std::size_t npos = static_cast<std::size_t>(-1);

/// The same in the 32 bits that messages and streams give a position.
inline constexpr u32 npos32 = 0xFFFFFFFFU;

/// The one shared pointer of the interface.
template <class T>
using shared_ptr = boost::shared_ptr<T>;

/// A value that a reader owns alone: a private copy, never the one an object stores.
using value_ptr = shared_ptr<abstract_property>;

/// Values by property id, ascending; what readers of whole objects get.
using value_map = std::map<u32, value_ptr>;

/// Marks a raw pointer in the interface that the caller owns from then on.  All others are borrowed.
template <class T>
using owned = T;

} // namespace kelm
