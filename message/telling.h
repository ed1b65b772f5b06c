// Who hears of a walk of the log may throw, and memory may run out for telling: neither stops the walk halfway.
// What is told is the messages' business.
#pragma once

#include "util/process_state.h"

#include <exception>
#include <utility>

namespace kelm {

/// Runs what tells.  While a walk of a log is under way what it throws is kept for the end of the walk.
template <class Tell>
void telling(Tell&& tell) {
    try {
        tell();
    } catch (...) {
        std::exception_ptr* const kept = process().failure_of_telling;
        if (!kept) throw;
        if (!*kept) *kept = std::current_exception();
    }
}

/// A walk of a log, for the length of a scope.
class telling_walk {
public:
    telling_walk() : outer_(std::exchange(process().failure_of_telling, &failure_)) {}
    telling_walk(const telling_walk&) = delete;
    telling_walk& operator=(const telling_walk&) = delete;
    ~telling_walk() { process().failure_of_telling = outer_; }

    /// Throws the first failure of the walk, if any.
    void end() const {
        if (failure_) std::rethrow_exception(failure_);
    }

private:
    std::exception_ptr failure_;
    std::exception_ptr* outer_;
};

} // namespace kelm
