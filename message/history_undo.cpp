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

/// Undoes the newest message, which then stands on the other side; when that fails, all is as before.
void message_history_impl::undo_newest() {
    undone_messages_.make_room();
    message_impl* const at = last();
    at->undo();
    if (auto moved = messages_.take(at)) undone_messages_.push_back(std::move(moved));
}

/// The other way round.
void message_history_impl::redo_next() {
    messages_.make_room();
    messages_.push_back(undone_messages_.pop_back());
    message_impl* const at = last();
    try {
        at->redo();
    } catch (...) {
        if (auto back = messages_.take(at))
            undone_messages_.push_back(std::move(back)); // its place is still there
        throw;
    }
}

/// What cannot be taken back now waits for the next walk, transaction or change.
void message_history_impl::take_back(steps done) {
    const messages& gone = done.is_undo ? undone_messages_ : messages_; // who is told may have it forgotten
    interrupted_ = done;
    while (interrupted_.count != 0 && !gone.empty()) {
        done.is_undo ? redo_next() : undo_newest();
        if (interrupted_.count != 0) --interrupted_.count; // it is none when all is forgotten
    }
    interrupted_ = {};
}

/// Memory ran out for an edit: for one of the way back there may be enough.
void message_history_impl::give_up(const steps& done) noexcept {
    try {
        take_back(done);
    } catch (...) { // the rest waits
    }
}

// Whoever fails to hear of it has been told that undo or redo failed.
bool message_history_impl::take_back_rest() {
    if (walking_) return false;
    const in_use guard{*this};
    const telling_walk unheard;
    const scoped_mark walk{walking_};
    take_back(interrupted_);
    return true;
}

message* message_history_impl::undo() {
    take_back_interrupted();
    if (is_walking() || !can_undo()) return nullptr;
    const in_use guard{*this};
    message_impl* const stop = last_top_level_end()->partner();
    const telling_walk told;
    {
        const scoped_mark walk{walking_};
        undoing_ = false; // a walk that ran out has left it set
        scoped_mark mark{undoing_};
        --trans_executed_;
        steps done{.is_undo = true};
        bool ran_out = false;
        try {
            for (bool reached = false; !reached; ++done.count) {
                if ((ran_out = messages_.empty())) break;
                reached = last() == stop;
                undo_newest();
            }
        } catch (...) {
            ++trans_executed_;
            give_up(done);
            throw;
        }
        if (ran_out) {
            mark.stay_set(); // Kept: until the next walk ends
            told.end();
            return nullptr;
        }
        ++undone_count_;
    }
    process().in_semantic = false;
    told.end();
    return stop;
}

message* message_history_impl::redo() {
    take_back_interrupted();
    if (is_walking() || !can_redo()) return nullptr;
    const in_use guard{*this};
    message_impl* const stop = static_cast<tran_begin_message_impl*>(undone_messages_.newest())->partner();
    const telling_walk told;
    {
        const scoped_mark walk{walking_};
        redoing_ = false; // a walk that ran out has left it set
        scoped_mark mark{redoing_};
        ++trans_executed_;
        steps done{.is_undo = false};
        bool ran_out = false;
        try {
            for (bool reached = false; !reached; ++done.count) {
                if ((ran_out = undone_messages_.empty())) break;
                reached = undone_messages_.newest() == stop;
                redo_next();
            }
        } catch (...) {
            --trans_executed_;
            give_up(done);
            throw;
        }
        if (ran_out) {
            mark.stay_set(); // Kept: until the next walk ends
            told.end();
            return nullptr;
        }
        --undone_count_;
    }
    process().in_semantic = false;
    told.end();
    return stop;
}

} // namespace kelm
