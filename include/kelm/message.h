// One recorded change, as the history keeps it and observers hear it; and the messages of transactions.
// The messages of values and of the graph are property_messages.h and structure_messages.h.
#pragma once

#include <kelm/export.h>
#include <kelm/io_references.h>
#include <kelm/types.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace kelm {

/// The numbers of the messages.
namespace message_type {
/// @{
/// The number of the messages whose class has this name, with "_message" behind it.
inline constexpr u32 model_close = 0;
inline constexpr u32 tran_begin = 1;
inline constexpr u32 tran_end = 2;
inline constexpr u32 tran_rollback = 3;
inline constexpr u32 obj_create = 4;
inline constexpr u32 obj_pre_delete = 5;
inline constexpr u32 obj_delete = 6;
inline constexpr u32 property_set = 7;
inline constexpr u32 property_set_vec_prop = 8;
inline constexpr u32 property_insert_vec_prop = 9;
inline constexpr u32 property_delete = 10;
inline constexpr u32 property_delete_vec_prop = 11;
inline constexpr u32 element_position_vec_prop = 12;
inline constexpr u32 property_set_not_inheritable = 13;
inline constexpr u32 child_add = 14;
inline constexpr u32 child_pre_remove = 15;
inline constexpr u32 child_remove = 16;
inline constexpr u32 child_order = 17;
inline constexpr u32 owner_set = 18;
inline constexpr u32 inherits_add = 19;
inline constexpr u32 inherits_cancel = 20;
inline constexpr u32 inherits_insert = 21;
inline constexpr u32 inherits_from_order = 22;
inline constexpr u32 inherits_replace = 23;
inline constexpr u32 observer_add = 24;
inline constexpr u32 observer_remove = 25;
inline constexpr u32 udp_add = 26;
inline constexpr u32 udp_remove = 27;
inline constexpr u32 udp_set_attribute_value = 28;
/// @}
inline constexpr u32 property_refresh_set = 29;    ///< in streams only: type() gives property_set
inline constexpr u32 property_refresh_delete = 30; ///< in streams only: type() gives property_delete
} // namespace message_type

/// One change.
///
/// The history owns what it keeps; an observer borrows what it hears, during the call only, and so does a
/// hook.  Objects that accessors give are borrowed as object.h tells, values are clones unless told.  An
/// object is null where a message was read from a stream and nobody has that object.
///
/// What is special about a change is told by the interface of its kind: message_cast<child_add_message>(what).
class KELM_EXPORT message {
public:
    /// \returns one of message_type
    virtual u32 type() const = 0;
    /// \returns what the message speaks of; for those of transactions and user-defined properties the model's
    ///          object side.  While an inheritor is told of a change, that inheritor.
    virtual kelm::object* object() const = 0;
    /// \returns false from the first redo on, and for what undo sends
    virtual bool is_first_run() const = 0;
    /// \returns false when a hook, or the library on behalf of another change, made it
    virtual bool is_user_created() const = 0;
    /// Replaces `out` by a description in words, for developers and lists of changes.
    ///
    /// \returns `out`
    virtual std::string& to_string(std::string& out) const = 0;
    /// Applies the change again and tells observers.  For the history alone, as are the next three.
    ///
    /// \returns true
    virtual bool redo() = 0;
    /// Takes the change back and tells observers, with a message of the inverse kind.
    ///
    /// \returns true
    virtual bool undo() = 0;
    /// Fills the fields of a message that has just been made, from the binary form, or from an element when one is
    /// given.  At the end of a stream fields stay as they are.
    ///
    /// \param in          null when there is an element
    /// \param earlier     the messages read before this one
    /// \param model       where ids of objects are looked up
    /// \param references  receives what object references in values wait for
    /// \param fixups      receives the values that other messages hold
    /// \param element     a `xercesc::DOMElement*` as void*: read instead of the stream
    /// \param version, minor_version  of the stream: the application's meta model when it was written
    /// \returns true
    virtual bool read(std::istream* in, std::vector<message*>& earlier, kelm::model* model,
                      io_reference_manager* references, value_fixup_map* fixups, void* element, int version,
                      int minor_version) = 0;
    /// Appends the message's own fields: docs/messages.md tells which.  Number, object and flag stand before them
    /// and are the business of whoever writes the log.
    ///
    /// \param out         null when there is an element
    /// \param positions   the values that messages of the same log own
    /// \param element     a `xercesc::DOMElement*` as void*: filled instead of the stream
    /// \param for_replay  writes new values in full, since another model will not have them
    /// \returns true
    virtual bool write(std::ostream* out, const value_position_map& positions, void* element,
                       bool for_replay) const = 0;
    virtual ~message() = default;
};

/// \returns the other face of the same message; null when it is of another kind, or null
template <class To, class From>
To* message_cast(From* from) {
    return dynamic_cast<To*>(from);
}

/// A transaction, or a level inside one, begins.  Observers of the model hear of the outermost.
class KELM_EXPORT tran_begin_message {
public:
    /// \returns null until the end has come
    virtual tran_end_message* end_message() const = 0;
    /// \returns 0 for an outermost transaction
    virtual u32 level() const = 0;
    /// \returns the number that the model has given it
    virtual u32 id() const = 0;
    /// \returns the name that model::begin_transaction was given; empty in what observers hear of an undo
    virtual std::string name() const = 0;
    virtual ~tran_begin_message() = default;
};

/// A transaction, or a level inside one, ends.
class KELM_EXPORT tran_end_message {
public:
    /// \returns null in what observers hear of an undo
    virtual tran_begin_message* begin_message() const = 0;
    /// \returns 0 for an outermost transaction
    virtual u32 level() const = 0;
    /// \returns the begin's id; 0 when there is no begin
    virtual u32 id() const = 0;

    // The application's own: kept and stored, never read by the library.

    /// \returns what was set; 1 at first
    virtual u32 processed_state() const = 0;
    /// Keeps a number; nothing is told or recorded.
    virtual void set_processed_state(u32 state) = 0;
    /// \returns what was set; empty at first
    virtual std::string processed_err_msg() const = 0;
    /// Keeps a text; nothing is told or recorded.
    virtual void set_processed_err_msg(const std::string& text) = 0;
    virtual ~tran_end_message() = default;
};

/// Told after the rollback of an outermost transaction, never stored.
class KELM_EXPORT tran_rollback_message {
public:
    /// \returns what was rolled back to, which goes behind the call
    virtual tran_begin_message* begin_message() const = 0;
    /// \returns 0
    virtual u32 level() const = 0;
    /// \returns the begin's id
    virtual u32 id() const = 0;
    /// \returns whether the transaction had been closed
    virtual bool was_closed() const = 0;
    virtual ~tran_rollback_message() = default;
};

/// Told before a model goes, never stored.
class KELM_EXPORT model_close_message {
public:
    /// \returns the model, which is whole as yet
    virtual kelm::model* model() const = 0;
    virtual ~model_close_message() = default;
};

} // namespace kelm
