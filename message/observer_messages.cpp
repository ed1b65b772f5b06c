// The messages of objects that observe objects.
// Undo and redo work on the lists directly: attaching through the object would record anew.
#include "message/observer_messages.h"

#include "message/message_text.h"

namespace kelm {

using namespace message_text;

namespace {

std::string described(const char* what, kelm::observer* who, const object* subject) {
    return what + type_and_path(message_cast<const object>(who), ":") +
           ", subject: " + type_and_path(subject, ":");
}

} // namespace

std::string& observer_add_message_impl::to_string(std::string& out) const {
    return out = described("Add Observer - observer: ", observer(), object());
}

std::string& observer_remove_message_impl::to_string(std::string& out) const {
    return out = described("Remove Observer - observer: ", observer(), object());
}

} // namespace kelm
