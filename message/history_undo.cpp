// Undo and redo: walking one top-level transaction, backwards or forwards.
// Taking back what is still open is history_rollback.cpp.
#include "message/message_history_impl.h"
#include "util/scoped_mark.h"

namespace kelm {

bool message_history_impl::can_undo() const {
    if (undo_disabled_) return false;
    // Kept: the count is raised by undo and lowered by redo alone, so that undos followed by new work stay counted.
    if (max_undo_levels_ != npos32 && undone_count_ >= static_cast<int>(max_undo_levels_)) return false;
    const auto* const end = last_top_level_end();
    return end && end->partner();
}

bool message_history_impl::can_redo() const {
    if (undo_disabled_ || undone_messages_.empty()) return false;
    auto* const next = undone_messages_.newest();
    if (next->type() != message_type::tran_begin) return false;
    const auto* const begin = static_cast<const tran_begin_message_impl*>(next);
    return begin->partner() && begin->level() == 0;
}

message* message_history_impl::undo() {
    if (is_walking() || !can_undo()) return nullptr;
    const in_use guard{*this};
    message_impl* const stop = last_top_level_end()->partner();
    {
        const scoped_mark walk{walking_};
        undoing_ = false; // a walk that ran out has left it set
        scoped_mark mark{undoing_};
        --trans_executed_;
        for (bool reached = false; !reached;) {
            if (messages_.empty()) {
                mark.stay_set(); // Kept: until the next walk ends
                return nullptr;
            }
            message_impl* const at = last();
            at->undo();
            reached = at == stop;
            if (auto moved = messages_.take(at)) undone_messages_.push_back(std::move(moved));
        }
        ++undone_count_;
    }
    process().in_semantic = false;
    return stop;
}

message* message_history_impl::redo() {
    if (is_walking() || !can_redo()) return nullptr;
    const in_use guard{*this};
    message_impl* const stop = static_cast<tran_begin_message_impl*>(undone_messages_.newest())->partner();
    {
        const scoped_mark walk{walking_};
        redoing_ = false; // a walk that ran out has left it set
        scoped_mark mark{redoing_};
        ++trans_executed_;
        for (bool reached = false; !reached;) {
            if (undone_messages_.empty()) {
                mark.stay_set(); // Kept: until the next walk ends
                return nullptr;
            }
            messages_.push_back(undone_messages_.pop_back());
            message_impl* const at = last();
            reached = at == stop;
            at->redo();
        }
        --undone_count_;
    }
    process().in_semantic = false;
    return stop;
}

} // namespace kelm
