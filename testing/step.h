// One step of a history, as data: any part of a history can be played again without the rest.
// Playing a step is player.h, drawing one random_steps.h.
#pragma once

#include <kelm/property.h>
#include <kelm/types.h>

#include <compare>
#include <optional>
#include <string>
#include <vector>

namespace kelm::testing {

/// An object, told by who made it: the name stays the same when other steps are left out.
struct object_name {
    u32 maker = 0; ///< the number of the step that made it; 0 for the root
    u32 nth = 0;   ///< which of those that the step made, hooks included

    auto operator<=>(const object_name&) const = default; // NOLINT(modernize-use-nullptr): no 0 stands there
};

/// The kind of property<unsigned>, which is no data type of its own.
inline constexpr u32 unsigned_number = 0xFFFFFF00U;

/// A value that is yet to be made.
struct planned_value {
    u32 kind = data_type::none; ///< data type; "none" stands for no value
    std::string text;
    std::optional<object_name> target; ///< of a reference; none for null
    std::vector<planned_value> elements;

    bool operator==(const planned_value&) const = default;
};

/// What a step calls.
enum class action : u8 {
    begin,
    end,
    rollback,
    rollback_all,
    rollback_last,
    undo,
    redo,
    set_undo_levels, ///< to `position`, or to -1 for npos
    clear_history,
    // Edits; they are played inside a transaction.
    create_object,      ///< of type `id` below `object`
    delete_object,      ///< `object`, as in all that follow
    set_owner,          ///< to `other`
    add_child,          ///< to its own owner
    remove_child,       ///< from its owner
    set_child_position, ///< among the children of its owner
    set_property,       ///< `id` to `value`
    delete_property,
    refresh_property, ///< from `value` to `other_value`
    set_mark,         ///< against inheriting `id`, where `position` is not 0
    append_element,   ///< of `id`
    insert_element,
    set_element,
    move_element, ///< from `position` to `to`
    delete_element,
    add_base, ///< `other`
    insert_base,
    cancel_base,
    cancel_all_bases,
    replace_base, ///< at `position` by `other`
    move_base,
    attach, ///< `other` as an observer
    detach,
};

struct step {
    u32 number = 0; ///< its place in the history as it was drawn, from 1
    action what = action::begin;
    object_name object;
    object_name other;
    u32 id = 0;
    std::size_t position = 0;
    std::size_t to = 0;
    planned_value value;
    planned_value other_value;

    bool operator==(const step&) const = default;
};

} // namespace kelm::testing
