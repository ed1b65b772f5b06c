// Walks up the bases with explicit stacks: chains of bases can be as long as a model is big.
// Nothing here runs code of an application.
#include "object/base_search.h"

#include "object/inheritor_walk.h"

namespace kelm {

void base_search::ask_bases_of(const object_impl& at, u32 id) {
    if (!at.bases()) return;
    for (auto base = at.bases()->rbegin(); base != at.bases()->rend(); ++base)
        if (may_be_asked(at, **base, id)) pending_.push_back(*base);
}

object_impl* base_search::first_of_pending(u32 id) {
    met_.clear();
    while (!pending_.empty()) {
        object_impl* const at = pending_.back();
        pending_.pop_back();
        if (!met_.meet(*at)) continue;
        if (at->defines_property(id)) return at;
        if (at->bases() && inherits_values_of(*at, id)) ask_bases_of(*at, id);
    }
    return nullptr;
}

object_impl* base_search::source_by(const object_impl& of, const object_impl& base, u32 id) {
    if (!may_be_asked(of, base, id)) return nullptr;
    pending_.assign(1, const_cast<object_impl*>(&base));
    return first_of_pending(id);
}

object_impl* base_search::source_above(const object_impl& of, u32 id) {
    pending_.clear();
    ask_bases_of(of, id);
    return first_of_pending(id);
}

bool inherits_values_of(const object_impl& of, u32 id) {
    return !of.defines_property(id) && !of.is_property_not_inheritable(id) && may_pass(of, id);
}

bool inherits_in_turn(const object_impl& of, const object_impl& base) {
    if (!of.bases() || !base.inheritor_links()) return false; // the two lists are in step
    std::vector<const object_impl*> pending{&of};
    met_objects met;
    while (!pending.empty()) {
        const object_impl* const at = pending.back();
        pending.pop_back();
        if (!at->bases() || !met.meet(*at)) continue;
        for (const object_impl* const each : *at->bases()) {
            if (each == &base) return true;
            pending.push_back(each);
        }
    }
    return false;
}

} // namespace kelm
