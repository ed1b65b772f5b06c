// Asks whether a log fits, lets the library perform it, and asks whether it did fit.
// What hooks did to the first model, hooks do again here: a log tells what the user did.
#include "log/replay.h"

#include "files/file_error.h"
#include "hooks/hooks.h"
#include "log/signer.h"
#include "log/transactions.h"
#include "progress/progress.h"
#include "schema/identifiers.h"
#include "schema/values.h"

#include <kelm/io_references.h>
#include <kelm/message.h>
#include <kelm/message_history.h>
#include <kelm/subject.h>

#include <sstream>

namespace schema {

namespace {

[[noreturn]] void refuse(const std::string& file, const std::string& why) {
    throw file_error("the log does not fit " + quoted(file) + ": " + why);
}

void require_known(const known_object& wanted, const kelm::model& in, const std::string& file) {
    const kelm::object* there = in.find_object(wanted.id);
    if (there && there->type() == wanted.type && name(*there) == wanted.name) return;
    const std::string what = "object " + std::to_string(wanted.id);
    if (!there) refuse(file, "it has no " + what);
    if (there->type() != wanted.type) refuse(file, what + " is something else there");
    refuse(file, what + " is called " + identifier(name(*there)) + " there, not " + identifier(wanted.name));
}

void require_fit(const replay_log& log, const kelm::model& on, const std::string& file) {
    for (const known_object& each : log.known) require_known(each, on, file);
    const kelm::u32 next = on.last_object_id() + 1;
    if (!log.made.empty() && log.made.front() != next)
        refuse(file, "the edits make objects from number " + std::to_string(log.made.front()) +
                         " on, the next one there is number " + std::to_string(next));
}

/// Tells how many edits have been made.
class edit_counter final : public kelm::observer_impl {
public:
    explicit edit_counter(kelm::model& model) : model_(model) { model_.history()->attach(this); }
    ~edit_counter() override { model_.history()->detach(this); }

    bool update(kelm::subject*, kelm::message* what) override {
        const auto* end = kelm::message_cast<const kelm::tran_end_message>(what);
        if (end && end->level() == 0) told_.advance();
        return true;
    }

private:
    kelm::model& model_;
    progress told_{"replaying", count_of_edits, 0};
};

/// \returns whether each message could be performed
bool perform(const std::string& messages, kelm::model& on) {
    const edit_counter counting(on);
    std::istringstream in(messages);
    std::vector<kelm::message*> read;
    std::vector<kelm::object*> deleted; // belong to the model
    kelm::io_reference_manager references;
    const bool good = kelm::message_history::read_transactions(
        nullptr, in, read, references, &on, static_cast<int>(current_version.major),
        static_cast<int>(current_version.minor), deleted, true);
    for (const kelm::message* each : read) delete each;
    return good;
}

} // namespace

std::size_t replay(const replay_log& log, kelm::model& on, const std::string& file, const signature& by,
                   rules& shared) {
    require_fit(log, on, file);
    const std::size_t first = on.message_count();
    const std::size_t before = transactions(on).size();
    const signer signing(on, by);
    const rules::watch watching(shared);
    const bool performed = perform(log.messages, on) && validate(on, shared);
    if (!shared.reason().empty()) refuse(file, shared.reason());
    if (!performed || on.in_transaction() || objects_made(on, first) != log.made)
        refuse(file, "the edits come to another end there");
    return transactions(on).size() - before;
}

} // namespace schema
