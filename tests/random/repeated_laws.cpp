// The law of repetition: the same calls make the same bytes, in one process after the other and within one.
// What else holds of streams is stored_laws.cpp; the processes are compared by same_bytes.py.
#include "tests/random/random_edits.h"
#include "tests/random/read_model.h"

#include <sstream>

namespace kelm::test {

namespace {

constexpr std::size_t identity_size = 16; // random bytes that a stream begins with

} // namespace

std::string random_run::bytes() {
    while (!levels_.empty() && failure_.empty()) end();
    counted_value::enter();
    model_->meta_model()->set_version(newest_version);
    std::ostringstream out;
    if (!model_->write(&out, true, 0, false, nullptr)) return "not written";
    return out.str().substr(identity_size);
}

played_history play_for_bytes(u64 seed, std::size_t steps, history_mix mix) {
    random_run run{seed, mix};
    for (std::size_t i = 0; i != steps; ++i) run.step();
    const std::string bytes = run.bytes();
    played_history out{run.failure(), bytes};
    for (const std::string& each : run.steps()) out.steps += each + "\n";
    return out;
}

} // namespace kelm::test
