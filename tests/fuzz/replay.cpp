// Any bytes as a log that is performed on a live model, or only read beside it.
// The input: a byte for how, the length of a script for afterwards, the script, the log.
#include "tests/fuzz/fuzzing.h"

#include <kelm/io_references.h>
#include <kelm/message.h>
#include <kelm/message_history.h>

#include <sstream>
#include <stdexcept>

using namespace kelm::fuzzing;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzed_model on;
    on.populate(true);
    choices input{data, size};
    const unsigned how = input.byte();
    choices script = input.part();
    std::istringstream in{input.rest()};
    std::vector<kelm::message*> messages;
    std::vector<kelm::object*> deleted;
    kelm::io_reference_manager references;
    try {
        kelm::message_history::read_transactions(nullptr, in, messages, references, &*on, how & 1 ? 7 : 8,
                                                 how >> 4, deleted, (how & 2) == 0);
    } catch (const std::runtime_error&) { // the ids of the model are used up
    }
    std::string words;
    for (kelm::message* each : messages) each->to_string(words);
    for (kelm::message* each : messages) delete each;
    edit_as_told(*on, script);
    walk_through(*on);
    return 0;
}
