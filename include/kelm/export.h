// Symbol visibility of the library's public classes and functions.
// Nothing but the macro: a static build leaves it empty.
#pragma once

/// \def KELM_EXPORT
/// Marks what a shared library offers to its users.
#if defined(KELM_SHARED) || defined(KELM_BUILDING_SHARED)
#define KELM_EXPORT __attribute__((visibility("default")))
#else
#define KELM_EXPORT
#endif
