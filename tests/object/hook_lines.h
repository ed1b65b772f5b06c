// Hooks that write a line for each call, without reading through hooks themselves.
// What the hooks answer is programmed with hook_program.
#pragma once

#include "tests/support/world.h"

#include <algorithm>
#include <string>
#include <vector>

namespace kelm::test {

/// \returns the own name of an object; "model" for a root
inline std::string own_name(const object* of) {
    if (!of) return "null";
    return of->type() == type_id::model ? "model" : as_text(of->get_own_property(props::name));
}

/// \returns the own names, joined by blanks
inline std::string own_names(const std::vector<object*>& of) {
    std::string names;
    for (const object* each : of) names += (names.empty() ? "" : " ") + own_name(each);
    return names;
}

/// \returns "kind object others numbers"
inline std::string line_of(const hook_call& call) {
    std::string line = std::to_string(call.kind) + " " + own_name(call.at);
    for (const object* each : call.others) line += " " + own_name(each);
    for (const std::size_t n : call.numbers) line += " " + (n == npos ? "npos" : std::to_string(n));
    return line;
}

/// Has the hooks of some kinds pass and write their lines.
inline void write_down(hook_program& hooks, std::string& lines, const std::vector<int>& kinds) {
    for (const int kind : kinds)
        hooks.on(kind, [&lines](hook_call& call) {
            lines += line_of(call) + "\n";
            return true;
        });
}

} // namespace kelm::test
