// One side of the log, oldest first, with the number of outermost transactions in it.
// What is kept, and how long, is the business of message_history_impl.
#pragma once

#include "message/transaction_messages.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace kelm {

/// \returns the message as the begin of a transaction; null for another, and for null
inline tran_begin_message_impl* as_begin(message_impl* what) {
    return what && what->type() == message_type::tran_begin ? static_cast<tran_begin_message_impl*>(what)
                                                            : nullptr;
}

/// \returns the message as the end of a transaction; null for another, and for null
inline tran_end_message_impl* as_end(message_impl* what) {
    return what && what->type() == message_type::tran_end ? static_cast<tran_end_message_impl*>(what)
                                                          : nullptr;
}

/// Owns messages; taking out at either end costs no shift.
class message_list {
public:
    using held = std::unique_ptr<message_impl>;

    std::size_t size() const { return messages_.size() - front_; }
    bool empty() const { return size() == 0; }
    const held& operator[](std::size_t i) const { return messages_[front_ + i]; }
    /// \returns null for an empty list
    message_impl* newest() const { return empty() ? nullptr : messages_.back().get(); }
    auto rbegin() const { return messages_.rbegin(); }
    auto rend() const { return messages_.rend() - offset(front_); }

    /// Has so many push_back() find room, so that they cannot fail.
    void make_room(std::size_t count = 1) {
        if (messages_.capacity() - messages_.size() < count)
            messages_.reserve(messages_.size() + std::max({count, size(), least_room}));
    }
    /// A begin has its level by now.
    void push_back(held what) {
        outermost_ += is_outermost(what.get()) ? 1 : 0;
        messages_.push_back(std::move(what));
    }
    held pop_back() { return take_at(messages_.end() - 1); }
    held pop_front() {
        held out = std::move(messages_[front_]);
        outermost_ -= is_outermost(out.get()) ? 1 : 0;
        if (++front_ > messages_.size() / 2) { // each message moves once, on the average
            messages_.erase(messages_.begin(), messages_.begin() + offset(front_));
            front_ = 0;
        }
        return out;
    }
    /// Looked for from the newest end, where what is asked for nearly always stands.  \returns null when it is not there
    held take(const message_impl* wanted) {
        const auto end = messages_.rend() - offset(front_);
        const auto at = std::find_if(messages_.rbegin(), end,
                                     [wanted](const held& each) { return each.get() == wanted; });
        return at == end ? nullptr : take_at(std::prev(at.base()));
    }
    bool holds(const message_impl& wanted) const {
        return std::any_of(rbegin(), rend(), [&wanted](const held& each) { return each.get() == &wanted; });
    }

    /// \returns the number of begins of level 0
    std::size_t outermost() const { return outermost_; }
    bool begins_outermost() const { return !empty() && is_outermost(messages_[front_].get()); }

private:
    static bool is_outermost(message_impl* what) {
        const auto* const begin = as_begin(what);
        return begin && begin->level() == 0;
    }
    held take_at(const std::vector<held>::iterator& at) {
        held out = std::move(*at);
        messages_.erase(at);
        outermost_ -= is_outermost(out.get()) ? 1 : 0;
        return out;
    }

    static std::ptrdiff_t offset(std::size_t n) { return static_cast<std::ptrdiff_t>(n); }
    static constexpr std::size_t least_room = 16;

    std::vector<held> messages_;
    std::size_t front_ = 0; // where the list begins: in front of it stand those that pop_front() has taken
    std::size_t outermost_ = 0;
};

} // namespace kelm
