// Filing and finding hooks.
// Running them is run_hooks.h.
#include "framework/semantic_table.h"

#include <algorithm>

namespace kelm {

namespace {

template <class Hook>
bool is_of_class(const semantic& hook) {
    return dynamic_cast<const Hook*>(&hook) != nullptr;
}

/// run_hooks() casts by kind number alone; this is where the number is held against the class.
template <class... Kinds>
bool number_tells_class(const semantic& hook, kind_list<Kinds...>) {
    return ((hook.type() != Kinds::kind || is_of_class<Kinds>(hook)) && ...);
}

} // namespace

bool semantic_table::add(const shared_ptr<semantic>& hook) {
    const int kind = hook->type();
    if (kind < 0 || kind >= all_semantics::size || !number_tells_class(*hook, all_semantics{})) return false;
    auto& list = lists_[static_cast<std::size_t>(kind)];
    const u32 id = hook->id();
    if (list && std::ranges::any_of(*list, [&](const auto& there) { return there->id() == id; }))
        return false;
    if (!list) list = std::make_unique<hooks>();
    list->push_back(hook);
    if (kind == post_prop_get_semantic::kind)
        reads_are_plain_ = list->size() == 1 && is_of_class<supplies_absent_values>(*hook);
    return true;
}

semantic* semantic_table::find(u32 id) const {
    for (const auto& list : lists_) {
        if (!list) continue;
        const auto at = std::ranges::find_if(*list, [&](const auto& hook) { return hook->id() == id; });
        if (at != list->end()) return at->get();
    }
    return nullptr;
}

bool semantic_table::empty() const {
    return std::ranges::all_of(lists_, [](const auto& list) { return !list; });
}

} // namespace kelm
