// The messages of children and owners.
// Where a child stands in its owner's list is the object's business.
#include "message/child_messages.h"

#include "message/message_text.h"

namespace kelm {

using namespace message_text;

void child_add_message_impl::inverse() {
    tell_inverse<child_remove_message_impl>(&edit(), child(), std::size_t{pos()});
}

std::string& child_add_message_impl::to_string(std::string& out) const {
    return out = "Added " + type_and_path(child()) + " of " + type_and_path(object());
}

bool child_pre_remove_message_impl::redo() {
    if (is_lost()) return true;
    tell();
    return true;
}

std::string& child_pre_remove_message_impl::to_string(std::string& out) const {
    return out = "Pre Remove Child - " + type_and_path(child_) + " of " + type_and_path(object());
}

void child_remove_message_impl::inverse() {
    tell_inverse<child_add_message_impl>(&edit(), child(), std::size_t{pos()});
}

std::string& child_remove_message_impl::to_string(std::string& out) const {
    return out = "Remove Child - " + type_and_path_or_deleted(child()) + " from " +
                 type_and_path_or_deleted(object());
}

std::string& child_order_message_impl::to_string(std::string& out) const {
    return out = "Order Child - object: " + type_and_path_or_deleted(child()) + " of " +
                 type_and_path_or_deleted(object()) + both_positions(new_pos(), old_pos());
}

std::string& owner_set_message_impl::to_string(std::string& out) const {
    return out = "Set Owner - for " + type_and_path(object()) + " to " + type_and_path(new_owner_, ":") +
                 ", old owner: " + type_and_path(old_owner_, ":");
}

} // namespace kelm
