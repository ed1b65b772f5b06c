// Asks the meta model, which says where a type may stand and of what kind its values are.
// References are asked for the type of their target as well.
#include "schema/structure.h"

#include "schema/types.h"
#include "schema/values.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/property.h>

#include <algorithm>

namespace schema {

namespace {

/// \returns the type that the property refers to; 0 when that may be any
kelm::u32 target_type(kelm::u32 property) {
    switch (property) {
    case property::column:
    case property::target_column: return type::column;
    case property::target_table: return type::table;
    default: return 0;
    }
}

bool is_good_value(const kelm::meta_property& known, const kelm::abstract_property& value) {
    if (known.property_class() != kelm::framework::instance().data_type_of(&value)) return false;
    const auto* reference = dynamic_cast<const kelm::property<kelm::object*>*>(&value);
    const kelm::u32 wanted = target_type(known.id());
    return !reference || !reference->value || wanted == 0 || reference->value->type() == wanted;
}

/// Properties that the type does not know are never read, so they may be what they like.
bool has_good_values(const kelm::object& what, const kelm::meta_object& known) {
    kelm::value_map values;
    what.own_properties(values);
    return std::ranges::all_of(values, [&](const auto& entry) {
        const kelm::meta_property* property = known.find_property(entry.first);
        return !property || is_good_value(*property, *entry.second);
    });
}

/// Columns inherit from domains, and nothing else does.
bool has_good_bases(const kelm::object& what) {
    const std::vector<kelm::object*> bases = what.inherits_from_list(0);
    return std::ranges::all_of(bases, [&](const kelm::object* base) {
        return what.type() == type::column && base->type() == type::domain;
    });
}

/// No deeper than the types allow, whatever a file says.
bool is_well_formed(const kelm::object& what, const kelm::meta_model& types) {
    const kelm::meta_object* known = types.find_meta_object(what.type());
    if (!known || !has_good_values(what, *known) || !has_good_bases(what)) return false;
    const std::vector<kelm::object*> all = what.children();
    return std::ranges::all_of(all, [&](const kelm::object* part) {
        return known->has_composition(part->type()) && is_well_formed(*part, types);
    });
}

} // namespace

bool is_well_formed(kelm::model& model) { return is_well_formed(*model.as_object(), *model.meta_model()); }

} // namespace schema
