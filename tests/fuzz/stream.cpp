// Any bytes as the stream of a model: it is refused, or what was read can be used, written and read again.
// The history alone is deeper in reach of history.cpp.
#include "tests/fuzz/fuzzing.h"

using namespace kelm::fuzzing;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzed_model what;
    const bool whole = what.read(choices{data, size}.rest());
    walk_through(*what);
    if (!whole) return 0;
    const std::string written = stream_of(*what, true);
    if (written.empty()) return 0; // a transaction has stayed open
    fuzzed_model again;
    if (!again.read(written)) fail("what was written cannot be read");
    walk_through(*again);
    return 0;
}
