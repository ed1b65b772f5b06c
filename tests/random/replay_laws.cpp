// The law of replay: a log of what the user did, performed on a twin that stands where the model stood before, leads to
// where the model stands.  Plain reading is a law of the kit.
//
// Left out by design:
// - undo, redo and rollback on purpose, and a limit on undo; a history that something else rolls back is not replayed
//   when ids were used up in what has gone;
// - elements of lists, and lists that lose elements as their targets are deleted: a list that is set is written as it
//   is today, so that what is done to it later would be done twice;
// - adding a child to a deleted object, which the log tells by an id that the twin does not know any more;
// - what hooks and observers do besides, but for answers;
// - with answers, refresh_property: hooks hear of it, and a log for replay does not tell it.
#include "tests/random/random_histories.h"
#include "tests/support/world.h"

#include "testing/player.h"
#include "testing/read_model.h"

#include <sstream>

namespace kelm::test {

namespace {

using kelm::testing::action;
using kelm::testing::law;
using kelm::testing::newest_version;
using kelm::testing::player;
using kelm::testing::step;

std::size_t replayed = 0;

std::size_t creations_in(kelm::model& of) {
    std::size_t found = 0;
    for (std::size_t i = 0; i != of.message_count(); ++i)
        found += of.message_at(i)->type() == message_type::obj_create;
    return found;
}

class replay_law final : public kelm::testing::companion {
public:
    explicit replay_law(bool answered) : answered_(answered) {}

    /// The stream of the model before its history.
    void restarted(player& at) override {
        at.model().meta_model()->set_version(newest_version);
        std::ostringstream out;
        at.model().write(&out, false, 0, false, nullptr);
        start_ = out.str();
        start_id_ = at.model().last_object_id();
    }
    bool leaves_out(player& at, const step& what) override {
        switch (what.what) {
        case action::rollback:
        case action::rollback_all:
        case action::rollback_last:
        case action::undo:
        case action::redo:
        case action::set_undo_levels: return true;
        case action::refresh_property: return answered_;
        case action::set_property:
            return what.value.kind == data_type::vector && kelm::testing::has_targets(what.value);
        case action::add_child: return at.names().find(what.object)->owner()->state() == state::deleted;
        default: return what.what >= action::append_element && what.what <= action::delete_element;
        }
    }
    void finishing(player& at) override {
        // What was rolled back or undone has used up ids that the twin gives to others.
        if (start_id_ + creations_in(at.model()) != at.model().last_object_id()) return;
        ++replayed;
        const kelm::testing::read_model twin;
        std::istringstream start{start_};
        if (!twin->read(&start, nullptr)) return at.fail(law::own, "the start can be read");
        if (!perform_log(at.model(), *twin)) at.fail(law::own, "a log can be replayed");
        const std::string is = at.state_of(*twin);
        if (const std::string expected = at.state(); is != expected)
            at.fail(law::own, "a replay leads to the same state", kelm::testing::difference_of(expected, is));
    }

private:
    static bool perform_log(kelm::model& of, kelm::model& twin) {
        std::ostringstream log;
        of.history()->write_messages(nullptr, &log, 0, true);
        std::istringstream in{log.str()};
        std::vector<message*> messages;
        std::vector<object*> deleted;
        io_reference_manager references;
        const bool done = message_history::read_transactions(nullptr, in, messages, references, &twin,
                                                             newest_version, 0, deleted, true);
        for (const message* each : messages) delete each;
        return done;
    }

    bool answered_;
    std::string start_;
    u32 start_id_ = 0;
};

} // namespace

std::size_t replayed_histories() { return replayed; }

std::unique_ptr<kelm::testing::companion> make_replay_law(bool answered) {
    return std::make_unique<replay_law>(answered);
}

} // namespace kelm::test
