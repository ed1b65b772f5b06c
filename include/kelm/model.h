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

/// A transaction's id and name.
using transaction_names = std::vector<std::pair<u32, std::string>>;

/// A document.  Messages and transactions that it hands out are borrowed and live as long as the history keeps them.
class KELM_EXPORT model {
public:
    virtual void model_id(GUID& out) const = 0;
    /// \returns the model as the root object of its tree
    virtual object* as_object() = 0;
    /// \returns the types of this model: those of the application, and what users have added to them
    virtual kelm::meta_model* meta_model() = 0;

    /// Opens a transaction, or a level inside the open one.
    /// \returns null when an observer refused: the transaction is open all the same
    /// \throws  std::runtime_error when the ids are used up
    virtual tran_begin_message* begin_transaction(const std::string& name) = 0;
    /// Closes the innermost level.
    /// \returns null when nothing happened in it, when none was open, and when a hook refused: the transaction has
    ///          then been undone
    virtual tran_end_message* end_transaction() = 0;
    /// \returns the newest begin with that id, and its index in the history; null when there is none
    virtual tran_begin_message* find_transaction(u32 id, std::size_t* index) const = 0;
    /// \returns null past the end
    virtual message* message_at(std::size_t index) const = 0;
    virtual std::size_t message_count() const = 0;
    /// \returns the top-level begin behind `after`; with null, the first message; null for the last
    virtual tran_begin_message* next_transaction(tran_begin_message* after) const = 0;
    /// \returns the top-level begin before `before`; with null, the begin that the last message closes
    virtual tran_begin_message* previous_transaction(tran_begin_message* before) const = 0;
    /// \returns whether the newest message is part of no closed top-level transaction.  That is so inside a
    ///          transaction, and behind a change that was made outside any; never during undo, redo and rollback.
    virtual bool in_transaction() const = 0;
    virtual tran_begin_message* current_transaction() const = 0;
    virtual void rollback_transaction_all() = 0;
    virtual void rollback_transaction() = 0;
    /// Undoes the last closed transaction and drops it.
    virtual void rollback_last_transaction() = 0;

    virtual std::string undo_name() const = 0;
    virtual std::string redo_name() const = 0;
    /// Appends the undoable transactions, newest first, at most `max`; 0 means all.
    virtual void undo_names(transaction_names& out, std::size_t max) const = 0;
    virtual void redo_names(transaction_names& out, std::size_t max) const = 0;
    virtual bool can_undo() const = 0;
    virtual bool can_redo() const = 0;
    virtual void undo() = 0;
    virtual void redo() = 0;
    /// \returns 0 when undo is off, -1 when there is no limit
    virtual int undo_levels() const = 0;
    virtual void set_undo_levels(int n) = 0;

    // What a stretch of the history comes to: delta.h.  None is given for a stretch that comes to nothing, for one that
    // begins with what the history does not have, and when hooks of reads had messages dropped meanwhile.

    /// \param from  with its transaction; null stands for the first message, which itself is left out
    /// \returns what came of it and all behind it; empty for none
    virtual shared_ptr<delta> delta_since(tran_begin_message* from) = 0;
    virtual tran_begin_message* last_transaction() const = 0;
    /// \returns what the level or transaction that the newest message ends has come to, borrowed: it is kept until the
    ///          next begin, undo, redo or rollback.  Null for none, and when the newest message is no end.
    virtual delta* last_delta() = 0;
    /// \param stop  borrowed; what came behind it counts
    /// \returns for delete_delta(); null for none
    virtual owned<delta*> make_delta(message* stop) = 0;
    virtual bool last_transaction_is_empty() const = 0;

    /// \returns the object with that id that is not deleted; null when there is none
    virtual object* find_object(const u32& id) const = 0;

    /// Reads what write() wrote, into a model that has just been made.  No hooks run but read_newer_model_semantic and
    /// post_model_load_semantic; post_load() is the application's to call.
    /// \param element  a `xercesc::DOMElement*` as void*: read instead of the stream.  Null: the stream is read
    /// \returns false for a version newer than that of the types, for what ends early or tells what cannot be,
    ///          and when a hook refused; what was read until then stays
    virtual bool read(std::istream* in, void* element) = 0;
    /// Writes the model: docs/stream_format.md and docs/document_format.md tell what stands where.
    /// \param with_history       so that undo goes on after reading
    /// \param transaction_count  the newest so many top-level transactions; 0 stands for all
    /// \param reset_modified     counts changes from here on
    /// \param element            filled instead; the stream then gets the messages of a log without a closed transaction
    /// \returns false inside a transaction, with nothing written; when the stream has failed, and for too deep values
    virtual bool write(std::ostream* out, bool with_history, u32 transaction_count, bool reset_modified,
                       void* element) = 0;
    /// The same, as another model: with a new model_id, and unmodified from here on.
    virtual bool save_as_new(std::ostream* out, bool with_history, u32 transaction_count, void* element) = 0;

    /// A new model_id; all zero when the system has no random bytes to give.
    virtual void generate_model_id() = 0;
    /// \returns whether a top-level transaction was begun, undone or redone since the last save, on balance
    virtual bool is_modified() const = 0;
    /// Forgets all undo and redo.
    virtual void clear_history() = 0;
    virtual void clear_modified() = 0;
    virtual bool is_undoing() const = 0;
    virtual bool is_redoing() const = 0;
    virtual bool is_rolling_back() const = 0;

    /// Appends all ids, ascending.  \returns how many
    virtual std::size_t object_ids(std::vector<u32>& out) const = 0;
    /// Enters what a reader has built in the id map and tells each object.
    virtual bool post_load() = 0;
    /// Keeps the present ids under the id of `what`, for the application.
    virtual bool remember_object_ids(object* what) = 0;
    virtual u32 last_object_id() const = 0;
    virtual u32 last_transaction_id() const = 0;
    virtual message_history* history() = 0;

    /// Adds a property to a type of this model alone.  An id of 0 takes the next one.
    /// \returns null when the type is unknown or has a property of that name
    /// \throws  std::runtime_error when the ids are used up
    virtual meta_property* add_user_defined_property(u32 type, const std::string& name, u32 property_class,
                                                     const std::string& definition, u32 id) = 0;
    virtual bool set_user_defined_property_attribute(meta_object* type, meta_property* which, u32 attribute,
                                                     const abstract_property& value) = 0;
    virtual bool remove_user_defined_property(u32 type, u32 id) = 0;

    virtual ~model() = default;
};

} // namespace kelm
