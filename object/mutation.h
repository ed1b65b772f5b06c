// The road of every change, once: hooks, change, message, history, notification, hooks.
// What is special about a change is told by its row.
#pragma once

#include "message/message_history_impl.h"
#include "object/inheritor_walk.h"
#include "object/model_impl.h"
#include "object/object_impl.h"

#include <concepts>
#include <memory>

namespace kelm {

/// What a row's test() has come to.
enum class step {
    go_on,         ///< make the change, and record it
    nothing_to_do, ///< nothing changed, or nothing that is recorded
    refuse,        ///< the operation does not fit
    failed         ///< a mutation inside this one was refused, and has done what follows
};

/// A row holds the object, the arguments, and what the change brings to light on the way.
template <class Row>
concept mutation_row = requires(Row& row, object_impl& at, message_impl& said) {
    { row.self } -> std::same_as<object_impl&>;
    { row.pre(at) } -> std::same_as<bool>;  // hooks before, at the object or an inheritor
    { row.post(at) } -> std::same_as<bool>; // hooks behind
    { row.test() } -> std::same_as<step>;   // finds out what is to be done
    { row.message() } -> std::convertible_to<std::unique_ptr<message_impl>>; // of a change yet to be made
    row.change(said); // makes it, all or nothing, and gives the message what left the object
    { row.stops_when_deleted() } -> std::same_as<bool>;
    { row.pass(said) } -> std::same_as<bool>; // tells inheritors
    { Row::reaches_inheritors } -> std::convertible_to<bool>;
};

/// Takes one change along its whole road.
/// A change stands only with its message: where memory runs out there is neither.
/// \returns false when a hook or the test refused: the open level is then rolled back; and when an observer did:
///          nothing is then taken back
template <mutation_row Row>
bool mutate(Row&& row) {
    object_impl& self = row.self;
    if (!self.owning_model()) return false; // a bare object is its reader's to fill
    message_history_impl& history = self.owning_model()->log();
    const message_history_impl::in_use guard{history};
    history.take_back_interrupted();

    const auto everywhere = [&](auto&& hooks) {
        if (!hooks(self)) return false;
        if constexpr (std::remove_cvref_t<Row>::reaches_inheritors)
            return for_each_seeing_inheritor(self, row.id, row.origin(), hooks);
        else
            return true;
    };
    if (!everywhere([&](object_impl& at) { return row.pre(at); })) return self.refuse();
    if (self.is_deleted() && row.stops_when_deleted()) return true;
    self.keep_if_deleted();
    switch (row.test()) {
    case step::go_on: break;
    case step::nothing_to_do: return true;
    case step::refuse: return self.refuse();
    case step::failed: return false;
    }

    std::unique_ptr<message_impl> message = row.message();
    message_impl& said = *message; // stays readable while the guard lives, whatever becomes of it
    history.make_room();
    row.change(said);
    history.add_message(std::move(message));
    if (!self.notify(&said) || !row.pass(said)) return false;
    if constexpr (requires { row.settle(); })
        if (!row.settle()) return false;
    return everywhere([&](object_impl& at) { return row.post(at); }) || self.refuse();
}

/// What the changes of a property share: inheritors see them, and a deleted object takes none.
struct property_row {
    static constexpr bool reaches_inheritors = true;
    object_impl& self;
    u32 id;

    object_impl* origin() const { return &self; }
    bool stops_when_deleted() const { return true; }
    bool pass(message_impl& said) const { return self.pass_to_inheritors(said, id); }
};

/// What the changes of the tree share: nobody inherits them.
struct structure_row {
    static constexpr bool reaches_inheritors = false;
    object_impl& self;

    bool pass(message_impl&) const { return true; }
};

} // namespace kelm
