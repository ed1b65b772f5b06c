// Details: their lists, and what each keeps.
// Values of the start are looked up in original_value.cpp.
#include "delta/details.h"

#include "delta/delta_impl.h"

#include <kelm/object_helpers.h>

#include <algorithm>
#include <unordered_set>

namespace kelm {

void detail_list::append(detail_impl& which) {
    which.place() = {this, details_.size()};
    details_.push_back(&which);
}

void detail_list::take_out(detail_impl& which) {
    place& at = which.place();
    if (at.list) at.list->details_[at.index] = nullptr;
    at = {};
}

void detail_list::compact() {
    std::erase(details_, nullptr);
    for (std::size_t i = 0; i != details_.size(); ++i) details_[i]->place().index = i;
}

std::vector<delta_detail*> detail_list::handed_out() const { return {details_.begin(), details_.end()}; }

delta* detail_impl::owning_delta() const { return &owning_delta_; }

void detail_create_impl::name(std::string& out) const { out = fast_unsafe_object_name(&about()); }

void detail_modified_impl::name(std::string& out) const { out = fast_unsafe_object_name(&about()); }

void detail_base_original_properties_impl::set_original(u32 id, const abstract_property* value) {
    if (value)
        original_properties_.insert_or_assign(id, value);
    else
        original_properties_.erase(id);
    owned_vectors_.erase(id);
}

void detail_base_original_properties_impl::set_original(u32 id, std::unique_ptr<abstract_property> made) {
    set_original(id, made.get());
    temporaries_.push_back(std::move(made));
}

vector_property& detail_base_original_properties_impl::original_vector(u32 id) {
    if (const auto own = owned_vectors_.find(id); own != owned_vectors_.end()) return *own->second;
    const auto* const known = exact_cast<vector_property>(known_value(id));
    std::unique_ptr<vector_property> copy{known ? static_cast<vector_property*>(known->clone())
                                                : new vector_property};
    vector_property& list = *copy;
    original_properties_.insert_or_assign(id, &list);
    owned_vectors_.emplace(id, std::move(copy));
    return list;
}

void detail_base_original_properties_impl::mark_original_not_inheritable(u32 id, bool flag) {
    auto& ids = original_not_inheritable_;
    if (!flag)
        std::erase(ids, id);
    else if (std::ranges::find(ids, id) == ids.end())
        ids.push_back(id);
}

void detail_modified_impl::fold_child_order(object& child, u32 old_pos, u32 new_pos) {
    const auto known = order_of_child_.find(&child);
    if (known != order_of_child_.end()) {
        child_order_change& later = child_order_changes_[known->second];
        new_pos = static_cast<u32>(later.new_pos);
        later.child = nullptr;
        order_of_child_.erase(known);
        if (new_pos == old_pos) return;
    }
    order_of_child_.emplace(&child, child_order_changes_.size());
    child_order_changes_.push_back({&child, old_pos, new_pos});
}

void detail_modified_impl::compact_child_orders() {
    std::erase_if(child_order_changes_, [](const child_order_change& each) { return !each.child; });
    order_of_child_.clear();
}

std::vector<inherits_change> detail_modified_impl::inherits_changes() const {
    if (inherits_changes_) return *inherits_changes_;
    inherits_changes_.emplace();
    const std::vector<object*> now = about().inherits_from_list(0);
    std::unordered_map<const object*, std::int64_t> place_now;
    for (std::size_t j = 0; j != now.size(); ++j) place_now.emplace(now[j], static_cast<std::int64_t>(j));
    for (std::size_t i = 0; i != original_inherits().size(); ++i) {
        object* const base = original_inherits()[i];
        const auto at = place_now.find(base);
        const std::int64_t new_pos = at == place_now.end() ? -1 : at->second;
        if (new_pos != static_cast<std::int64_t>(i))
            inherits_changes_->push_back({base, static_cast<std::int64_t>(i), new_pos});
    }
    const std::unordered_set<const object*> then(original_inherits().begin(), original_inherits().end());
    for (std::size_t j = 0; j != now.size(); ++j)
        if (!then.contains(now[j])) inherits_changes_->push_back({now[j], -1, static_cast<std::int64_t>(j)});
    return *inherits_changes_;
}

} // namespace kelm
