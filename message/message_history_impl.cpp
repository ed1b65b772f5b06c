// Adding messages, numbering levels, limits, and dropping what nobody can reach any more.
// Walking the log is history_undo.cpp and history_rollback.cpp.
#include "message/message_history_impl.h"

#include <algorithm>
#include <new>
#include <utility>

namespace kelm {

// Nobody reads what is dropped here, and nothing is allocated for it.
message_history_impl::~message_history_impl() {
    const in_use guard{*this};
    for (messages* const side : {&messages_, &undone_messages_})
        while (!side->empty()) bury(*side->pop_back());
}

void message_history_impl::make_room() {
    messages_.make_room();
    if (undone_messages_.empty()) return;
    // A hook may have kept to itself that its undo failed.  A change would drop what is still to be taken back.
    if (interrupted_.count != 0 && !walking_) throw std::bad_alloc{};
    make_room_for_dropped(undone_messages_.size());
}

bool message_history_impl::add_message(std::unique_ptr<message_impl> what) {
    make_room();
    // An observer of undo or redo must not change anything; one that does leaves the walk its messages.
    if (!undone_messages_.empty() && (!walking_ || rolling_back_)) clear_undone();

    if (auto* const begin = as_begin(what.get())) {
        // Ends without a begin have lowered the level below "none open"; the next transaction is an outermost one.
        current_level_ = std::max(current_level_, -1) + 1;
        begin->set_level(static_cast<u32>(current_level_));
        if (current_level_ == 0) {
            ++trans_executed_;
            process().in_semantic = false;
        }
    } else if (as_end(what.get()) && as_begin(last())) {
        return close_empty_transaction(std::move(what));
    }
    messages_.push_back(std::move(what));
    auto* const end = as_end(last());
    return !end || close_level(*end);
}

// A transaction in which nothing happened leaves no trace, but who heard it begin hears it end.
bool message_history_impl::close_empty_transaction(std::unique_ptr<message_impl> end_message) {
    const in_use guard{*this};
    make_room_for_dropped(2);
    auto& begin = *as_begin(last());
    auto& end = *as_end(end_message.get());
    --current_level_; // first: who hears the end may answer with a transaction, which is an outermost one
    if (begin.level() == 0) {
        --trans_executed_;
        end.set_level(0);
        begin.join(end);
        messages_.push_back(std::move(end_message));
        try {
            model_object_.as_subject().notify(&end);
        } catch (...) {
            drop_empty_transaction(begin, messages_.take(&end));
            throw;
        }
        end_message = messages_.take(&end);
        process().in_semantic = false;
    }
    drop_empty_transaction(begin, std::move(end_message));
    return false;
}

void message_history_impl::drop_empty_transaction(tran_begin_message_impl& begin,
                                                  std::unique_ptr<message_impl> end_message) {
    std::unique_ptr<message_impl> begin_message = messages_.take(&begin);
    if (end_message) drop(std::move(end_message));
    if (begin_message) drop(std::move(begin_message));
}

bool message_history_impl::close_level(tran_end_message_impl& end) {
    end.set_level(static_cast<u32>(current_level_));
    --current_level_;
    const auto open = std::find_if(messages_.rbegin(), messages_.rend(), [](const auto& m) {
        const auto* const begin = as_begin(m.get());
        return begin && !begin->partner();
    });
    if (open == messages_.rend()) return false;
    auto& begin = *as_begin(open->get());
    begin.join(end);

    const in_use guard{*this};
    if (begin.level() == 0) {
        model_object_.as_subject().notify(&end);
        if (max_undo_levels_ != npos32) prune();
    }
    notify(&end);
    return true;
}

void message_history_impl::make_room_for_dropped(std::size_t count) {
    if (graveyard_.capacity() - graveyard_.size() >= count) return;
    try {
        graveyard_.reserve(graveyard_.size() + std::max(count, graveyard_.size()));
    } catch (const std::bad_alloc&) {
        if (depth_ > 1) throw;
    }
}

void message_history_impl::drop(std::unique_ptr<message_impl> what) {
    try {
        graveyard_.push_back(std::move(what));
    } catch (const std::bad_alloc&) {
        bury(*what); // it has not been moved
    }
}

// Values, and what objects watch, may be of an application's own kinds: freeing them runs its code, which may change
// the model and so drop more.
void message_history_impl::empty_graveyard() {
    while (!graveyard_.empty()) {
        for (std::size_t i = 0; i != graveyard_.size(); ++i) {
            const std::unique_ptr<message_impl> dead = std::move(graveyard_[i]);
            bury(*dead);
        }
        graveyard_.clear();
        if (read_count_ == 0) std::exchange(kept_values_, {}).clear();
    }
}

void message_history_impl::bury(message_impl& dead) {
    if (dead.was_read()) {
        --read_count_;
        for (const int index : {0, 1})
            if (value_custody* const held = dead.custody(index))
                if (auto value = held->hand_over()) kept_values_.push_back(std::move(value));
    }
    dead.release_values();
}

void message_history_impl::clear_undone() {
    const in_use guard{*this};
    make_room_for_dropped(undone_messages_.size());
    interrupted_ = {};
    while (!undone_messages_.empty()) drop(undone_messages_.pop_back());
}

void message_history_impl::clear() {
    const in_use guard{*this};
    make_room_for_dropped(messages_.size() + undone_messages_.size());
    while (!messages_.empty()) drop(messages_.pop_back());
    clear_undone();
    current_level_ = -1;
}

void message_history_impl::adopt(std::vector<message*>& read) {
    messages_.make_room(read.size());
    kept_values_.reserve(kept_values_.size() + 2 * read.size()); // no message has more
    for (message* each : read) {
        std::unique_ptr<message_impl> what{message_cast<message_impl>(each)};
        what->set_was_read();
        messages_.push_back(std::move(what));
    }
    read_count_ += read.size();
    read.clear();
}

// The newest transactions up to the limit stay whole, and nothing older than the first of them.
void message_history_impl::prune() {
    if (messages_.outermost() < max_undo_levels_) return;
    const in_use guard{*this};
    while (messages_.outermost() > max_undo_levels_ || !messages_.begins_outermost()) {
        make_room_for_dropped(1);
        drop(messages_.pop_front());
    }
}

void message_history_impl::set_undo_levels(int n) {
    const int wanted = n < -1 ? -1 : n;
    const auto before = static_cast<int>(max_undo_levels_);
    undo_disabled_ = wanted == 0;
    const int limit = wanted == 0 ? 1 : wanted;
    max_undo_levels_ = static_cast<u32>(limit);
    // Kept: coming from "no limit", which compares as -1, nothing is pruned before the next transaction closes.
    if (limit != -1 && before > limit) prune();
}

bool message_history_impl::holds(const message_impl& what) const {
    return messages_.holds(what) || undone_messages_.holds(what);
}

tran_end_message_impl* message_history_impl::last_top_level_end() const {
    auto* const end = as_end(last());
    return end && end->level() == 0 ? end : nullptr;
}

bool message_history_impl::in_transaction() const {
    if (messages_.empty() || undoing_ || redoing_ || rolling_back_ || interrupted_.count != 0) return false;
    return !last_top_level_end();
}

} // namespace kelm
