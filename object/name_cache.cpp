// The name that an object keeps while a compare runs.
// When it is given out instead of a reading is util/object_names.
#include "util/object_names.h"

#include "object/model_impl.h"

#include <kelm/object_helpers.h>

namespace kelm {

void object_impl::cache_name(const std::string& name) {
    auto& kept = made_links().cached_name;
    if (kept)
        *kept = name;
    else
        kept = std::make_unique<std::string>(name);
}

const std::string& cached_name(const object& what) {
    static const auto& none = *new std::string;
    const std::string* const kept = impl_of(&what)->cached_name();
    return kept ? *kept : none;
}

void cache_names(object& top) {
    // What hooks of the reads delete is not freed before the walk has passed it.
    const message_history_impl::in_use guard{impl_of(&top)->owning_model()->log()};
    std::vector<object*> waiting{&top}; // trees are deeper than stacks
    std::vector<object*> children;
    while (!waiting.empty()) {
        object_impl* const next = impl_of(waiting.back());
        waiting.pop_back();
        next->cache_name(fast_unsafe_object_name(next));
        next->children(children);
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    }
}

} // namespace kelm
