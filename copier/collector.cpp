// Filling a snapshot, node by node.
// What a paste makes of the nodes is not known here.
#include "copier/collector.h"

#include "meta/marked_property.h"
#include "object/model_impl.h"

#include <unordered_set>

namespace kelm {

bool collector::copy(object* what, bool selected) {
    if (!what || !impl_of(what)->owning_model()) return false;
    models_.hold(*what);
    try {
        if (!begin(what, selected, nullptr)) return false;
        while (!stack_.empty()) go_on();
    } catch (...) {
        forget_all();
        throw;
    }
    return true;
}

/// \param position  of an object that is built for its owner; null for any other
bool collector::begin(object* what, bool selected, const u32* position) {
    if (!what || !impl_of(what)->owning_model() || into_.find(what->id())) return false;
    copy_node& node = add_node(unplaced_, nullptr);
    made_.push_back(&node);
    node.id = what->id();
    into_.nodes_by_id.emplace(node.id, &node);
    fill(node, *impl_of(what), position);
    stack_.push_back({impl_of(what), &node, selected, position != nullptr});
    copy_values(stack_.back());
    return true;
}

void collector::fill(copy_node& node, object_impl& what, const u32* position) {
    node.type = what.type();
    const object* const owner = what.owner_object();
    if (node.type == type_id::model || !owner) return;
    node.owner_id = owner->id();
    node.position = position ? *position : positions_.of(*owner, what);
}

void collector::copy_values(unfinished& of) {
    of.node->properties.reserve(of.what->values().size());
    for (const auto& [id, value] : of.what->values()) {
        if (!value) continue;
        of.node->properties.push_back({id, copy_value::of(value)});
        plan_pulls(of, id, value);
    }
    const auto [first, last] = rules_.extra_properties.equal_range(of.node->type);
    for (auto each = first; each != last; ++each) of.extras.push_back(each->second);
}

void collector::add_pull(unfinished& of, object& what) {
    models_.hold(what);
    of.pulls.push_back({&what, of.pulls.size() + 1});
}

void collector::plan_pulls(unfinished& of, u32 id, const abstract_property* value) {
    const auto* const reference = exact_cast<property<object*>>(value);
    const auto* const list = exact_cast<vector_property>(value);
    if (!reference && !list) return;
    if (!is_marked(of.what->meta(), id, attribute_id::copy_referenced_object)) return;
    if (reference) {
        if (reference->value) add_pull(of, *reference->value);
        return;
    }
    const std::size_t first = of.pulls.size();
    for (const abstract_property* each : list->elements)
        if (const auto* const element = exact_cast<property<object*>>(each); element && element->value)
            add_pull(of, *element->value);
    for (std::size_t i = first; i != of.pulls.size(); ++i) of.pulls[i].behind_list = of.pulls.size();
}

/// One step of the node on top of the stack, which may put another on top.
void collector::go_on() {
    unfinished& of = stack_.back();
    if (of.next_pull != of.pulls.size()) return pull_next(of);
    switch (of.at) {
    case stage::extras:
        if (of.next_extra != of.extras.size()) return copy_next_extra(of);
        of.at = stage::rule;
        return;
    case stage::rule: of.at = stage::children; return copy_lists_and_ask_rule(of);
    case stage::children:
        of.at = stage::below;
        of.what->children(of.children);
        return;
    case stage::below: return of.next_child != of.children.size() ? take_next_child(of) : finish();
    }
}

void collector::pull_next(unfinished& of) {
    const pull next = of.pulls[of.next_pull++];
    // Kept: in a list of references, an element that is in the snapshot already hides those behind it.
    if (!begin(next.what, false, nullptr)) of.next_pull = next.behind_list;
}

void collector::copy_next_extra(unfinished& of) {
    const u32 id = of.extras[of.next_extra++];
    if (of.what->defines_property(id)) return;
    const value_ptr value = of.what->get_property(id);
    if (!value) return;
    enter(of.node->extra_properties, id, copy_value::of(value.get()));
    plan_pulls(of, id, value.get());
}

void collector::copy_lists_and_ask_rule(unfinished& of) {
    of.node->not_inheritable = of.what->not_inheritable_properties();
    if (const auto* const bases = of.what->bases())
        for (const object_impl* base : *bases) of.node->inherits_from.push_back(base->id());
    const std::shared_ptr<copy_rule> rule = rules_.copy.of(of.node->type);
    std::vector<object*> more;
    if (!rule || !rule->referenced_objects(of.what, more)) return;
    for (object* each : more)
        if (each) add_pull(of, *each);
}

void collector::take_next_child(unfinished& of) {
    object* const child = of.children[of.next_child++];
    if (child->type() != of.run_type) {
        of.run_type = child->type();
        of.run_position = 0;
    }
    u32 position = of.run_position++;
    if (copy_node* const known = into_.find(child->id())) {
        snapshot::put_below(*of.node, *known);
        return;
    }
    // A hook may list others than the list holds.
    if (of.what->child_at(of.run_type, position) != child)
        position = static_cast<u32>(of.what->child_position(child));
    begin(child, false, &position);
}

void collector::finish() {
    const unfinished done = std::move(stack_.back());
    stack_.pop_back();
    copy_node& node = *done.node;
    if (done.is_for_owner) {
        if (!snapshot::put_below(*stack_.back().node, node) && !node.parent) into_.put_on_top(node);
        return;
    }
    node.selected = done.selected;
    if (!node.parent) place(node, *done.what); // else its owner was copied meanwhile, and has taken it
}

void collector::place(copy_node& node, const object_impl& what) {
    const object* const owner = what.owner_object();
    copy_node* const above = owner ? into_.find(owner->id()) : nullptr;
    if (!above || !snapshot::put_below(*above, node)) into_.put_on_top(node);
}

/// Takes out what has been made; what stood in the snapshot before and was put below it becomes top nodes.
void collector::forget_all() {
    const std::unordered_set<const copy_node*> made(made_.begin(), made_.end());
    for (copy_node* const each : made_) {
        for (auto child = each->children.begin(); child != each->children.end();) {
            copy_node& below = *child++;
            if (!made.contains(&below)) into_.put_on_top(below);
        }
    }
    for (copy_node* const each : made_) {
        const auto found = into_.nodes_by_id.find(each->id);
        if (found != into_.nodes_by_id.end() && found->second == each) into_.nodes_by_id.erase(found);
        if (each->home == &unplaced_) continue;
        unplaced_.splice(unplaced_.end(), *each->home, each->self);
        each->home = &unplaced_;
    }
}

} // namespace kelm
