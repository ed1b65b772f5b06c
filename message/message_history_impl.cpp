// Adding messages, numbering levels, limits, and dropping what nobody can reach any more.
// Walking the log is history_undo.cpp and history_rollback.cpp.
#include "message/message_history_impl.h"

#include <algorithm>

namespace kelm {

namespace {

tran_begin_message_impl* as_begin(message_impl* what) {
    return what && what->type() == message_type::tran_begin ? static_cast<tran_begin_message_impl*>(what)
                                                            : nullptr;
}

tran_end_message_impl* as_end(message_impl* what) {
    return what && what->type() == message_type::tran_end ? static_cast<tran_end_message_impl*>(what)
                                                          : nullptr;
}

constexpr std::size_t ordinary_undo_size = 10000;
constexpr std::size_t ordinary_redo_size = 1000;

} // namespace

message_history_impl::message_history_impl(silent_edit& model_object) : model_object_(model_object) {
    messages_.reserve(ordinary_undo_size);
    undone_messages_.reserve(ordinary_redo_size);
}

message_history_impl::~message_history_impl() { clear(); }

bool message_history_impl::add_message(std::unique_ptr<message_impl> what) {
    // An observer of undo or redo must not change anything; one that does leaves the walk its messages.
    if (!undone_messages_.empty() && !undoing_ && !redoing_) clear_undone();

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
    auto& begin = *as_begin(last());
    auto& end = *as_end(end_message.get());
    if (begin.level() == 0) {
        --trans_executed_;
        end.set_level(0);
        begin.set_partner(&end);
        end.set_partner(&begin);
        messages_.push_back(std::move(end_message));
        {
            const in_use guard{*this};
            model_object_.as_subject().notify(&end);
        }
        end_message = take_out(messages_, &end);
        process().in_semantic = false;
    }
    std::unique_ptr<message_impl> begin_message = take_out(messages_, &begin);
    if (end_message) drop(std::move(end_message));
    if (begin_message) drop(std::move(begin_message));
    --current_level_;
    return false;
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
    begin.set_partner(&end);
    end.set_partner(&begin);

    const in_use guard{*this};
    if (begin.level() == 0) {
        model_object_.as_subject().notify(&end);
        if (max_undo_levels_ != npos32) prune();
    }
    notify(&end);
    return true;
}

void message_history_impl::drop(std::unique_ptr<message_impl> what) {
    if (depth_ != 0) {
        graveyard_.push_back(std::move(what));
        return;
    }
    what->release_values();
}

void message_history_impl::drop_back(messages& from) {
    std::unique_ptr<message_impl> newest = std::move(from.back());
    from.pop_back();
    drop(std::move(newest));
}

// Freeing an object runs no code of an application, so that nothing new arrives meanwhile.
void message_history_impl::empty_graveyard() {
    for (auto& dead : graveyard_) {
        dead->release_values();
        dead.reset();
    }
    graveyard_.clear();
}

std::unique_ptr<message_impl> message_history_impl::take_out(messages& from, const message_impl* what) {
    const auto at = std::find_if(from.rbegin(), from.rend(), [&](const auto& m) { return m.get() == what; });
    if (at == from.rend()) return nullptr;
    const auto place = std::prev(at.base());
    std::unique_ptr<message_impl> out = std::move(*place);
    from.erase(place);
    return out;
}

void message_history_impl::clear_undone() {
    while (!undone_messages_.empty()) drop_back(undone_messages_);
}

void message_history_impl::clear() {
    while (!messages_.empty()) drop_back(messages_);
    clear_undone();
    current_level_ = -1;
}

void message_history_impl::prune() {
    std::size_t keep_from = messages_.size();
    for (u32 count = 0; keep_from != 0 && count != max_undo_levels_;) {
        --keep_from;
        const auto* const begin = as_begin(messages_[keep_from].get());
        if (begin && begin->level() == 0 && ++count == max_undo_levels_) break;
        if (keep_from == 0) return; // fewer than the limit
    }
    for (std::size_t i = 0; i != keep_from; ++i) drop(std::move(messages_[i]));
    messages_.erase(messages_.begin(), messages_.begin() + static_cast<std::ptrdiff_t>(keep_from));
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
    const auto is_it = [&](const auto& m) { return m.get() == &what; };
    return std::any_of(messages_.rbegin(), messages_.rend(), is_it) ||
           std::any_of(undone_messages_.begin(), undone_messages_.end(), is_it);
}

tran_end_message_impl* message_history_impl::last_top_level_end() const {
    auto* const end = as_end(last());
    return end && end->level() == 0 ? end : nullptr;
}

bool message_history_impl::in_transaction() const {
    if (messages_.empty() || is_walking()) return false;
    return !last_top_level_end();
}

} // namespace kelm
