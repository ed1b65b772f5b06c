// The types that all tests of objects share, and a fresh model for each test.
// Start-up happens once a process; what a test programs or attaches goes with the test.
#pragma once

#include "tests/support/hooks.h"
#include "tests/support/recorder.h"

#include <kelm/kelm.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelm::test {

/// Types that every test can use.  `thing`, `part` and `other` may own one another and themselves.
namespace types {
inline constexpr u32 thing = 100;
inline constexpr u32 part = 101;
inline constexpr u32 other = 102;
inline constexpr u32 special_thing = 103; ///< derived from thing
inline constexpr u32 abstract = 104;      ///< generic
inline constexpr u32 hooked = 110;        ///< has a programmable hook of each kind
inline constexpr u32 hooked_part = 111;   ///< the same, for children and inheritors of another type
inline constexpr u32 more_hooked = 112;   ///< derived from hooked, with a second hook of each kind
} // namespace types

/// Properties of thing, part and hooked; `other` has only name, definition, text and reference.
namespace props {
inline constexpr u32 name = 1;
inline constexpr u32 definition = 2;
inline constexpr u32 text = 10;
inline constexpr u32 number = 11;
inline constexpr u32 flag = 12;
inline constexpr u32 reference = 13;
inline constexpr u32 list = 14;
inline constexpr u32 real = 15;
inline constexpr u32 not_inheritable = 16; ///< a text marked with meta attribute 6
} // namespace props

/// Starts the process up with the types above; does nothing when that has been done.
framework& started_framework();

/// The values that tests write again and again.
inline property<std::string> text(const std::string& value) { return property<std::string>{value}; }
inline property<int> number(int value) { return property<int>{value}; }
inline property<bool> flag(bool value) { return property<bool>{value}; }
inline property<object*> reference(object* target) { return property<object*>{target}; }

/// \returns the text of a value; "none" for an empty one
std::string as_text(const value_ptr& value);
/// \returns the names of objects, joined by blanks
std::string names_of(const std::vector<object*>& objects);

/// A fresh model, closed behind the test.
class world : public ::testing::Test {
protected:
    world();
    ~world() override;

    /// A named object below `owner`, or below the root.  Made in a transaction of its own, which is then forgotten, so
    /// that a test begins with an empty history, unless one is open.
    object* make(u32 type, const std::string& name, object* owner = nullptr);
    object* thing(const std::string& name, object* owner = nullptr) {
        return make(types::thing, name, owner);
    }
    object* part(const std::string& name, object* owner = nullptr) { return make(types::part, name, owner); }
    object* hooked(const std::string& name, object* owner = nullptr) {
        return make(types::hooked, name, owner);
    }

    void begin(const std::string& name = "t") { model->begin_transaction(name); }
    void end() { model->end_transaction(); }
    /// \returns the messages of the history from `from` on, one line each: the number, then the description
    std::string history(std::size_t from = 0) const;
    /// \returns the numbers of the messages of the history, joined by blanks
    std::string message_types(std::size_t from = 0) const;
    /// \returns the newest message
    message* last_message() const { return model->message_at(model->message_count() - 1); }
    /// \returns a canonical text of everything in the model, back-lists included
    std::string dump() const;
    /// Expects that undo leads back to `before`, a dump(), and redo from there to the present state, again and again.
    void expect_undone_and_redone(const std::string& before);

    framework& fw;
    object* root;
    kelm::model* model;
    hook_program& hooks; ///< what the hooks of types::hooked and types::hooked_part do
};

/// \returns a text of a value in which references are ids and elements can be told apart
std::string dump_text(const abstract_property* value);

/// \returns a canonical text of a model: objects by id with owners, children, values, bases and back-lists
std::string dump_of(kelm::model& of);

} // namespace kelm::test
