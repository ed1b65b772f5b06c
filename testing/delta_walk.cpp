// Walking back over messages.
// What a delta must tell of that is delta_laws.cpp.
#include "testing/delta_walk.h"
#include "testing/model_picture.h"

namespace kelm::testing {

delta_walk::delta_walk(kelm::model& in, const message* stop) {
    std::size_t at = in.message_count();
    while (at != 0 && in.message_at(at - 1) != stop) walk_back(*in.message_at(--at));
    look_at_inheritors(in);
}

const std::vector<message*>* delta_walk::messages_of(u32 id, u32 property) const {
    const auto found = values_.find({id, property});
    return found == values_.end() ? nullptr : &found->second;
}

void delta_walk::walk_back(message& what) {
    const u32 id = id_of(what.object());
    switch (what.type()) {
    case message_type::obj_create: return meet_making(id, what);
    case message_type::obj_delete: return meet_deletion(id, what);
    case message_type::child_remove: {
        const auto& removed = *message_cast<child_remove_message>(&what);
        if (is_gone(removed.child()->id())) places[removed.child()->id()] = removed.pos();
        runs_that_grew_or_shrank.insert({id, removed.child()->type()});
        return;
    }
    case message_type::child_add:
        runs_that_grew_or_shrank.insert({id, message_cast<child_add_message>(&what)->child()->type()});
        return;
    case message_type::child_order: return meet_order(id, what);
    case message_type::owner_set:
        look_at(id); // gone or not
        former_owners[id] = id_of(message_cast<owner_set_message>(&what)->old_owner());
        return;
    case message_type::property_set:
    case message_type::property_set_vec_prop:
    case message_type::property_insert_vec_prop:
    case message_type::property_delete:
    case message_type::property_delete_vec_prop:
    case message_type::element_position_vec_prop:
        values_[{id, message_cast<property_change_message>(&what)->property_type()}].push_back(&what);
        [[fallthrough]];
    case message_type::property_set_not_inheritable:
    case message_type::inherits_add:
    case message_type::inherits_cancel:
    case message_type::inherits_insert:
    case message_type::inherits_from_order:
    case message_type::inherits_replace:
        if (!is_gone(id)) look_at(id);
        return;
    default: return;
    }
}

void delta_walk::look_at(u32 id) {
    if (looked_at_ids_.insert(id).second) looked_at.push_back(id);
}

void delta_walk::meet_making(u32 id, message& what) {
    std::erase(looked_at, id);
    looked_at_ids_.erase(id);
    orders.erase(id);
    former_owners.erase(id);
    if (is_gone(id)) return forget_gone(id);
    top_of_came.push_back(id);
    owners_of_came[id] = id_of(message_cast<obj_create_message>(&what)->owner());
    for (const auto& [each, owner] : owners_of_came) {
        if (owner != id) continue;
        below_came[id].push_back(each);
        std::erase(top_of_came, each);
    }
}

void delta_walk::meet_deletion(u32 id, message& what) {
    const u32 owner = id_of(message_cast<obj_delete_message>(&what)->owner());
    owners_at_deletion[id] = owner;
    const bool is_below = is_gone(owner);
    parents_of_gone[id] = is_below ? owner : 0;
    (is_below ? below_gone[owner] : top_of_gone).push_back(id);
}

/// It came and went; what came into it from elsewhere has not.
void delta_walk::forget_gone(u32 id) {
    const u32 parent = parents_of_gone[id];
    std::erase(parent == 0 ? top_of_gone : below_gone[parent], id);
    parents_of_gone.erase(id);
    for (const u32 each : below_gone[id]) {
        parents_of_gone[each] = 0;
        top_of_gone.push_back(each);
    }
    below_gone.erase(id);
}

void delta_walk::meet_order(u32 id, message& what) {
    const auto& order = *message_cast<child_order_message>(&what);
    const u32 child = id_of(order.child());
    if (is_gone(id) || is_gone(child)) return;
    look_at(id);
    ordered_in_run[{id, order.child()->type()}].insert(child);
    std::vector<order_change>& all = orders[id];
    const auto known = std::ranges::find(all, child, &order_change::child);
    if (known == all.end()) return all.push_back({child, order.old_pos(), order.new_pos()});
    const u32 to = known->to;
    all.erase(known);
    if (to != order.old_pos()) all.push_back({child, order.old_pos(), to});
}

void delta_walk::look_at_inheritors(kelm::model& in) {
    spoken_of = looked_at.size();
    for (std::size_t i = 0; i != looked_at.size(); ++i) {
        const object* const at = in.find_object(looked_at[i]);
        if (!at) continue;
        for (const object* each : at->inheritors())
            if (!came(each->id())) look_at(each->id());
    }
}

} // namespace kelm::testing
