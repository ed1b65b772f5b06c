// What a node gives its object: refused properties, bases and values; and what a copied value stands for.
// What is not there yet waits for paste_retry.cpp.
#include "copier/paste.h"

#include "framework/values.h"

#include <algorithm>

namespace kelm {

namespace {

/// \returns whether nothing is missing in what a value has been resolved to
bool is_whole(const abstract_property* value) {
    const auto* const list = exact_cast<vector_property>(value);
    return value && (!list || std::ranges::all_of(list->elements, is_whole));
}

} // namespace

// Kept: here and with bases, a refusal ends the node and is no failure.  What it has rolled back is one.
paste_run::outcome paste_run::set_marks(const copy_node& node, object* made) {
    for (const u32 id : node.not_inheritable) {
        if (!made->set_property_not_inheritable(id, true)) return outcome::stop;
        if (const outcome result = after_a_change(made); result != outcome::go_on) return result;
    }
    return outcome::go_on;
}

paste_run::outcome paste_run::add_bases(const copy_node& node, object* made) {
    for (const u32 id : node.inherits_from) {
        if (!new_objects_.contains(id)) {
            pending_bases_.add({made, id});
            continue;
        }
        object* const base = mapped(id);
        if (is_deleted(*base) || base == made || made->inherits_from(base, false)) continue;
        if (!made->add_inherits_from(base)) return outcome::stop;
        if (const outcome result = after_a_change(made); result != outcome::go_on) return result;
    }
    return outcome::go_on;
}

paste_run::outcome paste_run::set_values(const copy_node& node, object* made) {
    for (const property_copy& each : node.properties) {
        const outcome result = set_value(each, made);
        if (result != outcome::go_on) return result;
    }
    return outcome::go_on;
}

paste_run::outcome paste_run::set_value(const property_copy& from, object* made) {
    const std::shared_ptr<property_paste_rule> rule = rules_.property_paste.of(made->type());
    // What is plain is set as it lies in the snapshot; only a rule, which may change it, needs a copy.
    const bool needs_own = rule || from.value.is_reference() || from.value.is_list();
    const std::unique_ptr<abstract_property> own = needs_own ? resolve_wholly(from.value) : nullptr;
    const abstract_property* const value = needs_own ? own.get() : from.value.plain();
    int answer = property_paste_result::nothing;
    if (rule) answer = rule->paste_property(made, from.id, own.get(), is_last_pass_);
    if (const outcome result = after_a_change(made); result != outcome::go_on) return result;
    // Kept: what does not resolve waits, also when a rule says that it has dealt with it.
    if (answer == property_paste_result::defer || !value) {
        pending_values_.add({made, from.id, &from.value});
        return outcome::go_on;
    }
    if (answer == property_paste_result::done) return outcome::go_on;
    return set_if_different(made, from.id, *value) ? after_a_change(made) : outcome::fail;
}

/// \returns null for a reference to what is not there, and for a list of such alone; a list may have null elements
std::unique_ptr<abstract_property> paste_run::resolve(const copy_value& value) const {
    if (value.is_reference()) {
        object* const target = mapped(value.target());
        return target && stands(target) ? std::make_unique<property<object*>>(target) : nullptr;
    }
    if (!value.is_list()) return clone(value.plain());
    auto list = std::make_unique<vector_property>();
    list->elements.reserve(value.elements().size());
    // Kept: an empty list resolves no element, and stays unset.
    bool has_any = false;
    for (const copy_value& each : value.elements()) {
        list->elements.push_back(resolve(each).release());
        has_any = has_any || list->elements.back();
    }
    return has_any ? std::move(list) : nullptr;
}

/// \returns null unless everything in the value resolves
std::unique_ptr<abstract_property> paste_run::resolve_wholly(const copy_value& value) const {
    std::unique_ptr<abstract_property> resolved = resolve(value);
    return is_whole(resolved.get()) ? std::move(resolved) : nullptr;
}

/// \returns false when the change was refused, and when a hook has closed the level
bool paste_run::set_if_different(object* of, u32 id, const abstract_property& value) const {
    const value_ptr present = of->get_property(id);
    if (!level_.is_open()) return false;
    return (present && present->equals(&value)) || of->set_property(id, value);
}

object* paste_run::mapped(u32 source_id) const {
    const auto found = new_objects_.find(source_id);
    return found == new_objects_.end() ? nullptr : found->second;
}

/// \returns whether the object is in the destination, and not deleted
bool paste_run::stands(object* what) const {
    return into_.find_object(what->id()) == what && !is_deleted(*what);
}

} // namespace kelm
