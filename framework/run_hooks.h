// The one dispatcher of hooks.
// What follows a refusal is the caller's business.
#pragma once

#include "framework/semantic_table.h"
#include "util/process_state.h"

#include <memory>

namespace kelm {

/// Calls `call(hook)` for each hook of a kind, in list order, until one answers false.
/// An index loop over a copy of the pointer: a hook may register others, which then do not run in this round.
template <class Hook, class Call>
bool ask_hooks(const semantic_table* table, Call&& call) {
    const semantic_table::hooks* list = table ? table->of<Hook>() : nullptr;
    if (!list) return true; // the common case: two reads
    const std::size_t count = list->size();
    for (std::size_t i = 0; i != count; ++i) {
        const shared_ptr<semantic> hook = (*list)[i]; // stays alive while it runs
        if (!call(static_cast<Hook&>(*hook))) return false;
    }
    return true;
}

/// The same with the in-semantic mark set meanwhile, so that what hooks change is not taken for a user's work.
template <class Hook, class Call>
bool run_hooks(const semantic_table* table, Call&& call) {
    if (!table || !table->of<Hook>()) return true;
    bool& mark = process().in_semantic;
    const bool before = mark;
    mark = true;
    // Kept: on a refusal, or when a hook throws, the mark stays set until a rollback or the next outermost
    // transaction clears it.  A scope guard here would change what applications see after a refusal.
    if (!ask_hooks<Hook>(table, static_cast<Call&&>(call))) return false;
    mark = before;
    return true;
}

} // namespace kelm
