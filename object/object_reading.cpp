// Reading values of an object.
// Where a value is found is effective_value; reading never changes an object, but hooks of reads may.
#include "object/effective_value.h"
#include "object/read_in_progress.h"

#include <boost/make_shared.hpp>

namespace kelm {

bool object_impl::has_property(u32 id) const {
    if (plainly_stored_value(*this, id)) return true;
    const read_in_progress guard{model_};
    return find_effective_value(*this, id).value != nullptr;
}

value_ptr object_impl::get_property(u32 id) const {
    if (value_ptr scalar = shared_scalar(plainly_stored_value(*this, id))) return scalar;
    const read_in_progress guard{model_};
    return share(find_effective_value(*this, id).take());
}

bool object_impl::get_property_as_string(u32 id, std::string& out, value_ptr* value) const {
    const read_in_progress guard{model_};
    effective_value found = find_effective_value(*this, id);
    if (!found.value) {
        out.clear();
        return false;
    }
    found.value->to_string(out);
    if (!value && !has_hooks<post_prop_get_as_string_semantic>()) return true;
    const value_ptr shared = share(found.take());
    if (value) *value = shared;
    return ask_hooks<post_prop_get_as_string_semantic>(
        semantic_table_,
        [&](post_prop_get_as_string_semantic& h) { return h.do_it(face_for_hooks(), id, out, shared); });
}

value_ptr object_impl::get_own_property(u32 id) const { return shared_clone(values_.find(id)); }

void object_impl::own_properties(value_map& out) const {
    for (const auto& [id, value] : values_)
        if (value && !out.contains(id)) out.emplace(id, shared_clone(value));
}

shared_ptr<value_map> object_impl::own_properties() const {
    auto out = boost::make_shared<value_map>();
    own_properties(*out);
    return out;
}

void object_impl::all_properties(value_map& out) const {
    const read_in_progress guard{model_};
    const meta_object* const type = meta();
    if (!type) return;
    for (const meta_property* const each : type->properties()) {
        const u32 id = each->id();
        if (value_ptr value = get_property(id)) out.emplace(id, std::move(value));
    }
}

shared_ptr<value_map> object_impl::all_properties() const {
    auto out = boost::make_shared<value_map>();
    all_properties(*out);
    return out;
}

} // namespace kelm
