// The records of a snapshot: making values, moving and freeing nodes.
// Which object gets which node is told by collector.
#include "copier/snapshot.h"

#include "framework/data_types.h"
#include "framework/values.h"

#include <kelm/object.h>

#include <boost/variant/get.hpp>

#include <algorithm>

namespace kelm {

namespace {

void demand(bool is_of_that_kind) {
    if (!is_of_that_kind) throw boost::bad_get{};
}

} // namespace

copy_value copy_value::of(const abstract_property* value) {
    if (const auto* const elements = exact_cast<vector_property>(value)) {
        list copies;
        copies.reserve(elements->elements.size());
        for (const abstract_property* each : elements->elements) copies.push_back(of(each));
        return copy_value{std::move(copies)};
    }
    if (const auto* const reference = exact_cast<property<object*>>(value))
        return reference_to(reference->value ? reference->value->id() : 0);
    return {data_types::data_type_of(value), clone(value)};
}

copy_value copy_value::reference_to(u32 target) {
    copy_value made{data_type::object_reference, nullptr};
    made.target_ = target;
    return made;
}

const copy_value::list& copy_value::elements() const {
    demand(is_list());
    return elements_;
}

u32 copy_value::target() const {
    demand(is_reference());
    return target_;
}

const abstract_property* copy_value::plain() const {
    demand(!is_list() && !is_reference());
    return box_.get();
}

namespace {

auto place_of(const property_copies& values, u32 id) {
    return std::ranges::lower_bound(values, id, {}, &property_copy::id);
}

} // namespace

bool holds(const property_copies& values, u32 id) {
    const auto at = place_of(values, id);
    return at != values.end() && at->id == id;
}

void enter(property_copies& values, u32 id, copy_value value) {
    const auto at = place_of(values, id);
    if (at == values.end() || at->id != id) values.insert(at, {id, std::move(value)});
}

copy_node& add_node(node_list& to, copy_node* parent) {
    copy_node& made = to.emplace_back();
    made.parent = parent;
    made.home = &to;
    made.self = std::prev(to.end());
    return made;
}

void destroy(node_list& nodes) noexcept {
    while (!nodes.empty()) {
        nodes.splice(nodes.end(), nodes.front().children);
        nodes.pop_front();
    }
}

copy_node* snapshot::find(u32 id) const {
    const auto found = nodes_by_id.find(id);
    return found == nodes_by_id.end() ? nullptr : found->second;
}

void snapshot::put_on_top(copy_node& node) {
    top_nodes.splice(top_nodes.end(), *node.home, node.self);
    node.parent = nullptr;
    node.home = &top_nodes;
}

bool snapshot::put_below(copy_node& parent, copy_node& child) {
    // Nothing can be below a node without children, which spares most the way up.
    const bool may_be_below = &child == &parent || !child.children.empty();
    for (const copy_node* at = may_be_below ? &parent : nullptr; at; at = at->parent)
        if (at == &child) return false;
    parent.children.splice(parent.children.end(), *child.home, child.self);
    child.parent = &parent;
    child.home = &parent.children;
    return true;
}

void snapshot::clear() noexcept {
    type_order.clear();
    nodes_by_id.clear();
    destroy(top_nodes);
}

} // namespace kelm
