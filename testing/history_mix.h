// What a family of histories is made of, and what it leaves out by design.
// The reasons are told with the laws, <kelm/testing/laws.h>.
#pragma once

#include <kelm/types.h>

namespace kelm::testing {

struct history_mix {
    bool bases = false;      ///< objects inherit from others
    bool observing = true;   ///< objects observe others
    bool in_circles = false; ///< also those who observe them, at some distance
    bool limited = true;     ///< undo has limits
    bool stored = false;     ///< written and read again; leaves out what streams do not tell
    bool documented = false; ///< the same with documents
    bool heard = false;      ///< compared with what is heard of it; leaves out what cannot be heard
    bool repeated = false;   ///< played twice, with the same bytes
    bool summed = false;     ///< its deltas compared with what differs
    bool undeclared = false; ///< types are made anywhere, and given what they do not declare
};

} // namespace kelm::testing
