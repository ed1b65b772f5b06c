// Marks that a type puts on its properties.
// Which marks there are is told by <kelm/meta_model.h>.
#pragma once

#include "framework/values.h"
#include "meta/meta_property_impl.h"

#include <kelm/meta_model.h>

namespace kelm {

/// \returns whether the attribute is there, own or inherited, and true
inline bool is_marked(const meta_property& which, u32 attribute) {
    const auto* const mark = exact_cast<property<bool>>(find_attribute(which, attribute));
    return mark && mark->value;
}

/// \param type  null, like a type without that property, marks nothing
inline bool is_marked(const meta_object* type, u32 property_id, u32 attribute) {
    const meta_property* const which = type ? type->find_property(property_id) : nullptr;
    return which && is_marked(*which, attribute);
}

} // namespace kelm
