// What a paste does when all objects are there: mandatory values, extra values, order.
// Whether the paste stands is decided behind it.
#include "copier/paste.h"
#include "meta/marked_property.h"

#include <kelm/filters.h>
#include <kelm/framework.h>

namespace kelm {

/// Deletes each object that a value is still missing of which must exist.
bool paste_run::delete_incomplete() {
    std::set<u32> incomplete;
    for (const pending_value& each : pending_values_.entries()) {
        const meta_object* const type = into_.meta_model()->find_meta_object(each.of->type());
        if (is_marked(type, each.id, attribute_id::must_exist)) incomplete.insert(each.of->id());
    }
    for (const u32 id : incomplete) {
        object* const what = into_.find_object(id); // it may have gone with another
        if (what && !framework::instance().delete_object(what)) return false;
        if (!level_.is_open()) return false;
    }
    return true;
}

// Only now are all bases there, so that a value which is inherited anyway can be told.
bool paste_run::set_extra_values() {
    for (const auto& [id, node] : from_.nodes_by_id) {
        if (node->extra_properties.empty()) continue;
        object* const made = mapped(id);
        if (made && !is_deleted(*made) && !set_extra_values_of(*node, made)) return false;
    }
    return true;
}

bool paste_run::set_extra_values_of(const copy_node& node, object* made) {
    for (const property_copy& each : node.extra_properties) {
        const std::unique_ptr<abstract_property> value = resolve_wholly(each.value);
        if (!value) continue;
        if (!set_if_different(made, each.id, *value) || !level_.is_open()) return false;
    }
    return true;
}

bool paste_run::run_order_rules() {
    for (const auto& [types, rule] : rules_.order.in_order_of_setting()) {
        for (const auto& [owner, child_type] : ordered_owners_) {
            if (is_deleted(*owner) || types != std::pair{owner->type(), child_type}) continue;
            const pasted_positions children = positions_below(owner, child_type);
            if (!rule->order(owner, child_type, children) || !level_.is_open()) return false;
        }
    }
    return true;
}

pasted_positions paste_run::positions_below(const object* owner, u32 type) const {
    obj_filter_type of_type{type};
    pasted_positions all;
    for (object* child : owner->children(&of_type)) {
        const auto source = source_ids_.find(child);
        const copy_node* const node = source == source_ids_.end() ? nullptr : from_.find(source->second);
        if (node) all.emplace_back(child, node->position);
    }
    return all;
}

} // namespace kelm
