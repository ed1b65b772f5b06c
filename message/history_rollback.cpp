// Rollback: taking back a level, an open transaction, or the last closed one, and dropping it.
// What is rolled back cannot be redone.
#include "message/lifetime_messages.h"
#include "message/message_history_impl.h"
#include "util/scoped_mark.h"

namespace kelm {

void message_history_impl::rollback(bool all) {
    process().in_semantic = false;
    if (!transaction_open()) return;
    const in_use guard{*this};
    const u32 target = all ? 0 : static_cast<u32>(current_level_);
    const scoped_mark walk{walking_};
    const scoped_mark mark{rolling_back_};
    std::unique_ptr<message_impl> begin = undo_back_to(target);
    if (!begin) return;
    if (target == 0) return tell_rolled_back(std::move(begin), false);
    current_level_ = static_cast<int>(target) - 1;
    drop(std::move(begin));
}

void message_history_impl::rollback_last() {
    if (is_walking() || !last_top_level_end()) return;
    const in_use guard{*this};
    const scoped_mark walk{walking_};
    const scoped_mark mark{rolling_back_};
    std::unique_ptr<message_impl> begin = undo_back_to(0);
    if (begin) tell_rolled_back(std::move(begin), true);
}

/// Undoes and drops messages, the newest first, up to the begin of `level`.  \returns that begin, or null when the
/// log ran out
std::unique_ptr<message_impl> message_history_impl::undo_back_to(u32 level) {
    while (!messages_.empty()) {
        message_impl* const at = last();
        at->undo();
        std::unique_ptr<message_impl> gone = messages_.take(at);
        if (!gone) continue;
        if (gone->type() == message_type::tran_begin &&
            static_cast<tran_begin_message_impl&>(*gone).level() == level)
            return gone;
        // The code that is rolling back may still hold what it has just made.
        if (gone->type() == message_type::obj_create)
            static_cast<obj_create_message_impl&>(*gone).keep_object();
        drop(std::move(gone));
    }
    return nullptr;
}

void message_history_impl::tell_rolled_back(std::unique_ptr<message_impl> begin, bool was_closed) {
    tran_rollback_message_impl told{&model_object_, static_cast<tran_begin_message_impl*>(begin.get()),
                                    was_closed};
    model_object_.as_subject().notify(&told);
    current_level_ = -1;
    --trans_executed_;
    drop(std::move(begin));
}

} // namespace kelm
