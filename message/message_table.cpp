// The table of messages.
// A new message is one class and one row here.
#include "message/message_table.h"

#include "message/child_messages.h"
#include "message/inherit_messages.h"
#include "message/lifetime_messages.h"
#include "message/observer_messages.h"
#include "message/refresh_messages.h"
#include "message/transaction_messages.h"
#include "message/udp_messages.h"
#include "message/vector_messages.h"

#include <algorithm>
#include <array>

namespace kelm {

namespace {

using made = std::unique_ptr<message_impl>;

constexpr auto no_object = static_cast<object*>(nullptr);
constexpr auto no_value = static_cast<abstract_property*>(nullptr);

template <class Message, auto... Arguments>
made blank(silent_edit* about) {
    return std::make_unique<Message>(about, Arguments...);
}

made blank_begin(silent_edit* about) {
    return std::make_unique<tran_begin_message_impl>(about, 0, std::string{});
}

// What the application keeps with an end is nothing before it has been read, though a new end starts at 1.
made blank_end(silent_edit* about) {
    auto end = std::make_unique<tran_end_message_impl>(about);
    end->set_processed_state(0);
    return end;
}

made blank_udp_add(silent_edit* about) {
    return std::make_unique<udp_add_message_impl>(about, nullptr, 0, std::string{}, 0);
}

made blank_udp_remove(silent_edit* about) {
    return std::make_unique<udp_remove_message_impl>(about, nullptr, 0, std::string{}, 0, nullptr);
}

made blank_udp_attribute(silent_edit* about) {
    return std::make_unique<udp_set_attribute_value_message_impl>(about, nullptr, 0, 0, nullptr, nullptr);
}

// clang-format off
constexpr std::array rows{
    message_row{1, "tran_begin_message", blank_begin},
    message_row{2, "tran_end_message", blank_end},
    message_row{4, "obj_create_message", blank<obj_create_message_impl, no_object>},
    message_row{5, "obj_pre_delete_message", blank<obj_pre_delete_message_impl, no_object>},
    message_row{6, "obj_delete_message", blank<obj_delete_message_impl, no_object>},
    message_row{7, "property_set_message", blank<property_set_message_impl, no_value, no_value, 0U, no_object>, 2},
    message_row{8, "property_set_vec_prop_message", blank<property_set_vec_prop_message_impl, no_value, no_value, 0U, npos>, 2},
    message_row{9, "property_insert_vec_prop_message", blank<property_insert_vec_prop_message_impl, no_value, 0U, npos>},
    message_row{10, "property_delete_message", blank<property_delete_message_impl, no_value, 0U>, 1},
    message_row{11, "property_delete_vec_prop_message", blank<property_delete_vec_prop_message_impl, no_value, 0U, npos>, 1},
    message_row{12, "element_position_vec_prop_message", blank<element_position_vec_prop_message_impl, 0U, npos, npos, true>},
    message_row{13, "property_set_not_inheritable_message", blank<property_set_not_inheritable_message_impl, 0U, true>},
    message_row{14, "child_add_message", blank<child_add_message_impl, no_object, 0U>},
    message_row{15, "child_pre_remove_message", blank<child_pre_remove_message_impl, no_object>},
    message_row{16, "child_remove_message", blank<child_remove_message_impl, no_object, npos>},
    message_row{17, "child_order_message", blank<child_order_message_impl, no_object, npos, npos>},
    message_row{18, "owner_set_message", blank<owner_set_message_impl, no_object, no_object>},
    message_row{19, "inherits_add_message", blank<inherits_add_message_impl, no_object, npos>},
    message_row{20, "inherits_cancel_message", blank<inherits_cancel_message_impl, no_object, npos>},
    message_row{21, "inherits_insert_message", blank<inherits_insert_message_impl, no_object, npos>},
    message_row{22, "inherits_from_order_message", blank<inherits_from_order_message_impl, no_object, npos, npos>},
    message_row{23, "inherits_replace_message", blank<inherits_replace_message_impl, no_object, no_object, npos>},
    message_row{24, "observer_add_message", blank<observer_add_message_impl, nullptr, 0U>},
    message_row{25, "observer_remove_message", blank<observer_remove_message_impl, nullptr, 0U>},
    message_row{26, "udp_add_message", blank_udp_add},
    message_row{27, "udp_remove_message", blank_udp_remove, 1},
    message_row{28, "udp_set_attribute_value_message", blank_udp_attribute, 3},
    message_row{29, "property_refresh_set_message", blank<property_refresh_set_message_impl, no_value, no_value, 0U>, 3},
    message_row{30, "property_refresh_delete_message", blank<property_refresh_delete_message_impl, no_value, 0U>, 1},
};
// clang-format on
static_assert(std::ranges::is_sorted(rows, {}, &message_row::code));

} // namespace

std::span<const message_row> message_rows() { return rows; }

const message_row* message_row_of(u32 code) {
    const auto found = std::ranges::lower_bound(rows, code, {}, &message_row::code);
    return found != rows.end() && found->code == code ? &*found : nullptr;
}

u32 stored_code(const message_impl& what) {
    switch (what.type()) {
    case message_type::property_set:
        return static_cast<const property_set_message_impl&>(what).is_refresh()
                   ? message_type::property_refresh_set
                   : message_type::property_set;
    case message_type::property_delete:
        return static_cast<const property_delete_message_impl&>(what).is_refresh()
                   ? message_type::property_refresh_delete
                   : message_type::property_delete;
    default: return what.type();
    }
}

} // namespace kelm
