// Rollback: taking back a level, an open transaction, or the last closed one, and dropping it.
// What is rolled back cannot be redone.
#include "message/lifetime_messages.h"
#include "message/message_history_impl.h"
#include "util/scoped_mark.h"

namespace kelm {

void message_history_impl::rollback(bool all) {
    process().in_semantic = false;
    take_back_interrupted();
    if (!transaction_open()) return;
    const in_use guard{*this};
    const u32 target = all ? 0 : static_cast<u32>(current_level_);
    const scoped_mark walk{walking_};
    const scoped_mark mark{rolling_back_};
    const telling_walk told;
    std::unique_ptr<message_impl> begin = undo_back_to(target);
    if (begin && target == 0) {
        tell_rolled_back(std::move(begin), false);
    } else if (begin) {
        current_level_ = static_cast<int>(target) - 1;
        drop(std::move(begin));
    }
    told.end();
}

void message_history_impl::rollback_last() {
    take_back_interrupted();
    if (is_walking() || !last_top_level_end()) return;
    const in_use guard{*this};
    const scoped_mark walk{walking_};
    const scoped_mark mark{rolling_back_};
    const telling_walk told;
    std::unique_ptr<message_impl> begin = undo_back_to(0);
    if (begin) tell_rolled_back(std::move(begin), true);
    told.end();
}

/// Undoes and drops messages, the newest first, up to the begin of `level`.  \returns that begin, or null when the
/// log ran out.  Where it cannot go on, the level is the one that is open then.
std::unique_ptr<message_impl> message_history_impl::undo_back_to(u32 level) {
    int open = current_level_;
    try {
        while (!messages_.empty()) {
            std::unique_ptr<message_impl> gone = undo_and_take_newest();
            if (!gone) continue;
            if (const auto* const end = as_end(gone.get())) open = static_cast<int>(end->level());
            if (const auto* const begin = as_begin(gone.get())) {
                if (begin->level() == level) return gone;
                open = static_cast<int>(begin->level()) - 1;
            }
            drop(std::move(gone));
        }
    } catch (...) {
        if (!messages_.empty()) current_level_ = open; // else who was told has had the history forgotten
        throw;
    }
    return nullptr;
}

/// \returns the message; null when who heard of it has had the history forgotten
std::unique_ptr<message_impl> message_history_impl::undo_and_take_newest() {
    make_room_for_dropped(1); // also for a begin
    message_impl* const at = last();
    at->undo();
    std::unique_ptr<message_impl> gone = messages_.take(at);
    // The code that is rolling back may still hold what it has just made.
    if (gone && gone->type() == message_type::obj_create)
        static_cast<obj_create_message_impl&>(*gone).keep_object();
    return gone;
}

void message_history_impl::tell_rolled_back(std::unique_ptr<message_impl> begin, bool was_closed) {
    tran_rollback_message_impl told{&model_object_, static_cast<tran_begin_message_impl*>(begin.get()),
                                    was_closed};
    telling([&] { model_object_.as_subject().notify(&told); });
    current_level_ = -1;
    --trans_executed_;
    drop(std::move(begin));
}

} // namespace kelm
