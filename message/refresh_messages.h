// The messages of values that changed by other means: no object changes with them, they only tell.
// Both values are the message's own clones at all times, on either side of the log.
#pragma once

#include "message/value_messages.h"

#include <memory>

namespace kelm {

/// The effective value became another one.
class property_refresh_set_message_impl final : public property_set_message_impl {
public:
    /// \param old_value  null when nothing was effective
    property_refresh_set_message_impl(silent_edit* about, std::unique_ptr<abstract_property> old_value,
                                      std::unique_ptr<abstract_property> new_value, u32 id)
        : property_set_message_impl(about, std::move(old_value), std::move(new_value), id) {
        set_mark(true);
    }
    /// For telling only: both values are lent.
    property_refresh_set_message_impl(silent_edit* about, abstract_property* old_value,
                                      abstract_property* new_value, u32 id)
        : property_set_message_impl(about, old_value, new_value, id, nullptr) {
        set_mark(true);
    }

    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override;
};

/// The effective value went.
class property_refresh_delete_message_impl final : public property_delete_message_impl {
public:
    property_refresh_delete_message_impl(silent_edit* about, std::unique_ptr<abstract_property> old_value,
                                         u32 id)
        : property_delete_message_impl(about, std::move(old_value), id) {
        set_mark(true);
    }
    /// For telling only: the value is lent.
    property_refresh_delete_message_impl(silent_edit* about, abstract_property* old_value, u32 id)
        : property_delete_message_impl(about, old_value, id) {
        set_mark(true);
    }

    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override;
};

} // namespace kelm
