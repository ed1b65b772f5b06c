// Symbol visibility of the library's public classes and functions.
// Nothing but the macro: a static build leaves it empty.
#pragma once

#if defined(KELM_SHARED) || defined(KELM_BUILDING_SHARED)
#define KELM_EXPORT __attribute__((visibility("default")))
#else
#define KELM_EXPORT
#endif
