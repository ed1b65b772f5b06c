// The words that descriptions of messages are made of.
// No messages.
#include "message/message_text.h"

#include "message/silent_edit.h"

#include <kelm/object_helpers.h>

namespace kelm::message_text {

std::string type_and_path(const object* what, const char* between) {
    return object_type_as_string(what) + between + object_full_path_name(what);
}

std::string type_and_path_or_deleted(const object* what) {
    return what && is_deleted(*what) ? "type (deleted) name (deleted)" : type_and_path(what);
}

std::string property_of(const object* what, u32 id) {
    return what ? property_name(what->type(), id, nullptr) : std::string{};
}

std::string both_positions(u32 new_pos, u32 old_pos) {
    return ": new position " + std::to_string(static_cast<int>(new_pos)) +
           ", old position: " + std::to_string(static_cast<int>(old_pos));
}

std::string value_or_null(const abstract_property* value) { return value ? value->to_string() : "NULL"; }

} // namespace kelm::message_text
