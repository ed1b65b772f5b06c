// Opening, closing, undoing and redoing transactions of a model.
// What is stored, and how the log is walked, is message_history_impl.
#include "object/model_impl.h"
#include "object/passed_message.h"

#include <kelm/message.h>

namespace kelm {

namespace {

/// What is done at the end of a scope, also when it is left by an exception.
template <class Last>
class scope_end {
public:
    explicit scope_end(Last last) : last_(last) {}
    scope_end(const scope_end&) = delete;
    scope_end& operator=(const scope_end&) = delete;
    ~scope_end() { last_(); }

private:
    Last last_;
};

} // namespace

tran_begin_message* model_impl::begin_transaction(const std::string& name) {
    forget_last_delta();
    const message_history_impl::in_use guard{history_};
    history_.take_back_interrupted();
    auto made = std::make_unique<tran_begin_message_impl>(this, last_transaction_id_.next(), name);
    tran_begin_message_impl& begin = *made;
    if (!history_.add_message(std::move(made))) return nullptr;
    if (begin.level() == 0 && !notify(&begin)) return nullptr; // it is open all the same
    return history_.holds(begin) ? &begin : nullptr;           // an observer may have rolled it back
}

tran_end_message* model_impl::end_transaction() {
    const message_history_impl::in_use guard{history_};
    history_.take_back_interrupted();
    auto made = std::make_unique<tran_end_message_impl>(this);
    tran_end_message_impl& end = *made;
    if (!history_.add_message(std::move(made))) return nullptr;
    const auto as_told = [&] { return history_.holds(end) ? &end : nullptr; }; // or forgotten the history
    if (end.level() != 0) return as_told();
    const bool passed = run<post_end_transaction_semantic>(
        [&](post_end_transaction_semantic& h) { return h.do_it(static_cast<kelm::model*>(this)); });
    if (passed) return as_told();
    undo(); // Kept: where undo is off, or its limit is used up, what was refused stays
    return nullptr;
}

void model_impl::rollback_transaction_all() {
    forget_last_delta();
    const as_recorded mark{innermost_passed_};
    history_.rollback(true);
}

void model_impl::rollback_transaction() {
    forget_last_delta();
    const as_recorded mark{innermost_passed_};
    history_.rollback(false);
}

void model_impl::rollback_last_transaction() {
    forget_last_delta();
    const as_recorded mark{innermost_passed_};
    history_.rollback_last();
}

void model_impl::undo() {
    forget_last_delta();
    const as_recorded mark{innermost_passed_};
    const scope_end last_step{[this] { take_over_transaction_id(); }};
    history_.undo();
}

void model_impl::redo() {
    forget_last_delta();
    const as_recorded mark{innermost_passed_};
    const scope_end last_step{[this] { take_over_transaction_id(); }};
    history_.redo();
}

// Kept: the counter follows the newest transaction, so that the numbers of undone ones are given again.
void model_impl::take_over_transaction_id() {
    const auto* const end = history_.last_top_level_end();
    if (end && end->partner()) last_transaction_id_.set_last(end->id());
}

int model_impl::undo_levels() const {
    return history_.undo_disabled() ? 0 : static_cast<int>(history_.max_undo_levels());
}

void model_impl::set_undo_levels(int n) {
    forget_last_delta();
    history_.take_back_interrupted();
    history_.set_undo_levels(n);
}

void model_impl::clear_history() {
    forget_last_delta();
    history_.take_back_interrupted(); // it would stay as it is
    history_.clear();
}

} // namespace kelm
