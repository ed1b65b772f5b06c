// The objects that a value refers to: the target of a reference, or of each reference in a list.
// Keeping back-lists in step with them is the silent edits' business.
#pragma once

#include "framework/values.h"

#include <kelm/property.h>

namespace kelm {

/// \returns the target of a reference; null for a null reference, another kind, and null
inline object* target_of(const abstract_property* value) {
    const auto* const reference = exact_cast<property<object*>>(value);
    return reference ? reference->value : nullptr;
}

/// Calls `visit(target)` for each target of a value, as often as it occurs; null references are passed over.
// Kept: lists inside lists are not looked into.
template <class Visit>
void for_each_target(const abstract_property* value, Visit&& visit) {
    if (object* const target = target_of(value)) {
        visit(target);
    } else if (const auto* const list = exact_cast<vector_property>(value)) {
        for (const abstract_property* element : list->elements)
            if (object* const each = target_of(element)) visit(each);
    }
}

/// Calls `visit(target)` for each target in an element that is a list itself, however deep.
template <class Visit>
void for_each_inner_target(const abstract_property* element, Visit&& visit) {
    const auto* const list = exact_cast<vector_property>(element);
    if (!list) return;
    for_each_target(list, visit);
    for (const abstract_property* each : list->elements) for_each_inner_target(each, visit);
}

} // namespace kelm
