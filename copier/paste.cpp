// A paste from its begin to its end, and the making of objects.
// Values and links are paste_values.cpp, what had to wait is paste_retry.cpp, what comes last is paste_finish.cpp.
#include "copier/paste.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>

#include <algorithm>
#include <tuple>

namespace kelm {

namespace {

/// \returns what a rule answers; null for an object that is in no model, which is nothing to work with
object* answer_of(paste_rule& rule) {
    object* const what = rule.object();
    return what && what->model() ? what : nullptr;
}

} // namespace

bool paste_run::by_id::operator()(const owner_and_type& a, const owner_and_type& b) const {
    const auto key = [](const owner_and_type& of) {
        return std::tuple{of.first->id(), of.second, of.first}; // the last for objects of two models
    };
    return key(a) < key(b);
}

paste_run::paste_run(snapshot& from, const copier_rules& rules, model& into, std::vector<object*> owners)
    : from_(from), rules_(rules), into_(into), owners_(std::move(owners)), level_(into) {
    for (object* const each : owners_)
        if (each) models_.hold(*each);
    new_objects_.reserve(from_.nodes_by_id.size());
    source_ids_.reserve(from_.nodes_by_id.size());
}

bool paste_run::run() {
    try {
        bool stands = level_.open("Paste Objects") && paste_top_nodes() && retry_until_settled() &&
                      delete_incomplete() && set_extra_values() && run_order_rules();
        // Kept: a rule about the end is asked also about a paste that has failed.
        if (const std::shared_ptr<end_transaction_rule> rule = rules_.end)
            stands = rule->accept(&into_) && stands;
        if (stands && level_.is_open()) {
            // Kept: a hook that refuses the end of the outermost transaction takes all back, and the paste is a success.
            level_.close();
            return true;
        }
    } catch (...) {
        try {
            level_.roll_back();
        } catch (...) { // why the paste failed says more
        }
        throw;
    }
    level_.roll_back();
    return false;
}

void paste_run::pasted_objects(std::vector<object*>& out) const {
    for (const copy_node& top : from_.top_nodes)
        if (object* const made = top.selected ? mapped(top.id) : nullptr) out.push_back(made);
}

void paste_run::sort_top_nodes() {
    std::map<u32, std::size_t> ranks;
    for (const u32 type : from_.type_order) ranks.emplace(type, ranks.size());
    const auto rank = [&](const copy_node& node) {
        const auto found = ranks.find(node.type);
        return found == ranks.end() ? ranks.size() : found->second;
    };
    from_.top_nodes.sort([&](const copy_node& a, const copy_node& b) { return rank(a) < rank(b); });
}

bool paste_run::paste_top_nodes() {
    // Kept: the order is that of the snapshot from now on, and is written with it.
    sort_top_nodes();
    for (const copy_node& top : from_.top_nodes) {
        object* const owner = fitting_owner(top.type);
        if (owner && paste_tree(top, owner) == outcome::fail) return false;
    }
    return true;
}

/// \returns the first owner that may have children of that type; null when there is none
object* paste_run::fitting_owner(u32 type) {
    const auto [found, is_new] = fitting_owners_.try_emplace(type, nullptr);
    if (!is_new) return found->second;
    const auto fits = [&](const object* owner) {
        const meta_object* const of = owner ? into_.meta_model()->find_meta_object(owner->type()) : nullptr;
        return of && of->has_composition(type);
    };
    const auto first = std::ranges::find_if(owners_, fits);
    return found->second = first == owners_.end() ? nullptr : *first;
}

/// Depth first on a stack of its own: a tree may be as deep as its source was.
/// \returns `deferred` when the top itself waits; what waits below it has an entry of its own
paste_run::outcome paste_run::paste_tree(const copy_node& top, object* owner) {
    struct opened {
        object* made;
        node_list::const_iterator next;
        node_list::const_iterator end;
    };
    std::vector<opened> stack;
    const auto paste_one = [&](const copy_node& node, object* below) {
        object* made = nullptr;
        const outcome result = paste_node(node, below, made);
        if (!level_.is_open()) return outcome::fail;
        if (result == outcome::go_on) stack.push_back({made, node.children.begin(), node.children.end()});
        return result;
    };
    const outcome result = paste_one(top, owner);
    while (!stack.empty()) {
        opened& at = stack.back();
        if (at.next == at.end || is_deleted(*at.made)) {
            stack.pop_back();
            continue;
        }
        const copy_node& child = *at.next++;
        if (paste_one(child, at.made) == outcome::fail) return outcome::fail;
    }
    return result;
}

/// \param made  receives the object
paste_run::outcome paste_run::paste_node(const copy_node& node, object* owner, object*& made) {
    if (const std::shared_ptr<paste_rule> rule = rules_.paste.of(node.type)) {
        const outcome result = ask_rule(*rule, node, owner, made);
        if (result != outcome::go_on) return result;
    }
    if (!made) {
        const outcome result = create(node, owner, made);
        if (result != outcome::go_on) return result;
    }
    return fill(node, owner, made);
}

/// \param made  receives an object that stands in for a new one
paste_run::outcome paste_run::ask_rule(paste_rule& rule, const copy_node& node, object* owner,
                                       object*& made) {
    const int action = ask_action(rule, node, owner);
    if (!level_.is_open()) return outcome::fail;
    switch (action) {
    case paste_action::replace:
    case paste_action::use_existing:
    case paste_action::map_to_existing: return use_answer(rule, action, node, made);
    case paste_action::defer: deferred_nodes_.add({&node, owner}); return outcome::deferred;
    case paste_action::fail: return outcome::fail;
    default: return outcome::go_on;
    }
}

/// Does what three of the actions say about an object that is there.
paste_run::outcome paste_run::use_answer(paste_rule& rule, int action, const copy_node& node, object*& made) {
    object* const existing = answer_of(rule);
    if (!level_.is_open()) return outcome::fail;
    if (existing) models_.hold(*existing);
    if (action == paste_action::use_existing) {
        made = existing;
        return outcome::go_on;
    }
    if (action == paste_action::replace) {
        if (!framework::instance().delete_object(existing)) return outcome::stop;
        return level_.is_open() ? outcome::go_on : outcome::fail;
    }
    if (!existing) return outcome::fail;
    enter(node.id, existing);
    enter_subtree(existing);
    return outcome::stop;
}

int paste_run::ask_action(paste_rule& rule, const copy_node& node, object* owner) const {
    std::vector<std::unique_ptr<abstract_property>> held;
    std::map<u32, abstract_property*> values;
    for (const property_copy& each : node.properties) {
        held.push_back(resolve(each.value));
        values.emplace(each.id, held.back().get());
    }
    std::vector<object*> bases;
    for (const u32 id : node.inherits_from) {
        object* const base = mapped(id);
        bases.push_back(base && !is_deleted(*base) ? base : nullptr);
    }
    return rule.paste(owner, node.type, values, bases, is_last_pass_, node.id);
}

void paste_run::enter(u32 source_id, object* made) {
    new_objects_[source_id] = made;
    source_ids_[made] = source_id;
}

// Kept: under the ids that they have where they are.  An id that is taken already leads to the existing object then.
void paste_run::enter_subtree(object* top) {
    std::vector<object*> waiting = top->children();
    std::ranges::reverse(waiting);
    while (!waiting.empty()) {
        object* const next = waiting.back();
        waiting.pop_back();
        enter(next->id(), next);
        const std::vector<object*> below = next->children();
        waiting.insert(waiting.end(), below.rbegin(), below.rend());
    }
}

paste_run::outcome paste_run::create(const copy_node& node, object* owner, object*& made) {
    made = framework::instance().create_object(node.type, owner);
    if (!made) return outcome::fail;
    if (!level_.is_open()) return outcome::fail;
    // A name that came with the creation would stay.
    const bool has_name = holds(node.properties, property_id::name);
    return has_name || made->delete_property(property_id::name) ? outcome::go_on : outcome::fail;
}

paste_run::outcome paste_run::fill(const copy_node& node, object* owner, object* made) {
    if (const outcome result = after_a_change(made); result != outcome::go_on) return result;
    enter(node.id, made);
    if (rules_.order.holds({owner->type(), made->type()})) ordered_owners_.insert({owner, made->type()});
    for (const auto step : {&paste_run::set_marks, &paste_run::add_bases, &paste_run::set_values}) {
        const outcome result = (this->*step)(node, made);
        if (result != outcome::go_on) return result;
    }
    return outcome::go_on;
}

/// Hooks and rules that run with a change may delete the object, and may roll the paste's own level back, also by a
/// refusal, or end it: what came then would be in no transaction.
paste_run::outcome paste_run::after_a_change(const object* of) const {
    if (!level_.is_open()) return outcome::fail;
    return is_deleted(*of) ? outcome::stop : outcome::go_on;
}

} // namespace kelm
