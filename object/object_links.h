// What few objects have: bases and inheritors, who refers to them, marks, observers that are objects, a kept name.
// Keeping both sides of a link in step is the silent edits' business.
#pragma once

#include "object/back_links.h"
#include "util/free_list.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace kelm {

/// Made with the first of them.  Each list is null while it is empty.
struct object_links : pooled<> {
    std::unique_ptr<std::vector<object_impl*>> inherits_from; // in priority order
    std::unique_ptr<back_links> referencing;                  // one entry a referring value
    std::unique_ptr<back_links> inheritors;
    std::unique_ptr<std::vector<u32>> not_inheritable; // in order of marking
    std::unique_ptr<std::set<u32>> observer_ids;       // of the objects among the observers
    std::unique_ptr<std::string> cached_name;

    /// What an object has that has none of them.
    static const object_links none;
};

inline const object_links object_links::none{};

} // namespace kelm
