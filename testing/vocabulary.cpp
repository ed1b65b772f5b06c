// Reading a meta model.
// Everything goes through the public interface.
#include "testing/vocabulary.h"

#include <kelm/framework.h>
#include <kelm/property.h>
#include <kelm/semantic.h>

#include <algorithm>
#include <memory>

namespace kelm::testing {

namespace {

constexpr u32 last_built_in_hook = 8;

bool can_be_made(const meta_object& type) {
    return !type.is_generic() && type.id() != type_id::model && type.id() != type_id::library &&
           type.id() != type_id::user_defined_property;
}

bool can_be_set(const meta_property& which) {
    const u32 kind = which.property_class();
    if (which.id() >= property_id::udp_multiline_value || kind == data_type::id_map) return false;
    return std::unique_ptr<abstract_property>{framework::instance().create_value(kind)} != nullptr;
}

std::vector<std::string> choices_of(const meta_property& which) {
    std::vector<std::string> out;
    const value_ptr value = which.attribute_value(attribute_id::default_value_choices);
    const auto* const list = dynamic_cast<const vector_property*>(value.get());
    if (!list || which.property_class() != data_type::string) return out;
    for (const abstract_property* each : list->elements)
        if (each) out.push_back(each->to_string());
    return out;
}

bool has_hook(const meta_object& type, int kind) {
    std::vector<shared_ptr<semantic>> hooks;
    return type.semantics_of_kind(kind, hooks) &&
           std::ranges::any_of(hooks, [](const auto& each) { return each->id() > last_built_in_hook; });
}

void look_for_hooks(vocabulary& out, const meta_object& type) {
    for (int kind = 0; kind != all_semantics::size; ++kind) {
        if (!has_hook(type, kind)) continue;
        out.has_hooks = true;
        if (kind >= pre_prop_get_semantic::kind && kind <= post_prop_get_as_string_semantic::kind)
            out.has_read_hooks = true;
    }
}

} // namespace

vocabulary vocabulary_of(meta_model& types, const std::map<u32, u32>& element_kinds,
                         const std::map<u32, std::vector<std::string>>& texts) {
    vocabulary out;
    for (const meta_object* each : types.meta_objects()) {
        look_for_hooks(out, *each);
        if (!can_be_made(*each) && each->id() != type_id::model) continue;
        vocabulary::type& made = out.types[each->id()];
        made.id = each->id();
        for (const meta_property* declared : each->properties()) {
            if (!can_be_set(*declared)) continue;
            vocabulary::property added{declared->id(), declared->property_class(), 0, choices_of(*declared)};
            if (const auto found = element_kinds.find(added.id); found != element_kinds.end())
                added.element_kind = found->second;
            if (const auto found = texts.find(added.id); found != texts.end()) added.texts = found->second;
            made.properties.push_back(std::move(added));
        }
        for (const meta_composition* child : each->compositions())
            if (const meta_object* const type = types.find_meta_object(child->id());
                type && can_be_made(*type))
                made.children.push_back(child->id());
    }
    return out;
}

} // namespace kelm::testing
