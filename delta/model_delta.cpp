// A model's doors to summaries of its history.
// How one is made is summary.h.
#include "delta/summary.h"
#include "object/model_impl.h"

#include <algorithm>

namespace kelm {

std::unique_ptr<delta> message_history_impl::make_delta(const message* stop) {
    // Reading values runs hooks, which may change the model and drop messages: these stay readable meanwhile.
    const in_use guard{*this};
    const std::size_t dropped_before = graveyard_.size();
    std::vector<message_impl*> stretch;
    const auto end = std::find_if(messages_.rbegin(), messages_.rend(), [&](const auto& each) {
        if (each.get() == stop) return true;
        stretch.push_back(each.get());
        return false;
    });
    if (end == messages_.rend()) return nullptr;
    std::unique_ptr<delta> made = summary{static_cast<model_impl&>(model_object_), stretch}.make();
    // What the summary borrows may be among what has been dropped.
    return graveyard_.size() == dropped_before ? std::move(made) : nullptr;
}

owned<delta*> model_impl::make_delta(message* stop) { return history_.make_delta(stop).release(); }

shared_ptr<delta> model_impl::delta_since(tran_begin_message* from) {
    const message* const stop = from ? message_cast<message>(from) : message_at(0);
    return shared_ptr<delta>{history_.make_delta(stop).release()};
}

delta* model_impl::last_delta() {
    const auto* const end = as_end(history_.last());
    const message* const begin = end ? end->partner() : nullptr;
    if (!begin) return nullptr;
    // One that was made for a level inside is not that of the whole.
    if (!last_delta_ || last_delta_begin_ != begin) {
        forget_last_delta();
        last_delta_ = history_.make_delta(begin);
        last_delta_begin_ = begin;
    }
    return last_delta_.get();
}

} // namespace kelm
