// Hooks that a test can program: one of each kind, on two types, asking one table what to do.
// Nothing is asserted here.
#pragma once

#include <kelm/object.h>
#include <kelm/property.h>
#include <kelm/semantic.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace kelm::test {

/// One call of a hook, in a form that suits all kinds.
struct hook_call {
    int kind = 0;
    object* at = nullptr;                      ///< the object whose type holds the hook
    std::vector<object*> others;               ///< further objects, in the order of the arguments
    std::vector<std::size_t> numbers;          ///< ids, positions, flags, versions
    std::vector<std::string> values;           ///< texts of values; "none" for an empty one
    abstract_property** replaceable = nullptr; ///< the value that a hook behind a read may replace
    std::string* text = nullptr;               ///< the text that a hook behind a read as text may change
    subject* from = nullptr;                   ///< who told of an update
    message* told = nullptr;                   ///< the message of an update
};

/// What the hooks of the test types do, by kind; hooks that are not programmed pass.
class hook_program {
public:
    using action = std::function<bool(hook_call&)>;

    /// \returns the one program
    static hook_program& instance();

    void on(int kind, action what) { actions_[kind] = std::move(what); }
    template <class Kind>
    void on(action what) {
        on(Kind::kind, std::move(what));
    }
    void refuse(int kind) {
        on(kind, [](hook_call&) { return false; });
    }
    template <class Kind>
    void refuse() {
        refuse(Kind::kind);
    }
    /// Writes each call down as a line "kind name-of-object others numbers values", in log().
    void record(bool on) { records_ = on; }
    std::string take_log();
    void clear();
    bool call(hook_call& what);

private:
    std::map<int, action> actions_;
    bool records_ = false;
    std::string log_;
};

/// Registers a programmable hook of each kind on a type.
void add_programmable_hooks(meta_object& type);

/// What the second hooks of a type are programmed and recorded as: the kind, and a hundred.
inline constexpr int second = 100;
/// Registers a second hook of each kind.
void add_second_hooks(meta_object& type);

} // namespace kelm::test
