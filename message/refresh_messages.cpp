// The messages of values that changed by other means.
// They never know that they were undone: there is nothing that could be handed over.
#include "message/refresh_messages.h"

#include "message/message_text.h"

namespace kelm {

using namespace message_text;

bool property_refresh_set_message_impl::redo() {
    if (is_lost()) return true;
    tell();
    return true;
}

bool property_refresh_set_message_impl::undo() {
    if (is_lost()) return true;
    if (known_old_value())
        tell_inverse<property_refresh_set_message_impl>(&edit(), known_new_value(), known_old_value(),
                                                        property_type());
    else
        tell_inverse<property_refresh_delete_message_impl>(&edit(), known_new_value(), property_type());
    return true;
}

std::string& property_refresh_set_message_impl::to_string(std::string& out) const {
    return out = "Refresh Set Property - " + property_of(object(), property_type()) + " of " +
                 type_and_path(object());
}

bool property_refresh_delete_message_impl::redo() {
    if (is_lost()) return true;
    tell();
    return true;
}

bool property_refresh_delete_message_impl::undo() {
    if (is_lost()) return true;
    tell_inverse<property_refresh_set_message_impl>(&edit(), static_cast<abstract_property*>(nullptr),
                                                    known_old_value(), property_type());
    return true;
}

std::string& property_refresh_delete_message_impl::to_string(std::string& out) const {
    return out = "Refresh Delete Property - " + property_of(object(), property_type()) + " of " +
                 type_and_path(object());
}

} // namespace kelm
