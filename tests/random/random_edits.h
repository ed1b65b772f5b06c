// Random histories of a model: seeded steps, each written down as code, and the laws that are held against them.
// What is no law by design is left out by name, see `random_run`.
#pragma once

#include "tests/random/model_picture.h"
#include "tests/random/shadow_model.h"
#include "tests/support/counted_value.h"
#include "tests/support/world.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kelm::test {

/// A small generator whose numbers are the same everywhere.
class random_numbers {
public:
    explicit random_numbers(u64 seed) : state_(seed) {
        state_ = next();
    } // neighbours must not share a stream
    /// \returns a number below `end`; 0 when that is 0
    std::size_t below(std::size_t end) { return end == 0 ? 0 : static_cast<std::size_t>(next() % end); }
    bool one_in(std::size_t n) { return below(n) == 0; }

private:
    u64 next();
    u64 state_;
};

/// An observer that refuses now and then, or changes the model while it is told.  It lets the making and deleting of
/// objects pass: what a refusal leaves of these half-way is no state that redo could come back to.
class moody_observer final : public observer_impl {
public:
    explicit moody_observer(random_numbers& numbers) : numbers_(numbers) {}
    ~moody_observer() override;
    bool update(subject* from, message* what) override;

    void be_quiet() { refuses = reacts = false; }

    bool refuses = false;
    bool reacts = false;
    std::function<bool()> reaction;

private:
    random_numbers& numbers_;
};

/// Who listens to a model.  The order is that of their addresses, in which they are told: the shadow hears first, of
/// what the other refuses and before what it changes meanwhile.
struct listeners {
    explicit listeners(random_numbers& numbers) : moody(numbers) {}
    shadow_model shadow;
    moody_observer moody;
};

/// What histories are made of, besides trees and values.
struct history_mix {
    bool bases = false;       ///< objects inherit from others
    bool definitions = false; ///< of user-defined properties
    bool stored = false;      ///< written and read again; leaves out what streams do not tell
    bool shadowed = false;    ///< compared with what is heard of it; leaves out what cannot be heard
    bool replayed = false;    ///< performed again on a twin; leaves out what a log for replay does not tell
    bool answered = false; ///< its hooks do what they do by what they see alone, so that a twin's do the same
    bool copied = false;   ///< pasted into an empty twin; see copy_laws.cpp for what is left out
    bool repeated = false; ///< played more than once; leaves out what addresses decide
    bool summed = false;   ///< its deltas compared with what differs; leaves out one kind of change
};

/// One history of a fresh model.  Every step is random; the laws are checked whenever a transaction ends, is undone,
/// redone or rolled back.
///
/// Left out, since these cannot be undone by design:
/// - a child position behind the end, and the ordering of a child that is in no list;
/// - a move of a child that its owner does not list: a refusal half-way leaves it with the new owner;
/// - an element move whose target is refused;
/// - changes outside a transaction, and so an observer that rolls back and lets the change that it is told of go on;
/// - what hooks and observers do to an object that is being deleted, which takes it into its grave;
/// - an observer that refuses the making or deletion of an object;
/// - a rollback of the last transaction while another one stands ready for redo.
/// Left out of states that are compared: the definition, choices and multiline mark of a user-defined property, which
/// do not come back with it.
/// Left out of stored histories, since a stream does not tell it:
/// - values that the object's type does not declare;
/// - children that were taken out of the tree and live on;
/// - references in values of definitions: as attributes of what these make they are read as null;
/// - a base that is added twice, which undo takes for one that came.
/// Left out of repeated histories, since addresses decide who is asked or told first:
/// - what objects do when they hear of another one: those who observe it are told in the order of their addresses;
/// - with bases, whatever hooks and observers do besides: inheritors are asked and told in that order.
/// Left out of replayed histories:
/// - undo, redo and rollback on purpose, and a limit on undo; a history that something else rolls back is not replayed
///   when ids were used up in what has gone;
/// - elements of lists, and lists that lose elements as their targets are deleted: a list that is set is written as it
///   is today, so that what is done to it later would be done twice;
/// - adding a child to a deleted object, which the log tells by an id that the twin does not know any more;
/// - what hooks and observers do besides, but for answers;
/// - with answers, refresh_property: hooks hear of it, and a log for replay does not tell it.
/// Left out of shadowed histories, since messages do not tell it:
/// - refresh_property, which is told as if a value had been set or deleted;
/// - the deletion of a child that its owner does not list once that owner is deleted: the undo tells nobody;
/// - a base that is added twice, of which undo tells as if it went.
/// Left out of summed histories:
/// - a base that is added twice, which a delta takes for one that came.
class random_run {
public:
    random_run(u64 seed, history_mix mix);
    ~random_run();
    random_run(const random_run&) = delete;
    random_run& operator=(const random_run&) = delete;

    void step();
    /// Ends what is open, undoes everything and redoes everything.
    void finish();
    /// Ends what is open.  \returns the stream of the model with its history, without the model's random identity
    std::string bytes();
    /// \returns whether the history could be replayed
    bool was_replayed() const { return was_replayed_; }
    /// Closes the model.
    void close();
    /// \returns what was broken; empty while all laws hold
    const std::string& failure() const { return failure_; }
    /// \returns the steps as code
    const std::vector<std::string>& steps() const { return steps_; }

private:
    void program_hooks();
    void program_answers();
    void populate();
    bool react(const std::string& who);
    bool change_besides(object& what, const std::string& who);
    void step_outside();
    void step_inside();
    void edit();
    void edit_tree();
    void edit_value();
    void edit_element();
    void edit_base();
    void edit_observer();
    void edit_definition();
    void edit_definition_list(object& definition);
    void begin();
    void end();
    void undo();
    void redo();
    void roll_last_back();
    void settle();
    std::string state() const { return state_of(*model_); }
    /// \returns a canonical text of a model and, where they are of the mix, of its user-defined properties
    std::string state_of(kelm::model& of) const;
    void check(const char* what, const std::string& expected);
    void check_present();
    void check_links();
    void check_stored();
    void check_copied();
    void remember_start();
    void check_replayed();
    void check_delta(const model_picture& before, message* stop);
    void check_open_deltas();
    void check_deltas();
    bool has_declared(const object& what, u32 id) const;
    std::size_t open_levels() const;
    object* any();
    object* any_or_root();
    object* any_definition();
    u32 any_value_id();
    std::unique_ptr<abstract_property> value(bool may_be_list);
    /// \returns whether hooks and observers just listen
    bool is_calm() const { return mix_.replayed || (mix_.repeated && mix_.bases); }
    void note(const std::string& step) { steps_.push_back(step); }
    bool one_in(std::size_t n) { return numbers_.one_in(n); }

    random_numbers numbers_;
    history_mix mix_;
    object* root_;
    kelm::model* model_;
    // Static storage lies below all objects, which listen as well.  One run at a time has it.
    static inline std::optional<listeners> ears_;
    int reacting_ = 0;
    std::vector<u32> definitions_;
    std::vector<std::string> levels_; // dumps of the moments before the begins of the open levels
    std::vector<std::string> states_; // dumps between the transactions that undo and redo lead through
    std::size_t at_ = 0;              // where in them the model stands
    std::vector<model_picture> level_pictures_; // the same moments for histories that are summed
    std::vector<model_picture> pictures_;
    std::vector<std::string> steps_;
    std::string failure_;
    std::string start_; // the stream of a replayed model before its history
    u32 start_id_ = 0;
    bool was_replayed_ = false;
};

/// \returns a text of a value as code
std::string code_of(const abstract_property& value);
/// \returns the name of an object in code
std::string name_of(const object* what);

/// What came of a history.
struct played_history {
    std::string steps; ///< a line each, behind what was broken
    std::string bytes; ///< that random_run::bytes() tells
};

/// Plays a history of `steps` steps.
played_history play_for_bytes(u64 seed, std::size_t steps, history_mix mix);
/// Plays a history of `steps` steps.  \returns what was broken, with the steps; empty when all laws hold
std::string play(u64 seed, std::size_t steps, history_mix mix);
/// \returns the bytes around the place from which on two streams differ
std::string first_difference(const std::string& wanted, const std::string& is);
/// \returns the report of the shortest prefix of a failing history that still fails
std::string cut(u64 seed, std::size_t steps, history_mix mix);

} // namespace kelm::test
