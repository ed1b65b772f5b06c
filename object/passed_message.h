// A message on its way down the inheritors, where it speaks of each in turn.
// Who is told is inheritor_walk.
#pragma once

#include "message/message_impl.h"

namespace kelm {

/// A message that is passed on for the length of a scope, and speaks of its own object again behind it.
/// The model holds the innermost of those under way.
class passed_message {
public:
    passed_message(passed_message*& innermost, message_impl& said)
        : innermost_(innermost), outer_(innermost), said_(said), own_(said.edit()), told_of_(&own_) {
        innermost_ = this;
    }
    passed_message(const passed_message&) = delete;
    passed_message& operator=(const passed_message&) = delete;
    ~passed_message() {
        said_.set_object(&own_);
        innermost_ = outer_;
    }

    void speak_of(silent_edit& at) { said_.set_object(told_of_ = &at); }

private:
    friend class as_recorded;

    passed_message*& innermost_;
    passed_message* outer_;
    message_impl& said_;
    silent_edit& own_;
    silent_edit* told_of_;
};

/// While the log is walked, the messages that are being passed speak of their own objects: what an observer of an
/// inheritor rolls back meanwhile is to change these, not the inheritor.
class as_recorded {
public:
    explicit as_recorded(passed_message* innermost) : innermost_(innermost) {
        for (passed_message* each = innermost_; each; each = each->outer_)
            each->said_.set_object(&each->own_);
    }
    as_recorded(const as_recorded&) = delete;
    as_recorded& operator=(const as_recorded&) = delete;
    ~as_recorded() {
        for (passed_message* each = innermost_; each; each = each->outer_)
            each->said_.set_object(each->told_of_);
    }

private:
    passed_message* innermost_;
};

} // namespace kelm
