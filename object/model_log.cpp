// Looking through the log of a model: transactions by id, by neighbourhood, and their names.
// Nothing here changes the log.
#include "object/model_impl.h"

#include <kelm/message.h>

namespace kelm {

namespace {

using messages = message_history_impl::messages;

/// \returns the index of the newest begin that `wanted` accepts; npos when there is none
template <class Wanted>
std::size_t find_begin(const messages& log, Wanted wanted) {
    for (std::size_t i = log.size(); i-- != 0;) {
        const auto* const begin = as_begin(log[i].get());
        if (begin && wanted(*begin)) return i;
    }
    return npos;
}

bool is_top_level(const tran_begin_message_impl& begin) { return begin.level() == 0; }

/// Appends the top-level begins from the end of the log to its front.  A `max` of 0 means all.
void append_names(const messages& log, std::size_t max, transaction_names& out) {
    std::size_t count = 0;
    for (std::size_t i = log.size(); i-- != 0;) {
        const auto* const begin = as_begin(log[i].get());
        if (!begin || !is_top_level(*begin)) continue;
        out.emplace_back(begin->id(), begin->name());
        if (++count == max) return;
    }
}

} // namespace

tran_begin_message* model_impl::find_transaction(u32 id, std::size_t* index) const {
    const messages& log = history_.done();
    const std::size_t at = find_begin(log, [&](const auto& begin) { return begin.id() == id; });
    if (at == npos) return nullptr;
    if (index) *index = at;
    return as_begin(log[at].get());
}

message* model_impl::message_at(std::size_t index) const {
    return index < history_.done().size() ? history_.done()[index].get() : nullptr;
}

tran_begin_message* model_impl::next_transaction(tran_begin_message* after) const {
    const messages& log = history_.done();
    if (!after) return log.empty() ? nullptr : as_begin(log[0].get());
    tran_begin_message* next = nullptr;
    for (std::size_t i = log.size(); i-- != 0;) {
        auto* const begin = as_begin(log[i].get());
        if (!begin || !is_top_level(*begin)) continue;
        if (begin == after) return next;
        next = begin;
    }
    return nullptr;
}

tran_begin_message* model_impl::previous_transaction(tran_begin_message* before) const {
    if (!before) return last_transaction();
    const messages& log = history_.done();
    const std::size_t at =
        find_begin(log, [&](const auto& begin) { return is_top_level(begin) && &begin == before; });
    if (at == npos || at == 0 || log[at - 1]->type() != message_type::tran_end) return nullptr;
    const auto& end = static_cast<const tran_end_message_impl&>(*log[at - 1]);
    return end.level() == 0 ? end.partner() : nullptr;
}

tran_begin_message* model_impl::last_transaction() const {
    const message_impl* const last = history_.last();
    return last && last->type() == message_type::tran_end
               ? static_cast<const tran_end_message_impl*>(last)->partner()
               : nullptr;
}

tran_begin_message* model_impl::current_transaction() const {
    if (!in_transaction()) return last_transaction();
    const std::size_t at = find_begin(history_.done(), is_top_level);
    return at == npos ? nullptr : as_begin(history_.done()[at].get());
}

std::string model_impl::undo_name() const {
    return can_undo() ? history_.last_top_level_end()->partner()->name() : std::string{};
}

std::string model_impl::redo_name() const {
    if (!can_redo()) return {};
    return static_cast<const tran_begin_message_impl&>(*history_.undone().newest()).name();
}

void model_impl::undo_names(transaction_names& out, std::size_t max) const {
    if (can_undo()) append_names(history_.done(), max, out);
}

void model_impl::redo_names(transaction_names& out, std::size_t max) const {
    if (can_redo()) append_names(history_.undone(), max, out);
}

bool model_impl::last_transaction_is_empty() const {
    if (!can_undo()) return true;
    const messages& log = history_.done();
    const auto* const begin = history_.last_top_level_end()->partner();
    return log.size() > 1 && log[log.size() - 2].get() == begin;
}

} // namespace kelm
