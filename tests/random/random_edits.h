// Random histories of a model: seeded steps, each written down as code, and the laws that are held against them.
// What is no law by design is left out by name, see `random_run`.
#pragma once

#include "tests/support/world.h"

#include <memory>
#include <string>
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

/// A kind of value that knows how many of it live.
class counted_value final : public abstract_property {
public:
    static inline long alive = 0;

    explicit counted_value(int initial) : value_(initial) { ++alive; }
    counted_value(const counted_value& other) : abstract_property(other), value_(other.value_) { ++alive; }
    ~counted_value() override { --alive; }

    owned<abstract_property*> clone() const override { return new counted_value(*this); }
    bool equals(const abstract_property* other) const override;
    std::string to_string() const override { return "counted " + std::to_string(value_); }
    void to_string(std::string& out) const override { out = to_string(); }
    void from_string(const std::string&) override {}
    void write(std::ostream&) const override {}
    void read(std::istream&, std::vector<reference_record>&, object*) override {}

private:
    int value_;
};

/// An observer that refuses now and then.  It lets the making and deleting of objects pass: what a refusal leaves of
/// these half-way is no state that redo could come back to.
class moody_observer final : public observer_impl {
public:
    explicit moody_observer(random_numbers& numbers) : numbers_(numbers) {}
    ~moody_observer() override;
    bool update(subject* from, message* what) override;
    bool refuses = false;

private:
    random_numbers& numbers_;
};

/// One history of a fresh model.  Every step is random; the laws are checked whenever a transaction ends, is undone,
/// redone or rolled back.
///
/// Left out, since these cannot be undone by design: a child position behind the end, an element move whose target
/// is refused, changes outside a transaction, and an observer that refuses the making or deletion of an object.
class random_run {
public:
    /// \param with_bases  also links objects to bases
    random_run(u64 seed, bool with_bases);
    ~random_run();
    random_run(const random_run&) = delete;
    random_run& operator=(const random_run&) = delete;

    void step();
    /// Ends what is open, undoes everything and redoes everything.
    void finish();
    /// Closes the model.
    void close();
    /// \returns what was broken; empty while all laws hold
    const std::string& failure() const { return failure_; }
    /// \returns the steps as code
    const std::vector<std::string>& steps() const { return steps_; }

private:
    void program_hooks();
    void populate();
    bool react();
    void step_outside();
    void step_inside();
    void edit();
    void edit_tree();
    void edit_value();
    void edit_element();
    void edit_base();
    void edit_observer();
    void begin();
    void end();
    void undo();
    void redo();
    void settle();
    void check(const char* what, const std::string& expected);
    void check_links();
    std::size_t open_levels() const;
    object* any();
    object* any_or_root();
    std::unique_ptr<abstract_property> value(bool may_be_list);
    void note(const std::string& step) { steps_.push_back(step); }
    bool one_in(std::size_t n) { return numbers_.one_in(n); }

    random_numbers numbers_;
    bool with_bases_;
    object* root_;
    kelm::model* model_;
    moody_observer moody_;
    int reacting_ = 0;
    std::vector<std::string> levels_; // dumps of the moments before the begins of the open levels
    std::vector<std::string> states_; // dumps between the transactions that undo and redo lead through
    std::size_t at_ = 0;              // where in them the model stands
    std::vector<std::string> steps_;
    std::string failure_;
};

/// Plays a history of `steps` steps.  \returns what was broken, with the steps; empty when all laws hold
std::string play(u64 seed, std::size_t steps, bool with_bases);
/// \returns the report of the shortest prefix of a failing history that still fails
std::string cut(u64 seed, std::size_t steps, bool with_bases);

} // namespace kelm::test
