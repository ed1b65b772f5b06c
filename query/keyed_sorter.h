// The comparison that all sorters by a text share.
// What the text of an object is, and how two of them compare, is each sorter's own: sorters.cpp.
#pragma once

#include <kelm/sorters.h>

#include <string>
#include <utility>

namespace kelm {

/// What a sorter is made of; each specialisation has
/// - `static Id id(const object*)`: what its keys are kept by,
/// - `static std::string key(const object*)`: a key, built anew,
/// - `static bool before(const std::string&, const std::string&)`.
template <class Derived>
struct sort_rule;

template <class Derived, class Id>
bool keyed_sorter<Derived, Id>::do_it(const object* a, const object* b) const {
    // Copies, one pair a class: building the second key may run a hook, and that may clear this very sorter.
    // Never destroyed, since listings may run after main.
    static auto& left = *new std::string;
    static auto& right = *new std::string;
    left = key(a);
    right = key(b);
    return sort_rule<Derived>::before(left, right);
}

template <class Derived, class Id>
const std::string& keyed_sorter<Derived, Id>::key(const object* of) const {
    using rule = sort_rule<Derived>;
    const Id id = rule::id(of);
    if (const auto found = cache_.find(id); found != cache_.end()) return found->second;
    std::string made = rule::key(of);
    return cache_.emplace(id, std::move(made)).first->second;
}

} // namespace kelm
