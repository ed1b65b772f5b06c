// The hooks that keep a schema in order, and the base that they share.
// Each family is in a file of its own; they are registered by meta_model.cpp, once its types are there.
#pragma once

#include "hooks/rules.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/semantic.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace schema {

/// A hook of one kind that keeps a rule.  A class derived from it supplies do_it(), which asks hold() first, and says
/// why when it refuses.
template <class Kind>
class rule : public Kind {
public:
    explicit rule(rules& shared) : rules_(shared) {}
    /// A type holds one hook of an id and a kind, so one id serves all families while no type has two of a kind.
    kelm::u32 id() const override { return 100; }

protected:
    bool hold() const { return rules_.hold(); }
    bool refuse(std::string why) { return rules_.refuse(std::move(why)); }
    rules& shared() { return rules_; }

private:
    rules& rules_;
};

/// The library leaves this kind to applications: here it asks whether an object is whole.
class validate_object : public kelm::validate_semantic {
public:
    virtual bool do_it(kelm::object& what) = 0;
};

/// Registers a new hook with a type of the application, which owns it from then on.
/// \throws std::logic_error when the type has one of that kind and id already
template <class Hook>
void add_hook(kelm::u32 type, rules& shared) {
    auto hook = std::make_unique<Hook>(shared);
    kelm::meta_object& of = *kelm::framework::instance().application_meta_model()->find_meta_object(type);
    if (!of.add_semantic(hook.get())) throw std::logic_error("two hooks of a type share a kind and an id");
    static_cast<void>(hook.release());
}

/// Names are not empty, and each but once where it counts.
void add_name_hooks(rules& shared);
/// A table has one primary key, a key has a column but once, and a new foreign key has a target that fits.
void add_key_hooks(rules& shared);
/// What is in use stays, or its users go with it.
void add_drop_hooks(rules& shared);
/// A user-defined property with choices has one of them as its value.
void add_property_hooks(rules& shared);
/// The version of a file that is read is kept.
void add_version_hooks(rules& shared);

/// Asks an object that cannot be made whole at once, as a foreign key, whether it is whole by now.
/// \returns false when a rule is broken, with its reason in the rules that the hooks share
bool is_whole(kelm::object& what);
/// Asks what `note_unfinished` has kept whether it is whole by now.
/// \returns false when a rule is broken, with its reason in `shared`
bool validate(kelm::model& in, rules& shared);

} // namespace schema
