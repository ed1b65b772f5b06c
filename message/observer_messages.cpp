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

observer_add_message_impl::observer_add_message_impl(silent_edit* subject, kelm::observer* who, u32 id)
    : recorded(message_type::observer_add, subject), id_(id), observer_(who) {
    message_impl::set_first_run(false);
}

bool observer_add_message_impl::redo() {
    if (observer_ && !is_lost()) edit().attach_silently(*observer_, id_);
    return true;
}

bool observer_add_message_impl::undo() {
    if (observer_ && !is_lost()) edit().detach_silently(*observer_, id_);
    return true;
}

std::string& observer_add_message_impl::to_string(std::string& out) const {
    return out = described("Add Observer - observer: ", observer_, object());
}

observer_remove_message_impl::observer_remove_message_impl(silent_edit* subject, kelm::observer* who, u32 id)
    : recorded(message_type::observer_remove, subject), id_(id), observer_(who) {
    message_impl::set_first_run(false);
}

bool observer_remove_message_impl::redo() {
    if (observer_ && !is_lost()) edit().detach_silently(*observer_, id_);
    return true;
}

bool observer_remove_message_impl::undo() {
    if (observer_ && !is_lost()) edit().attach_silently(*observer_, id_);
    return true;
}

std::string& observer_remove_message_impl::to_string(std::string& out) const {
    return out = described("Remove Observer - observer: ", observer_, object());
}

} // namespace kelm
