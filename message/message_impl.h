// What all messages share: whom they speak of, their flags, and telling observers.
// What a message does to an object is told by its own class.
#pragma once

#include "message/silent_edit.h"
#include "message/telling.h"
#include "message/value_custody.h"
#include "util/free_list.h"
#include "util/process_state.h"

#include <kelm/message.h>

#include <utility>

namespace kelm {

/// The base of all messages.  The history owns those it keeps; the inverse messages of undo live on the stack.
/// A message names its public face before this one among its bases, where it can: its own fields then begin in the room
/// behind the flags.
class message_impl : public message, public pooled<free_list::recorded> {
public:
    message_impl(u32 type, silent_edit* about)
        : object_(about), type_(static_cast<u8>(type)), user_created_(!process().in_semantic) {}
    message_impl(const message_impl&) = delete;
    message_impl& operator=(const message_impl&) = delete;

    u32 type() const final { return type_; }
    kelm::object* object() const final { return object_; }
    bool is_first_run() const final { return first_run_; }
    bool is_user_created() const final { return user_created_; }

    virtual void set_first_run(bool first) { first_run_ = first; }
    /// Frees what the message owns in its present state.  The history calls it just before the message goes.
    virtual void release_values() {}
    /// Enters the values that the message owns, as those of the message `index` of a log that is being written.
    virtual void register_values(value_position_map&, u32 /*index*/) const {}
    /// \returns the value, or the element `sub_index` of it, that another message of a log shares; null when there is
    ///          none.  Borrowed.
    virtual abstract_property* get_value(int /*index*/, int /*sub_index*/) const { return nullptr; }
    /// \returns the custody of the value of that index, for a reader; null when there is none
    virtual value_custody* custody(int /*index*/) { return nullptr; }
    /// Takes a value that get_value() of another message gave; it stays that message's.
    virtual void set_value(int index, abstract_property* value) {
        if (value_custody* const into = custody(index)) into->borrow(value);
    }

    silent_edit& edit() const { return *object_; }
    bool is_undone() const { return undone_; }
    /// Speaks of `about` from now on; used while inheritors are told.
    void set_object(silent_edit* about) { object_ = about; }
    void set_user_created(bool created) { user_created_ = created; }
    /// \returns whether the history has it from a stream
    bool was_read() const { return was_read_; }
    void set_was_read() { was_read_ = true; }

protected:
    /// Tells the observers of the object that this is no first run.
    virtual void tell() {
        set_first_run(false);
        telling([this] { edit().as_subject().notify(this); });
    }
    /// Tells, with a message that nobody keeps, of the inverse of what was done.
    template <class Message, class... Arguments>
    static void tell_inverse(Arguments&&... arguments) {
        Message inverse(std::forward<Arguments>(arguments)...);
        static_cast<message_impl&>(inverse).tell();
    }
    void set_undone(bool undone) { undone_ = undone; }
    // A mark of the derived class's own, kept here where there is room for it.
    bool mark() const { return mark_; }
    void set_mark(bool on) { mark_ = on; }
    /// \returns whether a reader did not find the object: such a message changes and tells nothing
    bool is_lost() const { return !object_; }

private:
    silent_edit* object_;
    u8 type_;
    bool first_run_ : 1 = true;
    bool undone_ : 1 = false;
    bool user_created_ : 1;
    bool mark_ : 1 = false;
    bool was_read_ : 1 = false;
};

} // namespace kelm
