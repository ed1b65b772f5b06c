// What a composition adds to meta_base.
// The copies that a model's own types show are made in meta_object_proxy.cpp.
#include "meta/meta_composition_impl.h"

#include "meta/meta_object_base.h"

namespace kelm {

std::string meta_composition_impl::alternative_name() const {
    const abstract_property* const value = find_attribute(attribute_id::alternative_name);
    return value ? value->to_string() : name();
}

void meta_composition_impl::add_base(meta_composition* base) {
    meta_base::add_base(dynamic_cast<meta_composition_impl*>(base));
}

void meta_composition_impl::remove_base(meta_composition* base) {
    meta_base::remove_base(dynamic_cast<meta_composition_impl*>(base));
}

std::vector<meta_composition*> meta_composition_impl::bases() const {
    return bases_as<meta_composition, meta_composition_impl>();
}

meta_object* meta_composition_impl::child_meta_object() const { return meta_model_->find_meta_object(id()); }

const abstract_property* meta_composition_impl::search(u32 attribute, visited& been) const {
    if (const abstract_property* const value = meta_base::search(attribute, been)) return value;
    // Also for what a base does not pass on: the child type is no base, it is what this composition stands for.
    const auto* const child = dynamic_cast<const meta_object_base*>(child_meta_object());
    return child ? child->find_attribute(attribute) : nullptr;
}

} // namespace kelm
