// A fresh model that a stream is read into, and the version that all streams of random histories have.
// What is to hold of it is told by the laws.
#pragma once

#include "tests/support/world.h"

#include <kelm/meta_model.h>

namespace kelm::test {

inline constexpr u32 newest_version = 8;

/// Closed at the end.
class read_model {
public:
    read_model() : model_(started_framework().create_object(type_id::model, nullptr)->model()) {
        model_->meta_model()->set_version(newest_version);
    }
    read_model(const read_model&) = delete;
    read_model& operator=(const read_model&) = delete;
    ~read_model() {
        model_->rollback_transaction_all();
        framework::instance().delete_object(model_->as_object());
        framework::instance().set_in_semantic(false);
    }
    kelm::model* operator->() const { return model_; }
    kelm::model& operator*() const { return *model_; }

private:
    kelm::model* model_;
};

} // namespace kelm::test
