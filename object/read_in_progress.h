// The protection of those who read an object while hooks, filters and sorters run.
// Changes have a guard of their own (mutation.h).
#pragma once

#include "object/model_impl.h"

#include <optional>

namespace kelm {

/// What is found is borrowed until it is copied, and code of the application may mutate meanwhile: while one of these lives,
/// what it drops stays readable, and the model stays open.
class read_in_progress {
public:
    /// \param in  null for a bare object, which has no log yet
    explicit read_in_progress(model_impl* in) {
        if (in) guard_.emplace(in->log());
    }

private:
    std::optional<message_history_impl::in_use> guard_;
};

} // namespace kelm
