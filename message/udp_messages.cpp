// The messages of user-defined properties.
// What else a change of a definition brings about is recorded by messages of its own.
#include "message/udp_messages.h"

#include "framework/values.h"
#include "meta/meta_object_base.h"
#include "meta/meta_property_impl.h"
#include "meta/udp_definition.h"

#include <kelm/model.h>

namespace kelm {

namespace {

/// A value that was read may refer to objects.
void set_attribute(meta_property& which, u32 attribute, const abstract_property& value) {
    which.set_attribute_value(attribute, *kelm::udp::attribute_copy(value));
}

} // namespace

meta_object_base* udp_message_impl::own_type() const {
    auto* const type = dynamic_cast<meta_object_base*>(owner_meta_type_);
    kelm::model* const in = object() ? object()->model() : nullptr;
    return type && in && type->owner_meta_model() == in->meta_model() ? type : nullptr;
}

meta_property* udp_message_impl::own_property() const {
    const meta_object_base* const type = own_type();
    meta_property* const found = type ? type->find_property(udp_type_) : nullptr;
    return found && kelm::udp::is_own(*found, *type->owner_meta_model()) ? found : nullptr;
}

// Kept: a property that comes back has its name and class, and after a removal its default.  Its definition,
// choices and multiline mark are not part of these messages.
void udp_presence_message_impl::add_property(const abstract_property* default_value) {
    meta_object_base* const type = own_type();
    if (!type) return;
    // Made with its default, so that there is one change.
    auto made = std::make_unique<meta_property_impl>(udp_type_, udp_name_, udp_class_, std::string{});
    if (default_value) set_attribute(*made, attribute_id::default_value, *default_value);
    type->add_existing_property(std::move(made));
}

void udp_presence_message_impl::remove_property() {
    if (own_property()) own_type()->remove_property(udp_type_);
}

std::string& udp_presence_message_impl::describe(const char* action, std::string& out) const {
    return out = action + udp_name_ + " of " + (owner_meta_type_ ? owner_meta_type_->name() : std::string{});
}

bool udp_add_message_impl::redo() {
    add_property(nullptr);
    return true;
}

bool udp_add_message_impl::undo() {
    remove_property();
    return true;
}

udp_remove_message_impl::udp_remove_message_impl(silent_edit* model, meta_object* owner, u32 udp_type,
                                                 std::string name, u32 udp_class,
                                                 std::unique_ptr<abstract_property> default_value)
    : recorded(message_type::udp_remove, model, owner, udp_type, std::move(name), udp_class),
      default_value_(std::move(default_value)) {}

bool udp_remove_message_impl::redo() {
    remove_property();
    return true;
}

bool udp_remove_message_impl::undo() {
    add_property(default_value_.get());
    return true;
}

void udp_remove_message_impl::register_values(value_position_map& positions, u32 index) const {
    register_value(default_value_.get(), positions, index, 0);
}

udp_set_attribute_value_message_impl::udp_set_attribute_value_message_impl(
    silent_edit* model, meta_object* owner, u32 udp_type, u32 attribute,
    std::unique_ptr<abstract_property> new_value, std::unique_ptr<abstract_property> old_value)
    : recorded(message_type::udp_set_attribute_value, model, owner, udp_type),
      udp_att_(attribute),
      new_value_(std::move(new_value)),
      old_value_(std::move(old_value)) {}

value_ptr udp_set_attribute_value_message_impl::new_value() const { return shared_clone(new_value_.get()); }
value_ptr udp_set_attribute_value_message_impl::old_value() const { return shared_clone(old_value_.get()); }

std::string& udp_set_attribute_value_message_impl::to_string(std::string& out) const {
    const meta_property* const changed =
        owner_meta_type_ ? owner_meta_type_->find_property(udp_type_) : nullptr;
    return out = "UDP Attribute Value Changed : " + (changed ? changed->name() : std::string{}) + " (" +
                 text_or_empty(new_value_.get()) + "," + text_or_empty(old_value_.get()) + " )";
}

bool udp_set_attribute_value_message_impl::redo() {
    meta_property* const changed = own_property();
    if (changed && new_value_.get()) set_attribute(*changed, udp_att_, *new_value_.get());
    return true;
}

bool udp_set_attribute_value_message_impl::undo() {
    meta_property* const changed = own_property();
    if (!changed) return true;
    if (old_value_.get())
        set_attribute(*changed, udp_att_, *old_value_.get());
    else
        changed->remove_attribute(udp_att_);
    return true;
}

void udp_set_attribute_value_message_impl::release_values() {
    new_value_.release();
    old_value_.release();
}

void udp_set_attribute_value_message_impl::register_values(value_position_map& positions, u32 index) const {
    register_value(new_value_.get(), positions, index, 0);
    register_value(old_value_.get(), positions, index, 1);
}

abstract_property* udp_set_attribute_value_message_impl::get_value(int index, int sub_index) const {
    return resolve_value((index == 0 ? new_value_ : old_value_).get(), sub_index);
}

} // namespace kelm
