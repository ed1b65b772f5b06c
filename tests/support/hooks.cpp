// Hooks that a test can program.
// One class template serves all kinds.
#include "tests/support/hooks.h"

#include <kelm/meta_model.h>
#include <kelm/model.h>
#include <kelm/object_helpers.h>

#include <type_traits>

namespace kelm::test {

namespace {

void note(hook_call& call, object* argument) {
    if (!call.at)
        call.at = argument;
    else
        call.others.push_back(argument);
}
void note(hook_call& call, kelm::model* argument) { call.at = argument->as_object(); }
void note(hook_call& call, subject* argument) { call.from = argument; }
void note(hook_call& call, message* argument) { call.told = argument; }
void note(hook_call& call, const abstract_property& argument) { call.values.push_back(argument.to_string()); }
void note(hook_call& call, const value_ptr& argument) {
    call.values.push_back(argument ? argument->to_string() : "none");
}
void note(hook_call& call, abstract_property*& argument) { call.replaceable = &argument; }
void note(hook_call& call, std::string& argument) { call.text = &argument; }
template <class Number>
requires std::is_integral_v<Number>
void note(hook_call& call, Number argument) { call.numbers.push_back(static_cast<std::size_t>(argument)); }

template <class Kind, class Base, int Rank>
class programmable;

/// \tparam Rank  0 for the first hook of the kind, `second` for one more
template <class Kind, int Number, class... Arguments, int Rank>
class programmable<Kind, semantic_of<Number, Arguments...>, Rank> final : public Kind {
public:
    u32 id() const override { return 1000 + static_cast<u32>(Number + Rank); }
    bool do_it(Arguments... arguments) override {
        hook_call call;
        call.kind = Number + Rank;
        (note(call, arguments), ...);
        return hook_program::instance().call(call);
    }
};

/// Stands for the kind that the library never calls.
template <int Rank>
class never_called final : public validate_semantic {
public:
    u32 id() const override { return 1000 + static_cast<u32>(kind + Rank); }
};

template <int Number, class... Arguments>
semantic_of<Number, Arguments...> base_of(const semantic_of<Number, Arguments...>&);

template <class Kind, int Rank>
void add_one(meta_object& type) {
    if constexpr (std::is_same_v<Kind, validate_semantic>) {
        type.add_semantic(new never_called<Rank>);
    } else {
        using base = decltype(base_of(std::declval<const Kind&>()));
        type.add_semantic(new programmable<Kind, base, Rank>);
    }
}

template <int Rank, class... Kinds>
void add_all(meta_object& type, kind_list<Kinds...>) {
    (add_one<Kinds, Rank>(type), ...);
}

} // namespace

hook_program& hook_program::instance() {
    static hook_program the_one;
    return the_one;
}

std::string hook_program::take_log() { return std::exchange(log_, {}); }

void hook_program::clear() {
    actions_.clear();
    records_ = false;
    log_.clear();
}

bool hook_program::call(hook_call& what) {
    if (records_) {
        records_ = false; // names are read through hooks as well
        log_ += std::to_string(what.kind);
        if (what.at) log_ += " " + (what.at->type() == type_id::model ? "model" : object_name(what.at));
        for (const object* other : what.others) log_ += " " + (other ? object_name(other) : "null");
        for (const std::size_t n : what.numbers) log_ += " " + std::to_string(n);
        for (const std::string& v : what.values) log_ += " '" + v + "'";
        log_ += "\n";
        records_ = true;
    }
    const auto found = actions_.find(what.kind);
    if (found == actions_.end()) return true;
    const action copy = found->second; // it may reprogram itself
    return copy(what);
}

void add_programmable_hooks(meta_object& type) { add_all<0>(type, all_semantics{}); }

void add_second_hooks(meta_object& type) { add_all<second>(type, all_semantics{}); }

} // namespace kelm::test
