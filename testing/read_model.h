// A fresh model that a stream or a document is read into.
// What is to hold of it is told by the laws.
#pragma once

#include "testing/law_companions.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/model.h>
#include <kelm/object.h>

#include <algorithm>

namespace kelm::testing {

/// Takes back what is open and closes the model, whatever its hooks throw meanwhile.
inline void close_model(kelm::model& which) {
    const auto attempt = [](auto call) {
        try {
            call();
        } catch (...) { // the failure has been told by then
        }
    };
    attempt([&] { which.rollback_transaction_all(); });
    attempt([&] { framework::instance().delete_object(which.as_object()); });
    framework::instance().set_in_semantic(false);
}

/// Closed at the end.
class read_model {
public:
    read_model() : model_(framework::instance().create_object(type_id::model, nullptr)->model()) {
        kelm::meta_model& types = *model_->meta_model();
        types.set_version(std::max(newest_version, types.version()));
    }
    read_model(const read_model&) = delete;
    read_model& operator=(const read_model&) = delete;
    ~read_model() { close_model(*model_); }
    kelm::model* operator->() const { return model_; }
    kelm::model& operator*() const { return *model_; }

private:
    kelm::model* model_;
};

} // namespace kelm::testing
