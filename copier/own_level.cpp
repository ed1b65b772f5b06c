// Opening, watching and leaving a level of a transaction.
// What is done in it is paste_run's business.
#include "copier/own_level.h"

#include "object/model_impl.h"

#include <exception>

namespace kelm {

own_level::own_level(model& in)
    : in_(in), log_(impl_of(in.as_object())->owning_model()->log()), guard_(log_) {}

bool own_level::open(const std::string& name) {
    log_.take_back_interrupted(); // that would shorten the log below
    const std::size_t before = in_.message_count();
    const u32 id = in_.last_transaction_id() + 1;
    const bool was_heard = in_.begin_transaction(name) != nullptr;
    if (in_.find_transaction(id, &index_) && index_ >= before) begin_ = as_begin(log_.done()[index_].get());
    return was_heard && is_open();
}

bool own_level::is_open() const {
    if (!begin_ || begin_->partner()) return false;
    if (is_at(index_)) return true;
    // The oldest transactions may have been dropped from the front of the log; else the level is gone for good.
    index_ = 0;
    while (index_ != log_.done().size() && !is_at(index_)) ++index_;
    if (index_ == log_.done().size()) begin_ = nullptr;
    return begin_ != nullptr;
}

void own_level::close() {
    repeat_while_open([this] { in_.end_transaction(); });
}

// What observers throw comes when the level they were told of is gone: the others still have to go.
void own_level::roll_back() {
    std::exception_ptr thrown;
    repeat_while_open([&] {
        try {
            in_.rollback_transaction();
        } catch (...) {
            if (!thrown) thrown = std::current_exception();
        }
    });
    if (thrown) std::rethrow_exception(thrown);
}

/// Inner levels that a rule has left open go first.  A step that changes nothing, as inside of an undo, is the last.
template <class Step>
void own_level::repeat_while_open(Step step) {
    while (is_open()) {
        const std::size_t before = in_.message_count();
        step();
        if (in_.message_count() == before) return;
    }
}

} // namespace kelm
