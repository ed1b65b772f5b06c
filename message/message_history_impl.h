// The log of one model: the undo and the redo side in one.
// What a message does when it is undone is the message's business.
#pragma once

#include "message/message_list.h"

#include <kelm/delta.h>
#include <kelm/message_history.h>

#include <memory>
#include <vector>

namespace kelm {

/// Keeps messages, numbers levels, swallows transactions in which nothing happened, and limits how far undo reaches.
class message_history_impl final : public message_history, public subject_impl {
public:
    using messages = message_list;

    explicit message_history_impl(silent_edit& model_object) : model_object_(model_object) {}
    ~message_history_impl() override;

    bool attach(observer* who) override { return subject_impl::attach(who); }
    bool detach(observer* who) override { return subject_impl::detach(who); }

    void write_history(std::ostream* out, bool with_history, u32 transaction_count, void* element) override;
    void write_messages(void* element, std::ostream* out, u32 transaction_count, bool for_replay) override;
    /// Takes over, as what was done, messages that a reader has made; there is nothing else in the log.
    /// Such messages may know each other's values, whatever the order in which they go: what one of them owns outlives
    /// it until the last of them has gone.
    void adopt(std::vector<message*>& read);

    /// Takes back what is left of an undo or redo that got stuck halfway.  Comes first in all that changes the model,
    /// before anything is asked that the change depends on.
    /// \returns whether there was anything
    bool take_back_interrupted() { return interrupted_.count != 0 && take_back_rest(); }
    /// Has add_message() find room for a change that is about to be made, so that it cannot fail behind it.
    void make_room();
    /// Appends a message and ends the possibility of redo.
    /// \returns false for an end that closes an empty transaction, or none; else true
    bool add_message(std::unique_ptr<message_impl> what);

    bool can_undo() const;
    bool can_redo() const;
    // What an observer throws while the log is walked leaves the walk at its end, and memory that runs out for an edit
    // takes undo and redo back.  Where there is none for that either, the next walk, transaction or change does it
    // first.  A rollback that could not go on is gone on with by the next one.

    /// \returns the begin of what was undone, or null
    message* undo();
    /// \returns the end of what was redone, or null
    message* redo();
    /// Takes back the open transaction, or its innermost level.
    void rollback(bool all);
    /// Takes back the last closed transaction and drops it.
    void rollback_last();

    /// Sums up what came behind `stop`.  \returns null when that is nothing, and for a message that the log has not
    std::unique_ptr<delta> make_delta(const message* stop);

    void prune();
    void clear_undone();
    /// Drops everything.  The counts of undone and executed transactions stay.
    void clear();

    const messages& done() const { return messages_; }
    const messages& undone() const { return undone_messages_; }
    /// \returns whether the log still has a message that may have been dropped meanwhile
    bool holds(const message_impl& what) const;
    message_impl* last() const { return messages_.newest(); }
    /// \returns the end of a top-level transaction when that is the newest message, else null
    tran_end_message_impl* last_top_level_end() const;

    bool is_undoing() const { return undoing_; }
    bool is_redoing() const { return redoing_; }
    bool is_rolling_back() const { return rolling_back_; }
    /// \returns whether the newest message is in no closed top-level transaction and no walk is under way, or stuck
    bool in_transaction() const;
    /// \returns whether undo, redo or a rollback is under way: none of them runs inside another.  Also where one got
    ///          stuck halfway.
    bool is_walking() const { return walking_ || interrupted_.count != 0; }
    /// \returns whether a level is open that a rollback can take back
    bool transaction_open() const {
        return current_level_ >= 0 && !walking_ && !messages_.empty() && !last_top_level_end();
    }

    u32 trans_executed() const { return trans_executed_; }
    void set_trans_executed(u32 count) { trans_executed_ = count; }
    bool undo_disabled() const { return undo_disabled_; }
    u32 max_undo_levels() const { return max_undo_levels_; }
    void set_undo_levels(int n);

    /// While one lives, messages that are dropped stay readable: a mutator, a hook or an observer may still look.
    class in_use {
    public:
        explicit in_use(message_history_impl& history) : history_(history) { ++history_.depth_; }
        in_use(const in_use&) = delete;
        in_use& operator=(const in_use&) = delete;
        ~in_use() {
            if (history_.depth_ == 1 && !history_.graveyard_.empty()) history_.empty_graveyard();
            --history_.depth_;
        }

    private:
        message_history_impl& history_;
    };
    bool is_in_use() const { return depth_ != 0; }

private:
    bool close_empty_transaction(std::unique_ptr<message_impl> end);
    void drop_empty_transaction(tran_begin_message_impl& begin, std::unique_ptr<message_impl> end);
    bool close_level(tran_end_message_impl& end);
    /// Comes before messages are taken out to be dropped: then drop() cannot fail.  Where there is no memory they are
    /// freed at once, unless somebody may still look at them: then this throws.
    void make_room_for_dropped(std::size_t count);
    void drop(std::unique_ptr<message_impl> what);
    void empty_graveyard();
    void bury(message_impl& dead);
    /// Undo and redo: which way, and how many messages have gone it so far.
    struct steps {
        bool is_undo = false;
        std::size_t count = 0;
    };
    void undo_newest();
    void redo_next();
    void take_back(steps done);
    void give_up(const steps& done) noexcept;
    bool take_back_rest();
    std::unique_ptr<message_impl> undo_back_to(u32 level);
    std::unique_ptr<message_impl> undo_and_take_newest();
    void tell_rolled_back(std::unique_ptr<message_impl> begin, bool was_closed);

    silent_edit& model_object_;
    messages messages_;                                    // the undo side, oldest first
    messages undone_messages_;                             // the redo side; the next to redo is the last
    std::vector<std::unique_ptr<message_impl>> graveyard_; // dropped while in use
    std::vector<std::unique_ptr<abstract_property>> kept_values_; // of messages that were read, and are gone
    std::size_t read_count_ = 0;                                  // messages that were read, and are not gone
    u32 max_undo_levels_ = npos32;
    int undone_count_ = 0;
    int current_level_ = -1;
    u32 trans_executed_ = 0;
    u32 depth_ = 0;
    bool undo_disabled_ = false;
    bool walking_ = false; // undo, redo or a rollback is on the stack
    bool undoing_ = false;
    bool redoing_ = false;
    bool rolling_back_ = false;
    steps interrupted_; // of an undo or redo that could be neither finished nor taken back
};

} // namespace kelm
