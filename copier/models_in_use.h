// Models that must not be closed while something works with their objects.
// What keeps a model open is message_history_impl::in_use.
#pragma once

#include "object/model_impl.h"

#include <list>
#include <unordered_set>

namespace kelm {

/// Keeps each model open that one of its objects was given for, as long as it lives.
class models_in_use {
public:
    /// An object without a model needs nothing.
    void hold(object& of) {
        model_impl* const model = impl_of(&of)->owning_model();
        if (model && known_.insert(model).second) held_.emplace_back(model->log());
    }

private:
    std::unordered_set<const model_impl*> known_;
    std::list<message_history_impl::in_use> held_;
};

} // namespace kelm
