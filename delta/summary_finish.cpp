// The end of a summary: who else sees a change, and what really differs from the present.
// The states that are compared were restored by summary_fold.cpp.
#include "delta/summary.h"
#include "object/effective_value.h"
#include "object/id_order.h"
#include "object/model_impl.h"

#include <kelm/meta_model.h>

namespace kelm {

void summary::finish() {
    made_->modified.compact();
    add_inheritors();
    find_changes();
    drop_void_details();
    compact();
}

const std::vector<summary::summed_property>& summary::properties_of(const object_impl& about) {
    const auto [at, is_first] = properties_by_type_.try_emplace(about.type());
    if (!is_first) return at->second;
    const meta_object* const type = about.meta();
    if (!type) return at->second;
    for (const meta_property* const each : type->properties()) {
        const summary_part part = part_in_summary(*each);
        if (part != summary_part::left_out) at->second.push_back({each->id(), part});
    }
    return at->second;
}

void summary::add_inheritors() {
    // The list grows as it is walked: no message speaks of those that see a change by inheritance, at any depth.
    for (std::size_t i = 0; i != made_->modified.details().size(); ++i) {
        const object_impl& changed = made_->modified.details()[i]->about();
        if (!changed.has_inheritors()) continue;
        for (object* const each : in_order_of_ids(changed.inheritors()))
            if (!made_->find(made_->created_by_id, *each)) modified_detail_of(*impl_of(each));
    }
}

void summary::find_changes() {
    for (detail_impl* const each : made_->modified.details()) {
        auto& detail = static_cast<detail_modified_impl&>(*each);
        detail.compact_child_orders();
        for (const summed_property& which : properties_of(detail.about())) {
            if (!is_summed(which, detail.about())) continue;
            const effective_value now = find_effective_value(detail.about(), which.id);
            const effective_value then = detail.original_value(which.id);
            const bool is_same =
                now.value && then.value ? now.value->equals(then.value) : now.value == then.value;
            if (!is_same) detail.add_changed(which.id);
        }
    }
}

void summary::drop_void_details() {
    for (detail_impl* const each : made_->modified.details())
        if (static_cast<detail_modified_impl*>(each)->is_void()) detail_list::take_out(*each);
}

void summary::compact() {
    for (detail_list* const each : {&made_->deleted, &made_->created, &made_->modified}) each->compact();
    for (const auto& [id, each] : made_->deleted_by_id) each->children().compact();
}

} // namespace kelm
