// What messages of changed values tell: the read accessors of each kind.
// The values they hand out are clones.
#pragma once

#include <kelm/message.h>

namespace kelm {

/// Shared by the six messages of a value.
class KELM_EXPORT property_change_message {
public:
    /// \returns the property's id
    virtual u32 property_type() const = 0;
    /// \returns the object in which the value lies, also while an inheritor is told
    virtual kelm::object* real_owner() const = 0;
    virtual ~property_change_message() = default;
};

/// A value was set on an object, or an effective value changed by other means.
class KELM_EXPORT property_set_message : public virtual property_change_message {
public:
    /// \returns a clone of the value as it is now: elements may have changed since
    virtual value_ptr new_value() const = 0;
    /// \returns the former effective value; empty when there was none
    virtual value_ptr old_value() const = 0;
    /// \returns where the former value came from: the object itself, a base, or null
    virtual kelm::object* old_owner() const = 0;
};

/// An object lost its own value, or an effective value went by other means.
class KELM_EXPORT property_delete_message : public virtual property_change_message {
public:
    /// \returns the value that has gone
    virtual value_ptr old_value() const = 0;
};

/// An element of an own vector was replaced.
class KELM_EXPORT property_set_vec_prop_message : public virtual property_change_message {
public:
    /// \returns the element that came
    virtual value_ptr new_value() const = 0;
    /// \returns the element that went
    virtual value_ptr old_value() const = 0;
    /// \returns its place in the vector
    virtual u32 pos() const = 0;
};

/// An element was put into an own vector.
class KELM_EXPORT property_insert_vec_prop_message : public virtual property_change_message {
public:
    /// \returns the element
    virtual value_ptr value() const = 0;
    /// \returns the place that was asked for: past the end, the vector has not taken the element
    virtual u32 pos() const = 0;
    /// \returns the element itself, borrowed from the vector, or from the message once it is undone
    virtual const abstract_property* raw_value() const = 0;
};

/// An element was taken out of an own vector.
class KELM_EXPORT property_delete_vec_prop_message : public virtual property_change_message {
public:
    /// \returns the element
    virtual value_ptr value() const = 0;
    /// \returns the place that it had
    virtual u32 pos() const = 0;
};

/// An element of an own vector was moved.
class KELM_EXPORT element_position_vec_prop_message : public virtual property_change_message {
public:
    /// \returns the place that it had
    virtual u32 old_pos() const = 0;
    /// \returns its place in the list without it
    virtual u32 new_pos() const = 0;
};

/// An object refuses to inherit a property, or allows it again.
class KELM_EXPORT property_set_not_inheritable_message {
public:
    /// \returns true when it refuses
    virtual bool not_inheritable() const = 0;
    /// \returns the property's id
    virtual u32 property_type() const = 0;
    virtual ~property_set_not_inheritable_message() = default;
};

} // namespace kelm
