// Questions about bases: the list itself, where a value comes from, and what is refused.
// What a read finds, with hooks, is object_reading.cpp.
#include "object/base_search.h"
#include "object/inheritor_walk.h"

#include <algorithm>

namespace kelm {

bool object_impl::inherits_from(object* base, bool recursive) const {
    if (!links().inherits_from || !base) return false;
    return recursive ? inherits_in_turn(*this, *impl_of(base)) : inherits_from_position(base) != npos;
}

std::size_t object_impl::inherits_from_list(std::vector<object*>& out, u32 type) const {
    if (links().inherits_from)
        for (object_impl* const each : *links().inherits_from)
            if (type == 0 || each->type_id_ == type) out.push_back(each);
    return out.size();
}

std::vector<object*> object_impl::inherits_from_list(u32 type) const {
    std::vector<object*> out;
    inherits_from_list(out, type);
    return out;
}

std::size_t object_impl::inherits_from_list(std::vector<object*>& out) const {
    out.clear();
    return inherits_from_list(out, 0);
}

std::size_t object_impl::inherits_from_position(object* base) const {
    if (!links().inherits_from) return npos;
    const auto at =
        std::ranges::find(*links().inherits_from, base, [](object_impl* each) -> object* { return each; });
    return at == links().inherits_from->end() ? npos
                                              : static_cast<std::size_t>(at - links().inherits_from->begin());
}

object* object_impl::inherits_from_at(std::size_t position) const {
    return links().inherits_from && position < links().inherits_from->size()
               ? (*links().inherits_from)[position]
               : nullptr;
}

bool object_impl::inherits_property(u32 id, bool deep) const {
    if (!links().inherits_from || !inherits_values_of(*this, id)) return false;
    if (deep) return base_search{}.source_above(*this, id) != nullptr;
    // A hook of the question may change the list.
    for (std::size_t i = 0; links().inherits_from && i < links().inherits_from->size(); ++i) {
        const object_impl& base = *(*links().inherits_from)[i];
        if (may_be_asked(*this, base, id) && base.has_property(id)) return true;
    }
    return false;
}

object* object_impl::property_source(u32 id) const {
    if (defines_property(id)) return face_for_hooks();
    if (!links().inherits_from || !inherits_values_of(*this, id)) return nullptr;
    return base_search{}.source_above(*this, id);
}

bool object_impl::is_property_not_inheritable(u32 id) const {
    return links().not_inheritable &&
           std::ranges::find(*links().not_inheritable, id) != links().not_inheritable->end();
}

std::vector<u32> object_impl::not_inheritable_properties() const {
    return links().not_inheritable ? *links().not_inheritable : std::vector<u32>{};
}

std::vector<object*> object_impl::inheritors() const {
    return links().inheritors ? links().inheritors->distinct() : std::vector<object*>{};
}

} // namespace kelm
