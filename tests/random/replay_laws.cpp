// The law of replay: a log of what the user did, performed on a twin that stands where the model stood before, leads to
// where the model stands.
// The histories are made by random_edits.cpp; plain reading is stored_laws.cpp.
#include "tests/random/random_edits.h"
#include "tests/random/read_model.h"

#include <sstream>

namespace kelm::test {

namespace {

std::size_t creations_in(kelm::model& of) {
    std::size_t found = 0;
    for (std::size_t i = 0; i != of.message_count(); ++i)
        found += of.message_at(i)->type() == message_type::obj_create;
    return found;
}

} // namespace

void random_run::remember_start() {
    counted_value::enter();
    model_->meta_model()->set_version(newest_version);
    std::ostringstream out;
    model_->write(&out, false, 0, false, nullptr);
    start_ = out.str();
    start_id_ = model_->last_object_id();
}

void random_run::check_replayed() {
    // What was rolled back or undone has used up ids that the twin gives to others.
    if (start_id_ + creations_in(*model_) != model_->last_object_id()) return;
    was_replayed_ = true;
    const read_model twin;
    std::istringstream start{start_};
    if (!twin->read(&start, nullptr)) return void(failure_ = "broken: the start can be read");
    std::ostringstream log;
    model_->history()->write_messages(nullptr, &log, 0, true);
    std::istringstream in{log.str()};
    std::vector<message*> messages;
    std::vector<object*> deleted;
    io_reference_manager references;
    const bool done = message_history::read_transactions(nullptr, in, messages, references, &*twin,
                                                         newest_version, 0, deleted, true);
    for (const message* each : messages) delete each;
    if (!done) failure_ = "broken: a log can be replayed\n";
    const std::string now = state_of(*twin);
    if (const std::string expected = state(); failure_.empty() && now != expected)
        failure_ = "broken: a replay leads to the same state\nexpected\n" + expected + "but it is\n" + now;
}

} // namespace kelm::test
