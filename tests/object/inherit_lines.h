// Messages as lines that show whom a message speaks of at the moment it is told.
// The descriptions of the library itself have tests of their own.
#pragma once

#include "tests/support/listening_world.h"

#include <kelm/property_messages.h>
#include <kelm/structure_messages.h>

#include <sstream>

namespace kelm::test {

/// \returns what a message of values or bases tells; empty for any other
inline std::string details_of(const message* said) {
    if (const auto* const set = dynamic_cast<const property_set_message*>(said))
        return std::to_string(set->property_type()) + " " + as_text(set->old_value()) + " of " +
               short_name(set->old_owner()) + " -> " + as_text(set->new_value()) + " in " +
               short_name(set->real_owner());
    if (const auto* const gone = dynamic_cast<const property_delete_message*>(said))
        return std::to_string(gone->property_type()) + " lost " + as_text(gone->old_value());
    if (const auto* const mark = dynamic_cast<const property_set_not_inheritable_message*>(said))
        return std::to_string(mark->property_type()) + (mark->not_inheritable() ? " marked" : " unmarked");
    if (const auto* const add = dynamic_cast<const inherits_add_message*>(said))
        return "+ " + short_name(add->inherits_from());
    if (const auto* const cancel = dynamic_cast<const inherits_cancel_message*>(said))
        return "- " + short_name(cancel->inherits_from());
    if (const auto* const insert = dynamic_cast<const inherits_insert_message*>(said))
        return "+ " + short_name(insert->inherits_from()) + " at " + std::to_string(insert->pos());
    if (const auto* const order = dynamic_cast<const inherits_from_order_message*>(said))
        return short_name(order->inherits_from()) + " " + std::to_string(order->old_pos()) + " to " +
               std::to_string(order->new_pos());
    if (const auto* const replace = dynamic_cast<const inherits_replace_message*>(said))
        return short_name(replace->old_inherits_from()) + " by " + short_name(replace->inherits_from());
    return "";
}

/// \returns "number first|again name-of-object: details"
inline std::string inherit_line(message* said) {
    return std::to_string(said->type()) + (said->is_first_run() ? " first " : " again ") +
           short_name(said->object()) + ": " + details_of(said);
}

/// A model whose inheritance is listened to.
class inherit_world : public listening_world {
protected:
    inherit_world() { ears.line = inherit_line; }

    /// Puts a text under props::text, without anybody listening yet.
    void give(object* to, const std::string& value, u32 id = props::text) {
        ASSERT_TRUE(change([&] { return to->set_property(id, text(value)); }));
    }
    void link(object* from, object* base) {
        ASSERT_TRUE(change([&] { return from->add_inherits_from(base); }));
    }
    /// \returns the calls of hooks around changes since the last time, without those of reads and updates
    std::string hook_log() {
        std::string kept, line;
        for (std::istringstream log{hooks.take_log()}; std::getline(log, line);) {
            const int kind = std::stoi(line);
            const bool is_change = kind > 6 && kind != pre_children_get_semantic::kind &&
                                   kind != post_children_get_semantic::kind;
            if (is_change) kept += line + "\n";
        }
        return kept;
    }
    std::string bases_of(const object* of) const { return names_of(of->inherits_from_list(0)); }
};

} // namespace kelm::test
