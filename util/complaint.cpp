// The diagnostic channel.
// Its end can be replaced, so that tests and applications with windows get the texts.
#include "util/complaint.h"

#include "util/process_state.h"

#include <cstdio>

namespace kelm {

void complain(const std::string& text) {
    if (process().complain)
        process().complain(text);
    else
        std::fprintf(stderr, "%s\n", text.c_str());
}

} // namespace kelm
