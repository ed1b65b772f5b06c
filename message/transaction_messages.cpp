// The messages that bracket transactions, and the two that are only told.
// The history decides what is stored.
#include "message/transaction_messages.h"

namespace kelm {

tran_begin_message_impl::tran_begin_message_impl(silent_edit* model, u32 id, std::string name)
    : bracket_message(model), id_(id), name_(std::move(name)) {}

tran_begin_message_impl::~tran_begin_message_impl() = default;

tran_end_message* tran_begin_message_impl::end_message() const { return partner(); }

std::string& tran_begin_message_impl::to_string(std::string& out) const {
    return out = " Begin Transaction - " + name_;
}

// Observers see a well-formed bracket, begin first, although undo runs backwards: what is told of a begin is an end.
bool tran_begin_message_impl::undo() {
    if (is_heard()) tell_inverse<tran_end_message_impl>(&edit());
    return true;
}

std::string& tran_end_message_impl::to_string(std::string& out) const {
    return out = " End Transaction - " + (partner() ? partner()->name() : std::string{});
}

bool tran_end_message_impl::undo() {
    if (is_heard()) tell_inverse<tran_begin_message_impl>(&edit(), id(), std::string{});
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
