// Values of now are asked of the object, values of before of the delta.
// References are told by the names of what they lead to.
#include "changes/changed_values.h"

#include "schema/types.h"
#include "schema/values.h"

#include <kelm/meta_model.h>
#include <kelm/object_helpers.h>
#include <kelm/property.h>

namespace schema {

namespace {

std::string to_text(const kelm::abstract_property& value) {
    const auto* reference = dynamic_cast<const kelm::property<kelm::object*>*>(&value);
    return reference ? kelm::object_name(reference->value) : value.to_string();
}

/// What nobody has set is told where it says something.
void take_value_now(const kelm::object& what, value_change& into) {
    const kelm::value_ptr value = what.get_property(into.property);
    if (!value) return;
    const std::string text = to_text(*value);
    const kelm::object* source = what.property_source(into.property);
    if (!source && text.empty()) return;
    into.after = text;
    into.by_default = !source;
    if (source && source != &what) into.inherited_from = name(*source);
}

void take_value_before(const kelm::delta_detail& of, value_change& into) {
    const auto* before = kelm::detail_cast<const kelm::detail_base_original_properties>(&of);
    if (before && before->had_property(into.property))
        into.before = before->original_property_as_string(into.property, nullptr);
}

/// Without the name, which is told in another place.
template <class Visit>
void for_each_property(kelm::model& in, kelm::u32 type, Visit visit) {
    const kelm::meta_object* known = in.meta_model()->find_meta_object(type);
    if (!known) return;
    for (const kelm::meta_property* each : known->properties())
        if (each->id() != kelm::property_id::name) visit(*each);
}

} // namespace

std::vector<value_change> values_now(const kelm::object& what) {
    std::vector<value_change> found;
    for_each_property(*what.model(), what.type(), [&](const kelm::meta_property& each) {
        value_change value{each.id(), each.name(), {}, {}, {}};
        take_value_now(what, value);
        if (value.after && !value.by_default) found.push_back(std::move(value));
    });
    return found;
}

std::vector<value_change> values_before(kelm::model& in, const kelm::delta_detail& of) {
    std::vector<value_change> found;
    for_each_property(in, of.object_type(), [&](const kelm::meta_property& each) {
        value_change value{each.id(), each.name(), {}, {}, {}};
        take_value_before(of, value);
        if (value.before) found.push_back(std::move(value));
    });
    return found;
}

std::vector<value_change> values_changed(const kelm::object& what, kelm::delta_detail& by) {
    std::vector<value_change> found;
    for (const kelm::u32 id : kelm::detail_cast<kelm::detail_modified>(&by)->changed_properties()) {
        if (id == kelm::property_id::name) continue;
        value_change value{id, kelm::property_name(what.type(), id, what.model()), {}, {}, {}};
        take_value_before(by, value);
        take_value_now(what, value);
        found.push_back(std::move(value));
    }
    return found;
}

std::string text_before(const kelm::delta_detail& of, kelm::u32 property) {
    const auto* before = kelm::detail_cast<const kelm::detail_base_original_properties>(&of);
    return before ? before->original_property_as_string(property, nullptr) : std::string();
}

} // namespace schema
