// Signs transactions as they end.
// An observer of the history: whoever ends a transaction need not know of it.
#pragma once

#include "log/signature.h"

#include <kelm/model.h>
#include <kelm/subject.h>

namespace schema {

/// While one of these lives, each transaction of the model that ends is signed.  The model must outlive it.
class signer : public kelm::observer_impl {
public:
    signer(kelm::model& model, const signature& by);
    ~signer() override;
    signer(const signer&) = delete;
    signer& operator=(const signer&) = delete;

    bool update(kelm::subject* from, kelm::message* what) override;

private:
    kelm::model& model_;
    std::string text_;
};

} // namespace schema
