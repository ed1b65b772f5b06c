// The messages of whole values.
// How a value is stored and its references linked is the object's business.
#include "message/value_messages.h"

#include "framework/values.h"
#include "message/message_text.h"

namespace kelm {

using namespace message_text;

void property_change_message_impl::tell() {
    message_impl::tell();
    telling([this] { edit().pass_to_inheritors(*this, property_type_); });
}

property_set_message_impl::property_set_message_impl(silent_edit* about,
                                                     std::unique_ptr<abstract_property> old_value,
                                                     abstract_property* new_value, u32 id,
                                                     kelm::object* old_owner)
    : reversible(message_type::property_set, about, id),
      new_(new_value),
      old_(std::move(old_value)),
      old_owner_(old_owner) {}

property_set_message_impl::property_set_message_impl(silent_edit* about, abstract_property* old_value,
                                                     abstract_property* new_value, u32 id,
                                                     kelm::object* old_owner)
    : reversible(message_type::property_set, about, id),
      new_(new_value),
      old_(old_value),
      old_owner_(old_owner) {}

property_set_message_impl::property_set_message_impl(silent_edit* about,
                                                     std::unique_ptr<abstract_property> old_value,
                                                     std::unique_ptr<abstract_property> new_value, u32 id)
    : reversible(message_type::property_set, about, id),
      new_(std::move(new_value)),
      old_(std::move(old_value)),
      old_owner_(nullptr) {}

value_ptr property_set_message_impl::new_value() const { return share(clone(new_.get())); }
value_ptr property_set_message_impl::old_value() const { return share(clone(old_.get())); }

// An old value that was inherited, or supplied by a hook, is a clone that only the message knows: it stays here
// whatever happens to the object's own value, and goes with the message on either side.
void property_set_message_impl::release_values() {
    new_.release();
    old_.release();
}

// A refresh message is never undone, and owns both.
void property_set_message_impl::register_values(value_position_map& positions, u32 index) const {
    if (is_refresh() || is_undone()) register_value(new_.get(), positions, index, 0);
    if (is_refresh()) register_value(old_.get(), positions, index, 1);
    if (!is_refresh() && !is_undone()) register_value(old_.get(), positions, index, 0);
}

abstract_property* property_set_message_impl::get_value(int index, int sub_index) const {
    // Kept: for a refresh the reverse of the numbers under which its values are entered.
    const bool newer = is_refresh() ? index != 0 : is_undone();
    return resolve_value(newer ? new_.get() : old_.get(), sub_index);
}

void property_set_message_impl::forward() {
    if (!new_.holds()) return; // it stands in the object already
    auto left = new_.hand_to([this](auto& comes) { return edit().exchange_value(property_type(), comes); });
    // Where nothing was to leave, something does only in a stream that no history has written: it is kept all the same.
    if (!left && !had_own_value()) return;
    edit().keep_lost_value(old_.hand_over()); // a message of that stream may know it
    old_.take_back(std::move(left));
}

void property_set_message_impl::backward() {
    if (new_.holds()) return; // it is out of the object already
    new_.take_back(had_own_value() ? old_.hand_to([this](auto& comes) {
        return edit().exchange_value(property_type(), comes);
    })
                                   : edit().take_value(property_type()));
}

void property_set_message_impl::inverse() {
    if (had_own_value())
        tell_inverse<property_set_message_impl>(&edit(), new_.get(), old_.get(), property_type(), &edit());
    else
        tell_inverse<property_delete_message_impl>(&edit(), new_.get(), property_type(), &edit());
}

std::string& property_set_message_impl::to_string(std::string& out) const {
    return out = "Changed " + type_and_path(object()) + " " + property_of(object(), property_type()) +
                 " from " + value_or_null(old_.get()) + " to " + value_or_null(new_.get());
}

property_delete_message_impl::property_delete_message_impl(silent_edit* about,
                                                           std::unique_ptr<abstract_property> old_value,
                                                           u32 id)
    : reversible(message_type::property_delete, about, id), old_(std::move(old_value)) {}

property_delete_message_impl::property_delete_message_impl(silent_edit* about, abstract_property* old_value,
                                                           u32 id, kelm::object* real_owner)
    : reversible(message_type::property_delete, about, id, real_owner), old_(old_value) {}

value_ptr property_delete_message_impl::old_value() const { return share(clone(old_.get())); }

void property_delete_message_impl::register_values(value_position_map& positions, u32 index) const {
    if (is_refresh() || !is_undone()) register_value(old_.get(), positions, index, 0);
}

void property_delete_message_impl::backward() {
    // Nothing else can stand under the id in a sound history; where something does, others may know it: it stays.
    if (!old_.holds() || edit().own_value(property_type())) return;
    old_.hand_to([this](auto& comes) { return edit().exchange_value(property_type(), comes); });
}

void property_delete_message_impl::inverse() {
    tell_inverse<property_set_message_impl>(&edit(), static_cast<abstract_property*>(nullptr), old_.get(),
                                            property_type(), &edit());
}

std::string& property_delete_message_impl::to_string(std::string& out) const {
    return out = "Deleted " + property_of(object(), property_type()) + " of " + type_and_path(object());
}

void property_set_not_inheritable_message_impl::tell() {
    message_impl::tell();
    telling([this] { edit().pass_to_inheritors(*this, property_type_); });
}

std::string& property_set_not_inheritable_message_impl::to_string(std::string& out) const {
    // Kept: the words are the same for setting and for taking the mark away.
    return out = "Set " + type_and_path(object()) + " " + property_of(object(), property_type_) +
                 " not inheritable.";
}

} // namespace kelm
