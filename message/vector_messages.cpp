// The messages of single elements of vector values.
// How an element is stored and its references linked is the object's business.
#include "message/vector_messages.h"

#include "framework/values.h"
#include "message/message_text.h"

namespace kelm {

using namespace message_text;

namespace {

/// Positions are 32 bits wide in messages; all ones stands for "behind every end" in both widths.
std::size_t wide(u32 position) { return position == npos32 ? npos : position; }

} // namespace

property_set_vec_prop_message_impl::property_set_vec_prop_message_impl(
    silent_edit* about, std::unique_ptr<abstract_property> old_value, abstract_property* new_value, u32 id,
    std::size_t pos)
    : reversible(message_type::property_set_vec_prop, about, id),
      new_(new_value),
      old_(std::move(old_value)),
      pos_(static_cast<u32>(pos)) {}

property_set_vec_prop_message_impl::property_set_vec_prop_message_impl(silent_edit* about,
                                                                       abstract_property* old_value,
                                                                       abstract_property* new_value, u32 id,
                                                                       std::size_t pos)
    : reversible(message_type::property_set_vec_prop, about, id),
      new_(new_value),
      old_(old_value),
      pos_(static_cast<u32>(pos)) {}

value_ptr property_set_vec_prop_message_impl::new_value() const { return share(clone(new_.get())); }
value_ptr property_set_vec_prop_message_impl::old_value() const { return share(clone(old_.get())); }

void property_set_vec_prop_message_impl::release_values() {
    new_.release();
    old_.release();
}

void property_set_vec_prop_message_impl::register_values(value_position_map& positions, u32 index) const {
    register_value(get_value(0, -1), positions, index, 0);
}

abstract_property* property_set_vec_prop_message_impl::get_value(int, int sub_index) const {
    return resolve_value(is_undone() ? new_.get() : old_.get(), sub_index);
}

void property_set_vec_prop_message_impl::swap_in(value_custody& comes, value_custody& goes) {
    if (!comes.holds()) return;
    const abstract_property* const handed = comes.get();
    auto element = comes.hand_to([this](auto& given) {
        edit().exchange_element(property_type(), wide(pos_), given);
        return std::move(given);
    });
    // An edit that did not fit gives the same element back: it stays with the side it came from.
    value_custody& into = element.get() == handed ? comes : goes;
    edit().keep_lost_value(
        into.hand_over()); // held only in a stream that no history has written: others may know it
    into.take_back(std::move(element));
}

void property_set_vec_prop_message_impl::inverse() {
    tell_inverse<property_set_vec_prop_message_impl>(&edit(), new_.get(), old_.get(), property_type(),
                                                     std::size_t{pos_});
}

std::string& property_set_vec_prop_message_impl::to_string(std::string& out) const {
    return out = "Set " + property_of(object(), property_type()) + " of " + type_and_path(object());
}

property_insert_vec_prop_message_impl::property_insert_vec_prop_message_impl(silent_edit* about,
                                                                             abstract_property* element,
                                                                             u32 id, std::size_t pos)
    : reversible(message_type::property_insert_vec_prop, about, id),
      value_(element),
      pos_(static_cast<u32>(pos)),
      was_put_in_(true) {}

property_insert_vec_prop_message_impl::property_insert_vec_prop_message_impl(
    silent_edit* about, std::unique_ptr<abstract_property> element, u32 id, std::size_t pos)
    : reversible(message_type::property_insert_vec_prop, about, id),
      value_(std::move(element)),
      pos_(static_cast<u32>(pos)),
      was_put_in_(false) {}

value_ptr property_insert_vec_prop_message_impl::value() const { return share(clone(value_.get())); }

void property_insert_vec_prop_message_impl::register_values(value_position_map& positions, u32 index) const {
    register_value(get_value(0, -1), positions, index, 0);
}

abstract_property* property_insert_vec_prop_message_impl::get_value(int, int sub_index) const {
    return owns_value() ? resolve_value(value_.get(), sub_index) : nullptr;
}

void property_insert_vec_prop_message_impl::forward() {
    if (!was_put_in_ || !value_.holds()) return;
    value_.hand_to([this](auto& comes) { edit().insert_element(property_type(), wide(pos_), comes); });
}

void property_insert_vec_prop_message_impl::backward() {
    if (!was_put_in_ || value_.holds()) return;
    value_.take_back(edit().take_element(property_type(), wide(pos_), value_.get()));
}

void property_insert_vec_prop_message_impl::inverse() {
    tell_inverse<property_delete_vec_prop_message_impl>(&edit(), value_.get(), property_type(),
                                                        std::size_t{pos_});
}

std::string& property_insert_vec_prop_message_impl::to_string(std::string& out) const {
    return out = "Inserted " + property_of(object(), property_type()) + " of " + type_and_path(object());
}

property_delete_vec_prop_message_impl::property_delete_vec_prop_message_impl(
    silent_edit* about, std::unique_ptr<abstract_property> element, u32 id, std::size_t pos)
    : reversible(message_type::property_delete_vec_prop, about, id),
      value_(std::move(element)),
      pos_(static_cast<u32>(pos)) {}

property_delete_vec_prop_message_impl::property_delete_vec_prop_message_impl(silent_edit* about,
                                                                             abstract_property* element,
                                                                             u32 id, std::size_t pos)
    : reversible(message_type::property_delete_vec_prop, about, id),
      value_(element),
      pos_(static_cast<u32>(pos)) {}

value_ptr property_delete_vec_prop_message_impl::value() const { return share(clone(value_.get())); }

void property_delete_vec_prop_message_impl::register_values(value_position_map& positions, u32 index) const {
    if (!is_undone()) register_value(value_.get(), positions, index, 0);
}

void property_delete_vec_prop_message_impl::forward() {
    if (!value_.holds()) value_.take_back(edit().take_element(property_type(), wide(pos_), value_.get()));
}

void property_delete_vec_prop_message_impl::backward() {
    if (!value_.holds()) return;
    value_.hand_to([this](auto& comes) { edit().insert_element(property_type(), wide(pos_), comes); });
}

void property_delete_vec_prop_message_impl::inverse() {
    tell_inverse<property_insert_vec_prop_message_impl>(&edit(), value_.get(), property_type(),
                                                        std::size_t{pos_});
}

std::string& property_delete_vec_prop_message_impl::to_string(std::string& out) const {
    return out = "Deleted " + property_of(object(), property_type()) + " of " + type_and_path(object());
}

element_position_vec_prop_message_impl::element_position_vec_prop_message_impl(silent_edit* about, u32 id,
                                                                               std::size_t old_pos,
                                                                               std::size_t new_pos,
                                                                               bool moved)
    : reversible(message_type::element_position_vec_prop, about, id),
      old_pos_(static_cast<u32>(old_pos)),
      new_pos_(static_cast<u32>(new_pos)),
      moved_(moved) {}

void element_position_vec_prop_message_impl::forward() {
    if (moved_) edit().move_element(property_type(), wide(old_pos_), wide(new_pos_));
}

bool element_position_vec_prop_message_impl::was_moved() const {
    if (!moved_ || !mark()) return moved_;
    const auto* const list = exact_cast<vector_property>(edit().own_value(property_type()));
    return list && old_pos_ < list->elements.size();
}

void element_position_vec_prop_message_impl::backward() {
    if (was_moved()) edit().move_element(property_type(), wide(new_pos_), wide(old_pos_));
}

void element_position_vec_prop_message_impl::inverse() {
    tell_inverse<element_position_vec_prop_message_impl>(&edit(), property_type(), std::size_t{new_pos_},
                                                         std::size_t{old_pos_}, moved_);
}

std::string& element_position_vec_prop_message_impl::to_string(std::string& out) const {
    return out = "Changed " + property_of(object(), property_type()) + " of " + type_and_path(object()) +
                 " from " + std::to_string(static_cast<int>(old_pos_)) + " to " +
                 std::to_string(static_cast<int>(new_pos_));
}

} // namespace kelm
