// The messages of objects that observe objects.
// They are never told: the relation itself is no change that anybody listens for.
#pragma once

#include "message/recorded.h"

#include <kelm/structure_messages.h>

namespace kelm {

/// Shared by both: who observes, and under which id.
template <class Derived, class Face, u32 Type>
class recorded_observer : public Face, public recorded<Derived> {
public:
    recorded_observer(silent_edit* subject, kelm::observer* who, u32 id)
        : recorded<Derived>(Type, subject), id_(id), observer_(who) {
        message_impl::set_first_run(false); // it is the source of no notification
    }

    kelm::observer* observer() const final { return observer_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.number("obsv_id", self.id_);
        if constexpr (Archive::reads) self.observer_ = archive.observer(self.id_);
    }

protected:
    bool attach() {
        if (observer_ && !this->is_lost()) this->edit().attach_silently(*observer_, id_);
        return true;
    }
    bool detach() {
        if (observer_ && !this->is_lost()) this->edit().detach_silently(*observer_, id_);
        return true;
    }

private:
    u32 id_;
    kelm::observer* observer_;
};

/// An object was attached as an observer.
class observer_add_message_impl final
    : public recorded_observer<observer_add_message_impl, observer_add_message, message_type::observer_add> {
public:
    using recorded_observer::recorded_observer;

    std::string& to_string(std::string& out) const override;
    bool redo() override { return attach(); }
    bool undo() override { return detach(); }
};

/// An object was detached.
class observer_remove_message_impl final
    : public recorded_observer<observer_remove_message_impl, observer_remove_message,
                               message_type::observer_remove> {
public:
    using recorded_observer::recorded_observer;

    std::string& to_string(std::string& out) const override;
    bool redo() override { return detach(); }
    bool undo() override { return attach(); }
};

} // namespace kelm
