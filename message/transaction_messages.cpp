// The messages that bracket transactions, and the two that are only told.
// The history decides what is stored.
#include "message/transaction_messages.h"

namespace kelm {

tran_begin_message_impl::tran_begin_message_impl(silent_edit* model, u32 id, std::string name)
    : recorded(message_type::tran_begin, model), id_(id), name_(std::move(name)) {}

// A stream may name as partners what does not go together.
tran_begin_message_impl::~tran_begin_message_impl() {
    if (partner_ && partner_->partner_ == this) partner_->partner_ = nullptr;
}

tran_end_message* tran_begin_message_impl::end_message() const { return partner_; }

std::string& tran_begin_message_impl::to_string(std::string& out) const {
    return out = " Begin Transaction - " + name_;
}

bool tran_begin_message_impl::redo() {
    if (level_ == 0 && !is_lost()) tell();
    return true;
}

// Observers see a well-formed bracket, begin first, although undo runs backwards: what is told of a begin is an end.
bool tran_begin_message_impl::undo() {
    if (level_ == 0 && !is_lost()) tell_inverse<tran_end_message_impl>(&edit());
    return true;
}

tran_end_message_impl::tran_end_message_impl(silent_edit* model) : recorded(message_type::tran_end, model) {}

tran_end_message_impl::~tran_end_message_impl() {
    if (partner_ && partner_->partner_ == this) partner_->partner_ = nullptr;
}

std::string& tran_end_message_impl::to_string(std::string& out) const {
    return out = " End Transaction - " + (partner_ ? partner_->name() : std::string{});
}

void tran_end_message_impl::join(message* begin) {
    if (!begin) return;
    partner_ = message_cast<tran_begin_message_impl>(begin);
    if (auto* const former = partner_->partner()) former->partner_ = nullptr;
    partner_->set_partner(this);
}

bool tran_end_message_impl::redo() {
    if (level_ == 0 && !is_lost()) tell();
    return true;
}

bool tran_end_message_impl::undo() {
    if (level_ == 0 && !is_lost()) tell_inverse<tran_begin_message_impl>(&edit(), id(), std::string{});
    return true;
}

std::string& tran_rollback_message_impl::to_string(std::string& out) const {
    return out = "*******   Rollback Transaction - Level " + std::to_string(static_cast<int>(level())) +
                 ", " + std::to_string(static_cast<int>(id()));
}

std::string& model_close_message_impl::to_string(std::string& out) const {
    return out = "***********  Model Close **********";
}

} // namespace kelm
