// Trying again what could not be done at once.
// The lists themselves are pending_list.h.
#include "copier/paste.h"

namespace kelm {

bool paste_run::retry_until_settled() {
    while (true) {
        bool has_moved = false;
        if (!pending_values_.retry([this](const auto& each) { return retry_value(each); }, has_moved) ||
            !pending_bases_.retry([this](const auto& each) { return retry_base(each); }, has_moved) ||
            !deferred_nodes_.retry([this](const auto& each) { return retry_node(each); }, has_moved))
            return false;
        if (has_moved) continue;
        if (is_last_pass_) return true;
        is_last_pass_ = true;
    }
}

retried paste_run::retry_value(const pending_value& entry) {
    if (!stands(entry.of)) return retried::drop;
    const std::unique_ptr<abstract_property> value = resolve_wholly(*entry.value);
    if (!value) return retried::keep;
    const std::shared_ptr<property_paste_rule> rule = rules_.property_paste.of(entry.of->type());
    const bool waits = rule && rule->paste_property(entry.of, entry.id, value.get(), is_last_pass_) !=
                                   property_paste_result::nothing;
    if (!level_.is_open()) return retried::fail;
    if (waits) return retried::keep;
    if (!set_if_different(entry.of, entry.id, *value)) return retried::fail;
    return level_.is_open() ? retried::settle : retried::fail;
}

retried paste_run::retry_base(const pending_base& entry) {
    if (entry.of->state() != state::normal) return retried::keep;
    object* const base = mapped(entry.source_id);
    if (!base || into_.find_object(base->id()) != base) return retried::keep;
    if (is_deleted(*base)) return retried::drop;
    if (base == entry.of || entry.of->inherits_from(base, false)) return retried::keep;
    if (!entry.of->add_inherits_from(base)) return retried::fail;
    return level_.is_open() ? retried::settle : retried::fail;
}

retried paste_run::retry_node(const pending_node& entry) {
    if (!stands(entry.owner) || new_objects_.contains(entry.node->id)) return retried::drop;
    switch (paste_tree(*entry.node, entry.owner)) {
    case outcome::fail: return retried::fail;
    case outcome::deferred: return retried::keep;
    default: return retried::settle;
    }
}

} // namespace kelm
