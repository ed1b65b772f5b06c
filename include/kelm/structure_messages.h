// What messages of the graph tell: objects that come and go, children, owners, bases, observers, user properties.
// Positions of children count inside the run of the child's type.
#pragma once

#include <kelm/message.h>

namespace kelm {

class KELM_EXPORT obj_create_message {
public:
    virtual kelm::object* owner() const = 0;
    /// \returns the type as a stream told it; 0 for a message that was not read from one
    virtual u32 object_type() const = 0;
    virtual ~obj_create_message() = default;
};

class KELM_EXPORT obj_pre_delete_message {
public:
    virtual kelm::object* owner() const = 0;
    virtual ~obj_pre_delete_message() = default;
};

class KELM_EXPORT obj_delete_message {
public:
    virtual kelm::object* owner() const = 0;
    virtual ~obj_delete_message() = default;
};

/// For applications that tell of copies: the library neither makes nor stores one.
class KELM_EXPORT clone_object_message {
public:
    virtual kelm::object* source() const = 0;
    virtual kelm::object* copy() const = 0;
    virtual ~clone_object_message() = default;
};

class KELM_EXPORT child_add_message {
public:
    virtual kelm::object* child() const = 0;
    virtual u32 pos() const = 0;
    virtual ~child_add_message() = default;
};

class KELM_EXPORT child_pre_remove_message {
public:
    virtual kelm::object* child() const = 0;
    virtual ~child_pre_remove_message() = default;
};

class KELM_EXPORT child_remove_message {
public:
    virtual kelm::object* child() const = 0;
    virtual u32 pos() const = 0;
    virtual ~child_remove_message() = default;
};

class KELM_EXPORT child_order_message {
public:
    virtual kelm::object* child() const = 0;
    virtual u32 new_pos() const = 0;
    virtual u32 old_pos() const = 0;
    virtual ~child_order_message() = default;
};

class KELM_EXPORT owner_set_message {
public:
    virtual kelm::object* new_owner() const = 0;
    virtual kelm::object* old_owner() const = 0;
    virtual ~owner_set_message() = default;
};

class KELM_EXPORT inherits_add_message {
public:
    virtual kelm::object* inherits_from() const = 0;
    virtual ~inherits_add_message() = default;
};

class KELM_EXPORT inherits_cancel_message {
public:
    virtual kelm::object* inherits_from() const = 0;
    virtual ~inherits_cancel_message() = default;
};

class KELM_EXPORT inherits_insert_message {
public:
    virtual kelm::object* inherits_from() const = 0;
    virtual u32 pos() const = 0;
    virtual ~inherits_insert_message() = default;
};

class KELM_EXPORT inherits_from_order_message {
public:
    virtual kelm::object* inherits_from() const = 0;
    virtual u32 new_pos() const = 0;
    virtual u32 old_pos() const = 0;
    virtual ~inherits_from_order_message() = default;
};

class KELM_EXPORT inherits_replace_message {
public:
    virtual kelm::object* inherits_from() const = 0;
    virtual kelm::object* old_inherits_from() const = 0;
    virtual ~inherits_replace_message() = default;
};

class KELM_EXPORT observer_add_message {
public:
    virtual kelm::observer* observer() const = 0;
    virtual ~observer_add_message() = default;
};

class KELM_EXPORT observer_remove_message {
public:
    virtual kelm::observer* observer() const = 0;
    virtual ~observer_remove_message() = default;
};

class KELM_EXPORT udp_add_message {
public:
    virtual meta_object* owner_meta_type() const = 0;
    virtual u32 udp_type() const = 0;
    virtual ~udp_add_message() = default;
};

class KELM_EXPORT udp_remove_message {
public:
    virtual meta_object* owner_meta_type() const = 0;
    virtual u32 udp_type() const = 0;
    virtual ~udp_remove_message() = default;
};

class KELM_EXPORT udp_set_attribute_value_message {
public:
    virtual meta_object* owner_meta_type() const = 0;
    virtual u32 udp_type() const = 0;
    virtual u32 udp_att() const = 0;
    virtual value_ptr new_value() const = 0;
    virtual value_ptr old_value() const = 0;
    virtual ~udp_set_attribute_value_message() = default;
};

} // namespace kelm
