// The inherited values of an object at one moment, how they differ from another, and telling of it.
// What an application's hooks make of the differences is inherit_mutations.cpp.
#include "object/inherit_changes.h"

#include "message/value_messages.h"
#include "meta/meta_object_base.h"
#include "object/base_search.h"
#include "object/inheritor_walk.h"

#include <algorithm>

namespace kelm {

namespace {

inherited_values sorted_by_id(inherited_values values) {
    std::ranges::stable_sort(values, {}, &inherited_value::id);
    return values;
}

/// \returns null when there is none
const inherited_value* find(const inherited_values& sorted, u32 id) {
    const auto at = std::ranges::lower_bound(sorted, id, {}, &inherited_value::id);
    return at != sorted.end() && at->id == id ? &*at : nullptr;
}

bool are_equal(const abstract_property* a, const abstract_property* b) {
    return a && b ? a->equals(b) : a == b;
}

/// A message that is told and not kept only reads its values.
abstract_property* lent(const inherited_value& from) { return const_cast<abstract_property*>(from.value); }

bool tell(object_impl& about, property_change_message_impl& said, bool first_run) {
    said.set_first_run(first_run);
    return about.notify(&said) && about.pass_to_inheritors(said, said.property_type());
}

bool tell_one(object_impl& about, const inherited_change& change, bool first_run) {
    if (change.is_loss) {
        property_delete_message_impl said{&about, lent(change.before), change.id()};
        return tell(about, said, first_run);
    }
    property_set_message_impl said{&about, lent(change.before), lent(change.now), change.id(),
                                   change.before.source};
    return tell(about, said, first_run);
}

} // namespace

inherited_values object_impl::inherited_now() const {
    inherited_values out;
    const meta_object* const type = links().inherits_from ? meta() : nullptr;
    if (!type) return out;
    base_search search;
    for (const meta_property* const each : static_cast<const meta_object_base*>(type)->properties_ref()) {
        const u32 id = each->id();
        if (defines_property(id) || is_property_not_inheritable(id) || !is_inheritable(*each)) continue;
        if (object_impl* const source = search.source_above(*this, id))
            out.push_back({id, source->values().find(id), source});
    }
    return out;
}

inherited_changes compare_inherited(const inherited_values& before, const inherited_values& now,
                                    bool with_losses) {
    inherited_changes out;
    const inherited_values known = sorted_by_id(before);
    for (const inherited_value& each : now) {
        const inherited_value* const former = find(known, each.id);
        if (former ? !are_equal(former->value, each.value) : each.value != nullptr)
            out.push_back({former ? *former : inherited_value{each.id}, each, false});
    }
    if (!with_losses) return out;
    const inherited_values present = sorted_by_id(now);
    for (const inherited_value& each : before)
        if (!find(present, each.id)) out.push_back({each, inherited_value{each.id}, true});
    return out;
}

bool tell_inherited(object_impl& about, const inherited_changes& changes, bool first_run) {
    return std::ranges::all_of(
        changes, [&](const inherited_change& each) { return tell_one(about, each, first_run); });
}

bool object_impl::tell_inherited_changes(const inherited_values& before, bool with_deletes, bool first_run) {
    return tell_inherited(*this, compare_inherited(before, inherited_now(), with_deletes), first_run);
}

} // namespace kelm
