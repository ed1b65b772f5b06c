// The end of a transaction has a text of the application's own, which is stored with it.
// Levels inside a transaction are not signed: a user sees the whole.
#include "log/signer.h"

#include <kelm/message.h>
#include <kelm/message_history.h>

namespace schema {

signer::signer(kelm::model& model, const signature& by) : model_(model), text_(to_text(by)) {
    model_.history()->attach(this);
}

signer::~signer() { model_.history()->detach(this); }

bool signer::update(kelm::subject*, kelm::message* what) {
    auto* end = kelm::message_cast<kelm::tran_end_message>(what);
    if (end && end->level() == 0) end->set_processed_err_msg(text_);
    return true;
}

} // namespace schema
