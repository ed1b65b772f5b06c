// A model in which every operation that runs hooks can be called, and the table of these operations by kind.
// What is asked of each row is every_hook_test.
#pragma once

#include "tests/object/hook_lines.h"
#include "tests/support/model_hooks.h"

#include <span>
#include <string>

namespace kelm::test {

/// What is open around an operation.
enum class around { nothing, a_transaction, a_nested_level };
inline constexpr around all_around[] = {around::nothing, around::a_transaction, around::a_nested_level};

/// One object with hooks, `h`, that has values, a list, two bases, two children and a child that is in no list;
/// nobody else here has hooks.  A stage is a world that a test can have as many of as it likes.
class hook_stage final : public hooked_model_world {
public:
    /// \param type  of `h`
    explicit hook_stage(u32 type = types::hooked);

    using world::dump;
    using world::fw;
    using world::hooks;
    using world::model;
    using world::root;

    /// Programs the hook of a kind; a number and `second` for the second hook of a kind.
    void on(int kind, hook_program::action what);
    /// Has all hooks pass again.
    void pass_all();
    /// Opens what is to be around the operation, with a change of `other` at each level.
    void open(around what);
    /// Closes what open() has opened.
    void close();
    /// \returns the changes of `other` that stand: one of the outer level, one of the nested level
    std::string outer_changes() const;
    /// Changes `other` once more, and deletes `victim`.
    bool react();

    object* h;
    object* base;        ///< has the text that `h` inherits
    object* second_base; ///< has nothing
    object* spare;       ///< no base yet
    object* child;
    object* sibling;
    object* loose;   ///< a child of `h` that is not in its list
    object* watched; ///< `h` observes it
    object* other;
    object* victim;
    std::string before; ///< everything in the model

private:
    void TestBody() override {} // it is no test by itself
};

/// When a kind runs, and so what its refusal means.
enum class moment {
    mutation, ///< the open level is taken back
    reading,  ///< nothing is taken back
    end       ///< the transaction that has just ended is undone
};

/// One operation that runs the hooks of a kind.
struct hook_row {
    int kind;
    const char* why;
    moment when;
    std::string (*run)(hook_stage&); ///< the operation; the result is its answer
    const char* told;                ///< the arguments of the hook
    const char* passed;              ///< the answer when the hook passes
    const char* refused;             ///< the answer when the hook refuses
    bool leaves_something;           ///< whether a refusal outside a transaction leaves a change behind
    const char* gone;                ///< the answer when the hook deletes the object that it runs on

    /// \returns whether the in-semantic mark is set while the hook runs
    constexpr bool is_marked() const { return kind < 4 || kind > 6; }
};

/// \returns the table, by ascending kind
std::span<const hook_row> hook_rows();

/// \returns what a hook is told, in a line
std::string told(const hook_call& call);

} // namespace kelm::test
