// Undo and redo of messages that change an object and tell of it.
// A class supplies the change both ways and the inverse to tell; the order of the steps stands here once.
#pragma once

#include "message/recorded.h"

namespace kelm {

/// Supplies redo() and undo() from Derived's forward(), backward() and inverse().
/// Derived::keeps_undone says whether the message remembers on which side it stands.
template <class Derived, class Base = message_impl>
class reversible : public recorded<Derived, Base> {
public:
    using recorded<Derived, Base>::recorded;

    bool redo() override {
        if (!this->is_lost()) {
            self().forward();
            this->tell();
        }
        mark_undone(false);
        return true;
    }
    bool undo() override {
        if (!this->is_lost()) {
            self().backward();
            self().inverse();
        }
        mark_undone(true);
        return true;
    }

private:
    Derived& self() { return static_cast<Derived&>(*this); }
    void mark_undone(bool undone) {
        if constexpr (Derived::keeps_undone) this->set_undone(undone);
    }
};

} // namespace kelm
