// The flat lists of a type: built when first read, forgotten when this type or a base changes.
// The containers are in flattening.h.
#include "meta/flattening.h"

#include "meta/meta_object_impl.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelm {

namespace {

/// Builds the flat list of a type unless it stands.
/// \param all_of       the flat list of a base
/// \param is_excluded  whether a base keeps that id to itself
template <class Thing>
const flattened<Thing>& completed(flattened<Thing>& list, const std::vector<Thing*>& own,
                                  const std::vector<meta_base*>& bases,
                                  const std::vector<Thing*>& (meta_object_impl::*all_of)() const,
                                  bool (meta_object_impl::*is_excluded)(u32) const) {
    if (list.is_complete()) return list;
    list.clear(); // of what a failure may have left
    list.append(own);
    for (const meta_base* above : bases) {
        const auto& base = static_cast<const meta_object_impl&>(*above);
        list.append((base.*all_of)(), [&](const Thing& it) { return !(base.*is_excluded)(it.id()); });
    }
    list.set_complete();
    return list;
}

} // namespace

const flattened<meta_property>& meta_object_impl::all_properties() const {
    return completed(all_properties_, own_properties_.in_order(), bases_ref(),
                     &meta_object_impl::properties_ref, &meta_object_impl::is_property_excluded);
}

const flattened<meta_composition>& meta_object_impl::all_compositions() const {
    return completed(all_compositions_, own_compositions_.in_order(), bases_ref(),
                     &meta_object_impl::compositions_ref, &meta_object_impl::is_composition_excluded);
}

const std::vector<meta_property*>& meta_object_impl::properties_ref() const {
    return all_properties().in_order();
}

const std::vector<meta_composition*>& meta_object_impl::compositions_ref() const {
    return all_compositions().in_order();
}

const semantic_table* meta_object_impl::merged_semantics() const {
    if (has_all_semantics_) return all_semantics_.get();
    auto merged = std::make_unique<semantic_table>();
    // Kept: bases come first and win when ids are equal, the other way round than with properties. A derived type
    // cannot put a hook of its own in the place of one that it inherits.
    for (const meta_base* above : bases_ref()) {
        const auto& base = static_cast<const meta_object_impl&>(*above);
        if (const semantic_table* const table = base.merged_semantics())
            merged->merge(*table,
                          [&](const semantic& hook) { return !base.is_semantic_excluded(hook.id()); });
    }
    if (semantics_) merged->merge(*semantics_, [](const semantic&) { return true; });
    make_room(retired_semantics_); // so that it can always be forgotten
    if (!merged->empty()) all_semantics_ = std::move(merged);
    has_all_semantics_ = true;
    return all_semantics_.get();
}

const std::vector<u32>& meta_object_impl::related_types_ref() const {
    if (all_related_types_) return *all_related_types_;
    std::vector<u32> all = own_related_types_;
    for (const meta_base* above : bases_ref()) {
        const auto& inherited = static_cast<const meta_object_impl&>(*above).related_types_ref();
        std::vector<u32> both;
        std::ranges::set_union(all, inherited, std::back_inserter(both));
        all = std::move(both);
    }
    return all_related_types_.emplace(std::move(all));
}

bool meta_object_impl::update(subject*, message*) {
    forget_lists();
    notify(nullptr);
    return true;
}

void meta_object_impl::drop_caches() { forget_lists(); }

std::vector<meta_object_base*> meta_object_impl::all_derived() const {
    std::vector<meta_object_base*> below;
    const auto collect = [&](const meta_object_impl& base) {
        for (observer* who : base.observers())
            if (auto* const derived = dynamic_cast<meta_object_base*>(who);
                derived && std::ranges::find(below, derived) == below.end())
                below.push_back(derived);
    };
    collect(*this);
    for (std::size_t at = 0; at != below.size(); ++at)
        if (const auto* const type = dynamic_cast<const meta_object_impl*>(below[at])) collect(*type);
    return below;
}

void meta_object_impl::drop_caches_of(const std::vector<meta_object_base*>& those) noexcept {
    for (meta_object_base* each : those) each->drop_caches();
}

void meta_object_impl::forget_lists() {
    all_properties_.clear();
    all_compositions_.clear();
    all_related_types_.reset();
    forget_semantics();
}

void meta_object_impl::forget_semantics() {
    has_all_semantics_ = false;
    if (all_semantics_) retired_semantics_.push_back(std::move(all_semantics_));
}

} // namespace kelm
