// What the random histories of kelm's own tests are made of.
// The steps, their player and most laws are those of the law kit.
#pragma once

namespace kelm::test {

/// What histories are made of, besides trees and values.
///
/// To what <kelm/testing/laws.h> leaves out, these add, since it cannot be undone or told by design:
/// - an observer that rolls back and lets the change that it is told of go on;
/// - what hooks and observers do to an object that is being deleted, which takes it into its grave;
/// - an observer that refuses the making or deletion of an object.
/// Left out of states that are compared: the definition, choices and multiline mark of a user-defined property, which
/// do not come back with it.
/// Left out of stored histories: values that the object's type does not declare.
/// Left out of repeated histories, since addresses decide who is asked or told first:
/// - what objects do when they hear of another one: those who observe it are told in the order of their addresses;
/// - with bases, whatever hooks and observers do besides: inheritors are asked and told in that order.
/// Left out of replayed and copied histories: see replay_laws.cpp and copy_laws.cpp.
struct history_mix {
    bool bases = false;       ///< objects inherit from others
    bool definitions = false; ///< of user-defined properties
    bool stored = false;      ///< written and read again; leaves out what streams do not tell
    bool shadowed = false;    ///< compared with what is heard of it; leaves out what cannot be heard
    bool replayed = false;    ///< performed again on a twin; leaves out what a log for replay does not tell
    bool answered = false; ///< its hooks do what they do by what they see alone, so that a twin's do the same
    bool copied = false;   ///< pasted into an empty twin
    bool repeated = false; ///< played more than once; leaves out what addresses decide
    bool summed = false;   ///< its deltas compared with what differs; leaves out what these tell otherwise

    /// \returns whether hooks and observers just listen
    bool is_calm() const { return replayed || (repeated && bases); }
};

} // namespace kelm::test
