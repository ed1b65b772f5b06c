// Questions about references between objects.
// Back-lists are kept by the silent edits.
#include "object/read_in_progress.h"
#include "object/reference_targets.h"

#include <kelm/meta_model.h>

#include <algorithm>
#include <map>
#include <unordered_set>

namespace kelm {

namespace {

/// Calls `visit(id, value)` for the effective value of each property of the type, ascending by id.
template <class Visit>
void for_each_effective(const object_impl& of, Visit&& visit) {
    const read_in_progress guard{of.owning_model()};
    const meta_object* const type = of.meta();
    if (!type) return;
    std::map<u32, const meta_property*> by_id;
    for (const meta_property* each : type->properties()) by_id.emplace(each->id(), each);
    for (const auto& [id, each] : by_id)
        if (const value_ptr value = of.get_property(id)) visit(id, *value);
}

} // namespace

std::vector<object*> back_links::distinct() const {
    std::vector<object*> out;
    for (object_impl* const each : links_)
        if (out.empty() || out.back() != each) out.push_back(each); // equal entries stand together
    return out;
}

std::vector<object*> object_impl::referencing_objects() const {
    return links().referencing ? links().referencing->distinct() : std::vector<object*>{};
}

std::vector<object*> object_impl::referenced_objects() const {
    std::vector<object*> out;
    std::unordered_set<object*> seen;
    for_each_effective(*this, [&](u32, const abstract_property& value) {
        for_each_target(&value, [&](object* target) {
            if (seen.insert(target).second) out.push_back(target);
        });
    });
    return out;
}

std::vector<u32> object_impl::referencing_property_ids(object* target) const {
    std::vector<u32> out;
    for_each_effective(*this, [&](u32 id, const abstract_property& value) {
        bool refers = false;
        for_each_target(&value, [&](object* each) { refers = refers || each == target; });
        if (refers) out.push_back(id);
    });
    return out;
}

} // namespace kelm
