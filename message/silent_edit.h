// What a message may do to an object: change its state, and tell nobody.
// The mutators that applications call build on the same edits and add hooks, recording and notification.
#pragma once

#include <kelm/object.h>
#include <kelm/subject.h>

#include <memory>
#include <vector>

namespace kelm {

class message_impl;

/// An inherited value at one moment.  The value is borrowed, good until the next change.
struct inherited_value {
    u32 id = 0;
    const abstract_property* value = nullptr;
    object* source = nullptr;
};

/// Every value that an object inherits at one moment, in the order of its type's properties.
using inherited_values = std::vector<inherited_value>;

/// The second storey of a change.  Every object of the library is one, so that the cast from object* is static.
/// Positions and identities come from histories that may have been read from a file: an edit that does not fit the
/// present state does nothing.
class silent_edit : public object {
public:
    /// \returns the own value, borrowed; null when there is none
    virtual abstract_property* own_value(u32 id) const = 0;

    // Values.  References of what enters are linked to their targets, those of what leaves are unlinked.
    // Where memory runs out an edit leaves everything as it was, also what it was to take over.
    /// \returns the former value, or null
    virtual std::unique_ptr<abstract_property> exchange_value(u32 id,
                                                              std::unique_ptr<abstract_property>& value) = 0;
    virtual std::unique_ptr<abstract_property> take_value(u32 id) = 0;

    /// Keeps a value that no message has, as long as the model.
    virtual void keep_lost_value(std::unique_ptr<abstract_property> value) = 0;

    // Elements of an own vector value.
    /// Puts `element` in and gives back in it what stood there; does nothing when there is no such element.
    virtual void exchange_element(u32 id, std::size_t position,
                                  std::unique_ptr<abstract_property>& element) = 0;
    /// Takes `element` over only when it can be put in.
    virtual void insert_element(u32 id, std::size_t position,
                                std::unique_ptr<abstract_property>& element) = 0;
    /// Takes out `wanted`, looked for at `position` first; null takes whatever stands there.
    virtual std::unique_ptr<abstract_property> take_element(u32 id, std::size_t position,
                                                            const abstract_property* wanted) = 0;
    /// An element that goes behind the end is left out.
    virtual void move_element(u32 id, std::size_t from, std::size_t to) = 0;

    virtual void mark_not_inheritable(u32 id, bool flag) = 0;

    // Children.  Inserting makes this object the owner.
    virtual void insert_child(object& child, std::size_t position) = 0;
    virtual void take_child(object& child) = 0;
    virtual void move_child(object& child, std::size_t position) = 0;
    virtual void set_owner_field(object* owner) = 0;

    // Bases and, in step with them, their inheritors.
    virtual void insert_base(object& base, std::size_t position) = 0;
    virtual void take_base(object& base, std::size_t position) = 0;
    virtual void exchange_base(object& base, object& former, std::size_t position) = 0;
    virtual void move_base(object& base, std::size_t position) = 0;
    virtual inherited_values inherited_now() const = 0;
    /// Tells observers, here and on inheritors, how the inherited values differ from `before`; with `with_deletes`
    /// also of those that are gone.  \returns false when an observer refused
    virtual bool tell_inherited_changes(const inherited_values& before, bool with_deletes,
                                        bool first_run) = 0;

    // Observers that are objects.
    virtual void attach_silently(observer& who, u32 id) = 0;
    virtual void detach_silently(observer& who, u32 id) = 0;

    // Life.
    virtual void set_state(u32 state) = 0;
    virtual void enter_id_map() = 0;
    virtual void leave_id_map() = 0;
    /// Frees the object.  Asked for by the message that has it when nothing can bring it back.
    virtual void destroy() = 0;

    // Telling.
    virtual subject& as_subject() = 0;
    /// Tells the inheritors that see a change of the property `id`.  \returns false when one of them refused
    virtual bool pass_to_inheritors(message_impl& said, u32 id) = 0;
};

/// \returns whether only the history has the object
inline bool is_deleted(const object& what) { return what.state() == state::deleted; }

inline silent_edit* edit_of(object* what) { return static_cast<silent_edit*>(what); }

} // namespace kelm
