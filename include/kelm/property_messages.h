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

class KELM_EXPORT property_set_message : public virtual property_change_message {
public:
    /// \returns a clone of the value as it is now: elements may have changed since
    virtual value_ptr new_value() const = 0;
    /// \returns the former effective value; empty when there was none
    virtual value_ptr old_value() const = 0;
    /// \returns where the former value came from: the object itself, a base, or null
    virtual kelm::object* old_owner() const = 0;
};

class KELM_EXPORT property_delete_message : public virtual property_change_message {
public:
    virtual value_ptr old_value() const = 0;
};

class KELM_EXPORT property_set_vec_prop_message : public virtual property_change_message {
public:
    virtual value_ptr new_value() const = 0;
    virtual value_ptr old_value() const = 0;
    virtual u32 pos() const = 0;
};

class KELM_EXPORT property_insert_vec_prop_message : public virtual property_change_message {
public:
    virtual value_ptr value() const = 0;
    virtual u32 pos() const = 0;
    /// \returns the element itself, borrowed
    virtual const abstract_property* raw_value() const = 0;
};

class KELM_EXPORT property_delete_vec_prop_message : public virtual property_change_message {
public:
    virtual value_ptr value() const = 0;
    virtual u32 pos() const = 0;
};

class KELM_EXPORT element_position_vec_prop_message : public virtual property_change_message {
public:
    virtual u32 old_pos() const = 0;
    virtual u32 new_pos() const = 0;
};

class KELM_EXPORT property_set_not_inheritable_message {
public:
    virtual bool not_inheritable() const = 0;
    virtual u32 property_type() const = 0;
    virtual ~property_set_not_inheritable_message() = default;
};

} // namespace kelm
