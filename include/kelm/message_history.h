// The log of one model as others see it.
// Undo, redo and rollback are operations of the model.
#pragma once

#include <kelm/export.h>
#include <kelm/io_references.h>
#include <kelm/types.h>

#include <iosfwd>
#include <vector>

namespace kelm {

/// Tells its observers of each end of a transaction, at every level, that is stored.
class KELM_EXPORT message_history {
public:
    /// \param who  borrowed: detach it before it dies
    /// \returns false for null, and when it is attached already
    virtual bool attach(observer* who) = 0;
    /// \returns false when it was not attached
    virtual bool detach(observer* who) = 0;
    /// Writes one byte, 0 or 1, or, into an element, nothing or an element; with history then counts and messages.
    ///
    /// \param out                borrowed; its state tells of a failure
    /// \param with_history       false writes that there is none
    /// \param transaction_count  the newest so many top-level transactions; 0 stands for all
    /// \param element            filled instead of the stream; null: the stream is written
    virtual void write_history(std::ostream* out, bool with_history, u32 transaction_count,
                               void* element) = 0;
    /// Writes the objects that the range deleted, then its messages.
    ///
    /// \param element            filled instead of the stream; null: the stream is written
    /// \param out                borrowed; its state tells of a failure
    /// \param transaction_count  the newest so many top-level transactions; 0 stands for all
    /// \param for_replay  leaves out what hooks did, and writes new values in full: read_transactions() can
    ///                    then perform the log on another model.  The number of messages that is written
    ///                    counts them all.
    virtual void write_messages(void* element, std::ostream* out, u32 transaction_count, bool for_replay) = 0;
    /// Reads what write_messages() wrote.
    ///
    /// \param element     what write_messages() filled, read instead of `in`; null: `in` is read
    /// \param in          borrowed; its state tells of a failure
    /// \param messages    receives the messages; the caller owns them
    /// \param references  receives what waits to be resolved
    /// \param model       what the log speaks of, or is performed on.  A replay gives new objects the model's
    ///                    next ids: a log fits a model whose counters stand where those of its own stood
    /// \param version, minor_version  of the stream: the application's meta model when it was written
    /// \param deleted     receives the deleted objects, which belong to `model`; without `replay` their ids
    ///                    lead to them from now on
    /// \param replay      performs each message on `model` as soon as it has been read.  A whole list that
    ///                    was set is performed as it is today, and the changes of its elements after it
    /// \returns false when a replay failed, with its transaction left open: rolling it back is the caller's;
    ///          else true, also for a stream that ends early, which the state of `in` tells
    ///
    /// The messages name values and objects of `model`: once it has changed they may only be freed, not looked at.
    static bool read_transactions(void* element, std::istream& in, std::vector<message*>& messages,
                                  io_reference_manager& references, model* model, int version,
                                  int minor_version, std::vector<object*>& deleted, bool replay);
    virtual ~message_history() = default;
};

} // namespace kelm
