// What messages of the graph tell: objects that come and go, children, owners, bases, observers, user properties.
// Positions of children count inside the run of the child's type.
#pragma once

#include <kelm/message.h>

namespace kelm {

/// An object was made; message::object() is the object.
class KELM_EXPORT obj_create_message {
public:
    /// \returns the owner that it was made for
    virtual kelm::object* owner() const = 0;
    /// \returns the type as a stream told it; 0 for a message that was not read from one
    virtual u32 object_type() const = 0;
    virtual ~obj_create_message() = default;
};

/// An object is about to be deleted: it and all below it are whole as yet.
class KELM_EXPORT obj_pre_delete_message {
public:
    /// \returns its owner
    virtual kelm::object* owner() const = 0;
    virtual ~obj_pre_delete_message() = default;
};

/// An object was deleted; observers hear it while the object is still found by its id.
class KELM_EXPORT obj_delete_message {
public:
    /// \returns the owner that it had when the deletion began
    virtual kelm::object* owner() const = 0;
    virtual ~obj_delete_message() = default;
};

/// For applications that tell of copies: the library neither makes nor stores one.
class KELM_EXPORT clone_object_message {
public:
    /// \returns what was copied
    virtual kelm::object* source() const = 0;
    /// \returns what came of it
    virtual kelm::object* copy() const = 0;
    virtual ~clone_object_message() = default;
};

/// A child came; message::object() is the owner, here as in the next three.
class KELM_EXPORT child_add_message {
public:
    /// \returns the child
    virtual kelm::object* child() const = 0;
    /// \returns its place
    virtual u32 pos() const = 0;
    virtual ~child_add_message() = default;
};

/// A child is about to be deleted.
class KELM_EXPORT child_pre_remove_message {
public:
    /// \returns the child
    virtual kelm::object* child() const = 0;
    virtual ~child_pre_remove_message() = default;
};

/// A child went.
class KELM_EXPORT child_remove_message {
public:
    /// \returns the child, which may be deleted by now
    virtual kelm::object* child() const = 0;
    /// \returns the place that it had; npos32 when it stood in no list
    virtual u32 pos() const = 0;
    virtual ~child_remove_message() = default;
};

/// A child was put to another place.
class KELM_EXPORT child_order_message {
public:
    /// \returns the child
    virtual kelm::object* child() const = 0;
    /// \returns its place, counted without it
    virtual u32 new_pos() const = 0;
    /// \returns the place that it had; for one that was out of the list, the end
    virtual u32 old_pos() const = 0;
    virtual ~child_order_message() = default;
};

/// An object has another owner; the messages of the two lists stand before this one.
class KELM_EXPORT owner_set_message {
public:
    /// \returns the owner that it has
    virtual kelm::object* new_owner() const = 0;
    /// \returns the owner that it had
    virtual kelm::object* old_owner() const = 0;
    virtual ~owner_set_message() = default;
};

/// A base came to the end of the list, or was added once more where it stood; message::object() is who
/// inherits, here as in the next four.
class KELM_EXPORT inherits_add_message {
public:
    /// \returns the base
    virtual kelm::object* inherits_from() const = 0;
    virtual ~inherits_add_message() = default;
};

/// A base went.
class KELM_EXPORT inherits_cancel_message {
public:
    /// \returns the base
    virtual kelm::object* inherits_from() const = 0;
    virtual ~inherits_cancel_message() = default;
};

/// A base came to a place in the list.
class KELM_EXPORT inherits_insert_message {
public:
    /// \returns the base
    virtual kelm::object* inherits_from() const = 0;
    /// \returns its place
    virtual u32 pos() const = 0;
    virtual ~inherits_insert_message() = default;
};

/// A base was put to another place in the list.
class KELM_EXPORT inherits_from_order_message {
public:
    /// \returns the base
    virtual kelm::object* inherits_from() const = 0;
    /// \returns its place
    virtual u32 new_pos() const = 0;
    /// \returns the place that it had
    virtual u32 old_pos() const = 0;
    virtual ~inherits_from_order_message() = default;
};

/// A base took the place of another.
class KELM_EXPORT inherits_replace_message {
public:
    /// \returns the base that came
    virtual kelm::object* inherits_from() const = 0;
    /// \returns the one that went
    virtual kelm::object* old_inherits_from() const = 0;
    virtual ~inherits_replace_message() = default;
};

/// An object observes another, which message::object() is.  Recorded, and never told.
class KELM_EXPORT observer_add_message {
public:
    /// \returns who observes; null when it was read from a stream and is not there
    virtual kelm::observer* observer() const = 0;
    virtual ~observer_add_message() = default;
};

/// An object no longer observes another, which message::object() is.  Recorded, and never told.
class KELM_EXPORT observer_remove_message {
public:
    /// \returns who observed; null when it was read from a stream and is not there
    virtual kelm::observer* observer() const = 0;
    virtual ~observer_remove_message() = default;
};

/// A type of the model has a new property.  Recorded, and never told.
class KELM_EXPORT udp_add_message {
public:
    /// \returns the type, borrowed; null for one that a stream names and the model does not know
    virtual meta_object* owner_meta_type() const = 0;
    /// \returns the property's id
    virtual u32 udp_type() const = 0;
    virtual ~udp_add_message() = default;
};

/// A type of the model has lost a property.  Recorded, and never told.
class KELM_EXPORT udp_remove_message {
public:
    /// \returns the type, borrowed; null for one that a stream names and the model does not know
    virtual meta_object* owner_meta_type() const = 0;
    /// \returns the property's id
    virtual u32 udp_type() const = 0;
    virtual ~udp_remove_message() = default;
};

/// An attribute of a type's property was set.  Recorded, and never told.
class KELM_EXPORT udp_set_attribute_value_message {
public:
    /// \returns the type, borrowed; null for one that a stream names and the model does not know
    virtual meta_object* owner_meta_type() const = 0;
    /// \returns the property's id
    virtual u32 udp_type() const = 0;
    /// \returns the attribute's id
    virtual u32 udp_att() const = 0;
    /// \returns what was set
    virtual value_ptr new_value() const = 0;
    /// \returns the value that it had; empty when there was none
    virtual value_ptr old_value() const = 0;
    virtual ~udp_set_attribute_value_message() = default;
};

} // namespace kelm
