// The one instance of the process-wide state.
// Nothing else.
#include "util/process_state.h"

namespace kelm {

process_state& process() {
    static auto* const state = new process_state;
    return *state;
}

} // namespace kelm
