// Edits, then any bytes as the history of a sound model: behind what was read, undo, redo and new edits go on.
// The input: the length of the script, the script, the history section without its first byte.
#include "tests/fuzz/fuzzing.h"

using namespace kelm::fuzzing;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string sound = [] {
        fuzzed_model model;
        model.populate(false);
        std::string bytes = stream_of(*model, false);
        bytes.back() = 1; // a history follows
        return bytes;
    }();
    choices input{data, size};
    choices script = input.part();
    fuzzed_model what;
    what.read(sound + input.rest());
    edit_as_told(*what, script);
    walk_through(*what);
    return 0;
}
