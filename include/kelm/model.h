// One document: the root of an object tree with its ids, its meta model, its transactions and their history.
// A model is made by framework::create_object with type 1 and closed by deleting its object side.
#pragma once

#include <kelm/export.h>
#include <kelm/guid.h>
#include <kelm/types.h>

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

namespace kelm {

/// Ids and names of transactions.
using transaction_names = std::vector<std::pair<u32, std::string>>;

/// A document.
///
/// framework::create_object makes it with type 1, and framework::delete_object frees it with all its objects.
/// What it hands out is borrowed: objects, types and the history live as long as it does, messages as long as
/// the history keeps them, which new work, limits and rollbacks end.
///
/// Unless told, operations throw nothing of their own, but std::bad_alloc.  What observers of an undo, redo or
/// rollback throw comes out when it is complete.  Hooks and observers may call all operations, but undo, redo
/// and rollback do nothing while one of these runs.
class KELM_EXPORT model {
public:
    /// Replaces `out` by the identity of the document, which is stored with it.
    virtual void model_id(GUID& out) const = 0;
    /// \returns the model as the root object of its tree
    virtual object* as_object() = 0;
    /// \returns the types of this model: those of the application, and what users have added to them
    virtual kelm::meta_model* meta_model() = 0;

    /// Opens a transaction, or a level inside the open one.
    ///
    /// \returns null when an observer refused: the transaction is open all the same, unless that observer has
    ///          rolled it back
    /// \throws  std::runtime_error when the ids are used up; nothing is opened then
    /// Message: tran_begin_message; observers of the model hear it at the outermost level
    virtual tran_begin_message* begin_transaction(const std::string& name) = 0;
    /// Closes the innermost level.
    ///
    /// \returns null when nothing happened in it, when none was open, and when a hook refused: the transaction has
    ///          then been undone, and can be redone
    /// Hooks:   post_end_transaction_semantic of the model, at the outermost level
    /// Message: tran_end_message; observers of the model hear it at the outermost level, also when nothing
    ///          happened, those of the history at every level that is stored
    virtual tran_end_message* end_transaction() = 0;
    /// \param index  null, or receives the place in the history; left alone when there is none
    /// \returns the newest begin with that id; null when there is none
    virtual tran_begin_message* find_transaction(u32 id, std::size_t* index) const = 0;
    /// \returns the message at that place of the history, oldest first; null past the end
    virtual message* message_at(std::size_t index) const = 0;
    /// \returns how many messages the history keeps that are not undone
    virtual std::size_t message_count() const = 0;
    /// \returns the top-level begin behind `after`; with null, the first message if it is a begin; null for
    ///          the last
    virtual tran_begin_message* next_transaction(tran_begin_message* after) const = 0;
    /// \returns the top-level begin before `before`, and null when another message stands between the two;
    ///          with null, last_transaction()
    virtual tran_begin_message* previous_transaction(tran_begin_message* before) const = 0;
    /// \returns whether the newest message is part of no closed top-level transaction.  That is so inside a
    ///          transaction, and behind a change that was made outside any; never during undo, redo and rollback.
    virtual bool in_transaction() const = 0;
    /// \returns the newest top-level begin while in_transaction() is true; else last_transaction()
    virtual tran_begin_message* current_transaction() const = 0;
    /// Takes the open transaction back, with all its levels, and drops it.  Nothing without one.
    ///
    /// Message: to observers the inverse of each change, then tran_rollback_message, which is never stored
    virtual void rollback_transaction_all() = 0;
    /// Takes the innermost open level back and drops it.  Nothing without one.
    ///
    /// Message: to observers the inverse of each change; for the outermost level then tran_rollback_message
    virtual void rollback_transaction() = 0;
    /// Takes the last closed transaction back and drops it.  Nothing when the newest message is not its end.
    ///
    /// Message: to observers the inverse of each change, then tran_rollback_message
    virtual void rollback_last_transaction() = 0;

    /// \returns the name of the transaction that undo() would take back; empty without one
    virtual std::string undo_name() const = 0;
    /// \returns the name of the transaction that redo() would do again; empty without one
    virtual std::string redo_name() const = 0;
    /// Appends the undoable transactions, newest first.
    ///
    /// \param max  at most so many; 0 means all
    virtual void undo_names(transaction_names& out, std::size_t max) const = 0;
    /// Appends the transactions that can be redone, the next one first.
    ///
    /// \param max  at most so many; 0 means all
    virtual void redo_names(transaction_names& out, std::size_t max) const = 0;
    /// \returns whether the newest message ends a top-level transaction, and undo is on and its limit not used up
    virtual bool can_undo() const = 0;
    /// \returns whether there is a transaction that was undone, nothing has changed since, and undo is on
    virtual bool can_redo() const = 0;
    /// Takes the last top-level transaction back.  Nothing without one, and during undo, redo and rollback.
    ///
    /// Message: to observers the inverse of each change; none is stored.  No hooks of changes run
    virtual void undo() = 0;
    /// Does the transaction that was undone last again.  Nothing without one, and during undo, redo and rollback.
    ///
    /// Message: to observers each message once more; none is stored.  No hooks of changes run
    virtual void redo() = 0;
    /// \returns 0 when undo is off, -1 when there is no limit
    virtual int undo_levels() const = 0;
    /// Limits how many top-level transactions are kept; the oldest beyond are dropped as soon as one closes,
    /// and at once when the former limit was higher.
    ///
    /// \param n  0 turns undo off, and keeps one; -1 and below keep all
    virtual void set_undo_levels(int n) = 0;

    // What a stretch of the history comes to: delta.h.  None is given for a stretch that comes to nothing,
    // for one that begins with what the history does not have, and when hooks of reads had messages dropped
    // meanwhile.

    /// \param from  with its transaction; null stands for the first message, which itself is left out
    /// \returns what came of it and all behind it; empty for none
    /// Hooks:   those of reads
    /// Cost:    the messages of the stretch, and a read of each value that has changed
    virtual shared_ptr<delta> delta_since(tran_begin_message* from) = 0;
    /// \returns the begin that the newest message closes, at any level; null when that is no end
    virtual tran_begin_message* last_transaction() const = 0;
    /// \returns what the level or transaction that the newest message ends has come to, borrowed: it is kept
    ///          until the next begin, undo, redo or rollback.  Null for none, and when the newest message is
    ///          no end.
    /// Hooks:   those of reads, the first time
    virtual delta* last_delta() = 0;
    /// \param stop  borrowed; what came behind it counts
    /// \returns for delete_delta(); null for none
    /// Hooks:   those of reads
    virtual owned<delta*> make_delta(message* stop) = 0;
    /// \returns whether there is nothing to undo, or only a begin and its end
    virtual bool last_transaction_is_empty() const = 0;

    /// \returns the object with that id that is not deleted; null when there is none
    /// Cost:    two reads
    virtual object* find_object(const u32& id) const = 0;

    /// Reads what write() wrote, into a model that has just been made.  No hooks run but
    /// read_newer_model_semantic and post_model_load_semantic; post_load() is the application's to call.
    ///
    /// \param in       borrowed; null when there is an element
    /// \param element  a `xercesc::DOMElement*` as void*: read instead of the stream.  Null: the stream is read
    /// \returns false for a version newer than that of the types, for what ends early or tells what cannot be,
    ///          and when a hook refused; what was read until then stays
    virtual bool read(std::istream* in, void* element) = 0;
    /// Writes the model: docs/stream_format.md and docs/document_format.md tell what stands where.
    ///
    /// \param out                borrowed; null when there is an element
    /// \param with_history       so that undo goes on after reading
    /// \param transaction_count  the newest so many top-level transactions; 0 stands for all
    /// \param reset_modified     counts changes from here on
    /// \param element            filled instead; the stream then gets the messages of a log without a closed
    ///                           transaction
    /// \returns false inside a transaction, with nothing written; when the stream has failed, and for too
    ///          deep values
    virtual bool write(std::ostream* out, bool with_history, u32 transaction_count, bool reset_modified,
                       void* element) = 0;
    /// The same, as another model: with a new model_id, and unmodified from here on.
    ///
    /// \param out                as for write()
    /// \param with_history       as for write()
    /// \param transaction_count  as for write()
    /// \param element            as for write()
    /// \returns as write()
    virtual bool save_as_new(std::ostream* out, bool with_history, u32 transaction_count, void* element) = 0;

    /// A new model_id; all zero when the system has no random bytes to give.
    virtual void generate_model_id() = 0;
    /// \returns whether a top-level transaction was begun, undone or redone since the last save, on balance
    virtual bool is_modified() const = 0;
    /// Forgets all undo and redo, and frees the objects that only the history kept.  Tells nobody.
    virtual void clear_history() = 0;
    /// Has is_modified() count from here on.
    virtual void clear_modified() = 0;
    /// \returns whether undo() is running, as it is when observers hear of it
    virtual bool is_undoing() const = 0;
    /// \returns whether redo() is running, as it is when observers hear of it
    virtual bool is_redoing() const = 0;
    /// \returns whether a rollback is running, as it is when observers hear of it
    virtual bool is_rolling_back() const = 0;

    /// Appends the ids of all objects that are not deleted, ascending, the model's own 1 among them.
    ///
    /// \returns how many they are
    virtual std::size_t object_ids(std::vector<u32>& out) const = 0;
    /// Enters what a reader has built in the id map and calls object::post_read() for each object.
    ///
    /// \returns false when that of the model itself does; true from inside another post_load(), which does nothing
    virtual bool post_load() = 0;
    /// Keeps the present ids under the id of `what`, for the application.
    ///
    /// \returns false for null
    virtual bool remember_object_ids(object* what) = 0;
    /// \returns the id that was given last; 2 in a new model, whose first object gets 3
    virtual u32 last_object_id() const = 0;
    /// \returns the id that was given last; after an undo or redo, that of the newest transaction, so that
    ///          the ids of undone ones are given again
    virtual u32 last_transaction_id() const = 0;
    /// \returns the log of this model
    virtual message_history* history() = 0;

    /// Adds a property to a type of this model alone: docs/user_properties.md.
    ///
    /// \param type            the type that gets it, and no other
    /// \param name            of the property; one that the type has already is refused
    /// \param property_class  one of data_type; what users define by objects is always a string
    /// \param definition      of the property; may be empty
    /// \param id              0 takes the next one
    /// \returns the property, borrowed; null when the type is unknown, or has a property of that name or
    ///          declares the id
    /// \throws  std::runtime_error when the ids are used up
    /// Message: udp_add_message, which nobody is told of
    virtual meta_property* add_user_defined_property(u32 type, const std::string& name, u32 property_class,
                                                     const std::string& definition, u32 id) = 0;
    /// Gives a user-defined property of this model an attribute.
    ///
    /// \param value  borrowed; cloned, each reference in it as the text of its target
    /// \returns false for null, and for a property that was not added to this model
    /// Message: udp_set_attribute_value_message, which nobody is told of
    virtual bool set_user_defined_property_attribute(meta_object* type, meta_property* which, u32 attribute,
                                                     const abstract_property& value) = 0;
    /// Takes the property from the type, and its value from every object of exactly that type, by
    /// delete_property().
    ///
    /// \returns false for a property that was not added to this model, and when a deletion was refused
    /// Hooks:   those of each delete_property()
    /// Message: those of each delete_property(), then udp_remove_message, which nobody is told of
    /// Cost:    linear in the objects of the model
    virtual bool remove_user_defined_property(u32 type, u32 id) = 0;

    virtual ~model() = default;
};

} // namespace kelm
