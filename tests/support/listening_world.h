// A model with one pair of ears: what tests of told messages share.
// How a message becomes a line is told by the tests of each family.
#pragma once

#include "tests/support/world.h"

#include <initializer_list>

namespace kelm::test {

/// \returns the name of an object; "nobody" for null
inline std::string short_name(const object* what) { return what ? object_name(what) : "nobody"; }

class listening_world : public world {
protected:
    void listen(std::initializer_list<object*> to) {
        for (object* each : to) ears.watch(each);
    }
    /// Runs a change in a transaction of its own.  \returns its result
    template <class Change>
    bool change(Change&& what) {
        begin();
        const bool done = what();
        if (model->in_transaction()) end();
        return done;
    }
    /// Forgets what the preparation of a test has left behind.
    void forget() {
        model->clear_history();
        model->clear_modified();
        ears.take();
        hooks.take_log();
    }

    recorder ears;
};

} // namespace kelm::test
