// The scoped guard of a transaction, and its complaints of misuse.
// A guard whose model has gone is closed, silently.
#include "object/model_impl.h"
#include "util/complaint.h"

#include <kelm/message.h>
#include <kelm/transaction.h>

namespace kelm {

namespace {

void complain_of(const std::string& what) {
    complain(what + "\nPlease contact Qordel tech support (mail to support@qordel.com) and let us know that\n"
                    "you encountered this message and what you were doing when you encountered it.");
}

/// \returns whether the model still stands and a transaction is open in it.  A change outside any transaction is none.
bool has_open_transaction(const kelm::model* in) {
    return in && model_impl::is_alive(in) && static_cast<const model_impl*>(in)->log().transaction_open();
}

} // namespace

transaction_object::transaction_object(kelm::model* in, const std::string& name) { begin(in, name); }

transaction_object::~transaction_object() { rollback(); }

void transaction_object::begin(kelm::model* in, const std::string& name) {
    transaction_name_ = name;
    transaction_model_ = nullptr;
    if (!in) return;
    const tran_begin_message* const begun = in->begin_transaction(name);
    if (!begun) return;
    transaction_model_ = in;
    transaction_id_ = begun->id();
}

void transaction_object::open(kelm::model* in, const std::string& name) {
    if (transaction_model_) {
        complain_of("Trying to open new transaction " + name + ". But there is already an open transaction " +
                    transaction_name_ + " !");
        rollback();
    }
    begin(in, name);
}

void transaction_object::commit() {
    if (!transaction_model_) return;
    if (!model_impl::is_alive(transaction_model_)) return reset();
    if (!has_open_transaction(transaction_model_)) {
        complain_of("Trying to commit transaction " + transaction_name_ +
                    ". But the transaction has already been closed!");
        return reset();
    }
    const tran_begin_message* const current = transaction_model_->current_transaction();
    if (current->id() != transaction_id_) {
        complain_of("Trying to commit transaction " + transaction_name_ +
                    ". But the current transaction is " + current->name() + "!");
        return; // still held: the destructor tries to roll back
    }
    transaction_model_->end_transaction();
    reset();
}

void transaction_object::rollback() {
    // Kept: with no transaction open the fields stay as they are, so that id() keeps its number.
    if (!has_open_transaction(transaction_model_)) return;
    const tran_begin_message* const current = transaction_model_->current_transaction();
    if (current->id() == transaction_id_)
        transaction_model_->rollback_transaction();
    else if (transaction_model_->find_transaction(transaction_id_, nullptr))
        complain_of("Trying to rollback transaction " + transaction_name_ +
                    ". But the current transaction is " + current->name() + "!");
    reset();
}

void transaction_object::reset() {
    transaction_model_ = nullptr;
    transaction_id_ = 0;
}

bool transaction_object::is_open() const {
    return has_open_transaction(transaction_model_) &&
           transaction_model_->current_transaction()->id() == transaction_id_;
}

} // namespace kelm
