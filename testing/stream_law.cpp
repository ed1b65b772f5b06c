// The laws of streams and documents: written, read and written again gives the same bytes; what was read is what was
// written; and undo and redo of it lead through the same states.
// What is written of a model is docs/stream_format.md.
#include "testing/hex.h"
#include "testing/law_companions.h"
#include "testing/player.h"
#include "testing/read_model.h"

#include <kelm/meta_model.h>

#include <algorithm>
#include <sstream>
#include <utility>

namespace kelm::testing {

namespace {

constexpr std::size_t identity_size = 16; // random bytes that a stream begins with

/// \returns whether every living object is in the tree.  One whose deletion was refused half-way is not, nor is a child
///          that was taken out; no stream tells of them.
bool is_all_in_the_tree(kelm::model& of) {
    std::vector<u32> ids;
    of.object_ids(ids);
    std::size_t found = 0;
    std::vector<object*> to_visit{of.as_object()};
    while (!to_visit.empty()) {
        object* const at = to_visit.back();
        to_visit.pop_back();
        ++found;
        const std::vector<object*> below = at->children();
        to_visit.insert(to_visit.end(), below.begin(), below.end());
    }
    return found == ids.size();
}

class stream_law final : public companion {
public:
    stream_law(law_set laws, element_maker elements) : laws_(laws), elements_(std::move(elements)) {}

    void finishing(player& at) override {
        if (!is_all_in_the_tree(at.model())) return;
        at.model().meta_model()->set_version(std::max(newest_version, at.model().meta_model()->version()));
        at.model().clear_modified(); // a model that has been read counts from 0
        if (laws_.has(law::streams) || laws_.has(law::reloading)) check_stream(at);
        if (laws_.has(law::documents) && elements_) check_document(at);
    }

private:
    void check_stream(player& at) const {
        std::ostringstream out;
        if (!at.model().write(&out, true, 0, false, nullptr))
            return at.fail(law::streams, "a model can be written");
        const std::string bytes = out.str();
        const read_model copy;
        std::istringstream in{bytes};
        if (!copy->read(&in, nullptr)) return at.fail(law::streams, "what was written can be read");
        if (laws_.has(law::streams)) {
            compare(at, *copy, law::streams, "what is read is what was written", at.state());
            std::ostringstream again;
            if (!copy->write(&again, true, 0, false, nullptr) || again.str() != bytes)
                at.fail(law::streams, "what is read is written in the same bytes",
                        difference_of_bytes(bytes, again.str()));
        }
        if (laws_.has(law::reloading)) go_back_and_forth(at, *copy);
    }

    /// What was undone is no part of a stream.
    static std::string steps_of(const kelm::model& in) {
        transaction_names back;
        in.undo_names(back, 0);
        return std::to_string(back.size()) + " to undo\n";
    }

    static void go_back_and_forth(player& at, kelm::model& copy) {
        const std::string wrong = difference_of(steps_of(at.model()), steps_of(copy));
        if (!wrong.empty() && at.model().undo_levels() == -1) // a limit is no part of a stream
            return at.fail(law::reloading, "what is read has the history that was written", wrong);
        std::size_t here = at.at();
        for (; !at.has_failed() && here != 0 && copy.can_undo(); --here) {
            copy.undo();
            compare(at, copy, law::reloading, "undo of what was read leads to the state before",
                    at.moment(here - 1));
        }
        for (; !at.has_failed() && copy.can_redo(); ++here) {
            copy.redo();
            compare(at, copy, law::reloading, "redo of what was read leads to the state behind",
                    at.moment(here + 1));
        }
    }

    void check_document(player& at) const {
        elements_([&](void* element) {
            std::ostringstream log;
            if (!at.model().write(&log, false, 0, false, element))
                return at.fail(law::documents, "a model can be written into a document");
            const read_model copy;
            if (!copy->read(nullptr, element))
                return at.fail(law::documents, "what was written into a document can be read");
            compare(at, *copy, law::documents, "what is read from a document is what was written",
                    at.state());
        });
    }

    static void compare(player& at, kelm::model& copy, law which, const char* what,
                        const std::string& expected) {
        if (at.has_failed()) return;
        if (const std::string is = at.state_of(copy); is != expected)
            at.fail(which, what, difference_of(expected, is));
    }

    law_set laws_;
    element_maker elements_;
};

} // namespace

std::unique_ptr<companion> make_stream_law(law_set laws, element_maker elements) {
    return std::make_unique<stream_law>(laws, std::move(elements));
}

std::string bytes_of(kelm::model& of) {
    of.meta_model()->set_version(std::max(newest_version, of.meta_model()->version()));
    std::ostringstream out;
    return of.write(&out, true, 0, false, nullptr) ? out.str().substr(identity_size) : "not written";
}

std::string difference_of_bytes(const std::string& expected, const std::string& is) {
    if (expected == is) return {};
    const auto at = static_cast<std::size_t>(std::ranges::mismatch(expected, is).in1 - expected.begin());
    const std::size_t from = at < 40 ? 0 : at - 40;
    return "at byte " + std::to_string(at) + "\n- " + hex(expected.substr(from, 80)) + "\n+ " +
           hex(is.substr(std::min(from, is.size()), 80)) + "\n";
}

} // namespace kelm::testing
