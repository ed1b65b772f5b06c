// The messages of objects that come and go.
// Memory of objects belongs to their model's pool; a message only asks for it to be given up.
#include "message/lifetime_messages.h"

#include "message/message_text.h"

#include <kelm/meta_model.h>

namespace kelm {

using namespace message_text;

namespace {

/// \returns whether there is nothing to do: a reader did not find the object, or it is the model, which neither
///          comes nor goes by a message
bool is_beyond(const object* what) { return !what || what->type() == type_id::model; }

/// Puts an object back into its model, and tells of it on the way.
template <class Tell>
void come(silent_edit& what, Tell&& tell) {
    what.enter_id_map(); // first: it may fail
    what.set_state(state::being_created);
    tell();
    what.set_state(state::normal);
}

/// Takes an object out of its model, and tells of it on the way.
template <class Tell>
void go(silent_edit& what, Tell&& tell) {
    what.set_state(state::being_deleted);
    tell();
    what.leave_id_map();
    what.set_state(state::deleted);
}

} // namespace

bool obj_create_message_impl::redo() {
    if (is_beyond(object())) return true;
    come(edit(), [this] { tell(); });
    set_undone(false);
    return true;
}

bool obj_create_message_impl::undo() {
    if (is_beyond(object())) return true;
    go(edit(), [this] { tell_inverse<obj_delete_message_impl>(&edit(), owner()); });
    set_undone(true);
    return true;
}

std::string& obj_create_message_impl::to_string(std::string& out) const {
    return out = "Created " + type_and_path(object(), ":");
}

bool obj_pre_delete_message_impl::redo() {
    if (is_lost()) return true;
    tell();
    return true;
}

std::string& obj_pre_delete_message_impl::to_string(std::string& out) const {
    return out = "Pre Delete " + type_and_path(object());
}

bool obj_delete_message_impl::redo() {
    if (is_beyond(object())) return true;
    go(edit(), [this] { tell(); });
    set_undone(false);
    return true;
}

bool obj_delete_message_impl::undo() {
    if (is_beyond(object())) return true;
    come(edit(), [this] { tell_inverse<obj_create_message_impl>(&edit(), owner()); });
    set_undone(true);
    return true;
}

std::string& obj_delete_message_impl::to_string(std::string& out) const {
    out = "Deleted " + type_and_path(object()) + " owner ";
    // Kept: for an owner that is deleted an empty type, a blank, and the word; hence two blanks in a row.
    if (owner() && is_deleted(*owner())) return out += std::string{} + " " + "deleted";
    return out += type_and_path(owner());
}

} // namespace kelm
