// Who goes along with a history: laws that are held against it, and what a test adds to it.
// The steps are played by player.h.
#pragma once

#include "testing/random_numbers.h"
#include "testing/step.h"

#include <kelm/model.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelm::testing {

class player;

/// Is told where a history stands.  It does nothing unless it says so itself.
class companion {
public:
    virtual ~companion() = default;

    /// The history begins here: the model is new, or has forgotten how it came about.
    virtual void restarted(player&) {}
    /// \returns whether a step is passed over although it could be played
    virtual bool leaves_out(player&, const step&) { return false; }
    virtual void before(player&, const step&) {}
    /// A creation has made something.
    virtual void made(player&, object&) {}
    /// No call is under way any more.
    virtual void after(player&, const step&) {}

    /// One more level is about to be opened.
    virtual void beginning(player&) {}
    virtual void begun(player&) {}
    /// The innermost level is about to be closed.
    virtual void ending(player&) {}
    /// Levels were closed, or rolled back.
    virtual void left(player&) {}
    /// A transaction has been kept: the history has one more moment, in which it stands.
    virtual void kept(player&) {}
    /// The model stands outside of any call: behind an end, an undo, a redo or a rollback.
    virtual void present(player&) {}
    /// All steps have been played and all levels are closed.  All is undone and redone from here.
    virtual void finishing(player&) {}
    virtual void finished(player&) {}
    /// The model is about to go.
    virtual void closing(player&) {}

    /// Appends what else is to come back.
    virtual void add_state(kelm::model&, std::string&) const {}
    /// \returns a step of its own, now and then, or none
    virtual std::optional<step> draw(player&, random_numbers&) { return std::nullopt; }
};

using companions = std::vector<std::unique_ptr<companion>>;

} // namespace kelm::testing
