// Which objects a stretch of history makes, and which it needs.
// The needed ones are described as they were before it, which undo tells.
#include "log/replay_log.h"

#include "files/file_error.h"
#include "log/touched.h"
#include "log/transactions.h"
#include "schema/values.h"

#include <kelm/message_history.h>
#include <kelm/structure_messages.h>

#include <set>
#include <sstream>
#include <utility>

namespace schema {

namespace {

std::set<kelm::u32> ids_touched(const std::vector<transaction>& by) {
    std::set<kelm::u32> ids;
    for (const transaction& each : by)
        for (const kelm::message* message : each.messages)
            for (const kelm::object* object : objects_touched(*message)) ids.insert(object->id());
    return ids;
}

std::size_t place_of_begin(const kelm::model& in, const transaction& of) {
    std::size_t place = 0;
    in.find_transaction(of.id, &place);
    return place;
}

/// Ids are given in a row, save where edits were made and undone between.
void require_no_gaps(const std::vector<kelm::u32>& made) {
    for (std::size_t at = 1; at < made.size(); ++at)
        if (made[at] != made[at - 1] + 1)
            throw file_error("these edits fit no other file, as between them others were made and undone");
}

/// The model itself may be called as it likes: by the database that it comes from.
std::vector<known_object> describe(const kelm::model& in, const std::set<kelm::u32>& ids) {
    std::vector<known_object> found;
    for (const kelm::u32 id : ids)
        if (const kelm::object* object = in.find_object(id); object && object->owner())
            found.push_back({id, object->type(), name(*object)});
    return found;
}

} // namespace

std::vector<kelm::u32> objects_made(const kelm::model& in, std::size_t first) {
    std::vector<kelm::u32> made;
    for (std::size_t at = first; at < in.message_count(); ++at) {
        const kelm::message* message = in.message_at(at);
        if (message->type() == kelm::message_type::obj_create && message->object())
            made.push_back(message->object()->id());
    }
    return made;
}

replay_log take_replay_log(kelm::model& from, std::size_t last) {
    const std::vector<transaction> taken = transactions(from, last);
    if (taken.empty()) throw file_error("there are no edits to replay");
    replay_log log{current_version, {}, objects_made(from, place_of_begin(from, taken.front())), {}};
    require_no_gaps(log.made);
    std::ostringstream messages;
    from.history()->write_messages(nullptr, &messages, static_cast<kelm::u32>(taken.size()), true);
    log.messages = std::move(messages).str();
    const std::set<kelm::u32> ids = ids_touched(taken);
    for (std::size_t left = taken.size(); left != 0; --left) from.undo();
    log.known = describe(from, ids);
    return log;
}

} // namespace schema
