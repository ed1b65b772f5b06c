// Declaring on a type, and its bases.
// How the flat lists come about is in flattening.cpp.
#include "meta/meta_object_impl.h"

#include "framework/values.h"

#include <algorithm>
#include <utility>

namespace kelm {

namespace {

bool contains(const std::vector<u32>& list, u32 id) { return std::ranges::find(list, id) != list.end(); }

/// Frees a hook only when told to, so that one that is refused stays with the caller.
struct hook_deleter {
    bool owns = false;
    void operator()(semantic* hook) const {
        if (owns) delete hook;
    }
};

} // namespace

std::string meta_object_impl::alternative_name() const {
    const abstract_property* const value = find_attribute(attribute_id::alternative_name);
    return value ? value->to_string() : name();
}

bool meta_object_impl::is_base_of(u32 type) const {
    // A model's own copy of a type has the type itself as a base, of the same id.
    if (type == id()) return false;
    const meta_object* const derived = meta_model_->find_meta_object(type);
    return derived && derived->has_base_type(id(), true);
}

// Properties.

meta_property* meta_object_impl::add_property(u32 id) {
    return add_existing_property(std::make_unique<meta_property_impl>(id));
}

meta_property* meta_object_impl::add_property(u32 id, const std::string& name, u32 property_class,
                                              const std::string& definition) {
    return add_existing_property(std::make_unique<meta_property_impl>(id, name, property_class, definition));
}

meta_property* meta_object_impl::add_existing_property(std::unique_ptr<meta_property_impl> made) {
    all_properties_.clear();
    notify(nullptr);
    if (own_properties_.holds(made->id())) return nullptr;
    made->set_owner(this);
    const std::vector<meta_object_base*> below = all_derived();
    meta_property* const added = own_properties_.add(std::move(made));
    all_properties_.clear(); // whoever was told may have read
    drop_caches_of(below);
    return added;
}

meta_property* meta_object_impl::find_property(const std::string& name) const {
    return find_named(properties_ref(), name);
}

meta_property* meta_object_impl::find_property(u32 id) const { return all_properties().find(id); }

bool meta_object_impl::has_property(const std::string& name) const { return find_property(name) != nullptr; }

bool meta_object_impl::has_property(u32 id) const { return find_property(id) != nullptr; }

meta_property* meta_object_impl::override_property(u32 id) {
    meta_property* const inherited = find_property(id);
    if (!inherited) return nullptr;
    meta_property* const own = add_property(id);
    if (own) own->add_base(inherited);
    return own;
}

bool meta_object_impl::remove_property(u32 id) {
    all_properties_.clear();
    notify(nullptr);
    if (!own_properties_.holds(id)) return false;
    const std::vector<meta_object_base*> below = all_derived();
    const std::unique_ptr<meta_property> removed = own_properties_.take(id);
    all_properties_.clear(); // whoever was told may have read
    drop_caches_of(below);
    return true;
}

// Compositions.

meta_composition* meta_object_impl::add_composition(u32 child_type, const std::string& name,
                                                    const std::string& definition) {
    if (!meta_model_->find_meta_object(child_type)) return nullptr;
    all_compositions_.clear();
    notify(nullptr);
    if (own_compositions_.holds(child_type)) return nullptr;
    auto made = std::make_unique<meta_composition_impl>(child_type, meta_model_);
    if (!name.empty()) { // also an empty definition: it keeps that of the child type from showing
        made->set_text(attribute_id::name, name);
        made->set_text(attribute_id::definition, definition);
    }
    const std::vector<meta_object_base*> below = all_derived();
    meta_composition* const added = own_compositions_.add(std::move(made));
    all_compositions_.clear(); // whoever was told may have read
    drop_caches_of(below);
    return added;
}

meta_composition* meta_object_impl::add_composition(u32 child_type) {
    return add_composition(child_type, {}, {});
}

meta_composition* meta_object_impl::find_composition(const std::string& name) const {
    return find_named(compositions_ref(), name);
}

meta_composition* meta_object_impl::find_composition(u32 child_type) const {
    return all_compositions().find(child_type);
}

meta_composition* meta_object_impl::find_composition_by_alternative_name(const std::string& name) const {
    return find_alternatively_named(compositions_ref(), name);
}

bool meta_object_impl::has_composition(const std::string& name) const {
    return find_composition(name) != nullptr;
}

bool meta_object_impl::has_composition(u32 child_type) const {
    return find_composition(child_type) != nullptr;
}

// Hooks.

bool meta_object_impl::add_semantic(semantic* hook) {
    if (!hook || hook->type() < 0 || hook->type() >= all_semantics::size) return false;
    forget_semantics();
    notify(nullptr);
    if (!semantics_) semantics_ = std::make_unique<semantic_table>();
    const shared_ptr<semantic> held(hook, hook_deleter{});
    const std::vector<meta_object_base*> below = all_derived();
    if (!semantics_->add(held)) return false;
    boost::get_deleter<hook_deleter>(held)->owns = true;
    forget_semantics(); // whoever was told may have read
    drop_caches_of(below);
    return true;
}

bool meta_object_impl::semantics_of_kind(int kind, std::vector<shared_ptr<semantic>>& out) const {
    out.clear();
    const semantic_table* const table = merged_semantics();
    const semantic_table::hooks* const list = table ? table->of(kind) : nullptr;
    if (!list) return false;
    out = *list;
    return true;
}

semantic* meta_object_impl::find_semantic(u32 id) const {
    const semantic_table* const table = merged_semantics();
    return table ? table->find(id) : nullptr;
}

// Bases.

void meta_object_impl::add_base_type(meta_object* base) {
    auto* const type = dynamic_cast<meta_object_impl*>(base);
    if (!type || type == this || type->derives_from(*this)) return;
    update(this, nullptr);
    const std::vector<meta_object_base*> below = all_derived();
    add_base(type);
    forget_lists(); // whoever was told may have read
    drop_caches_of(below);
}

void meta_object_impl::remove_base_type(meta_object* base) {
    auto* const type = dynamic_cast<meta_object_impl*>(base);
    if (!type || std::ranges::find(bases_ref(), type) == bases_ref().end()) return;
    update(this, nullptr);
    const std::vector<meta_object_base*> below = all_derived();
    remove_base(type);
    forget_lists(); // whoever was told may have read
    drop_caches_of(below);
}

bool meta_object_impl::has_base_type(u32 type, bool recursive) const {
    std::vector<const meta_base*> seen(bases_ref().begin(), bases_ref().end());
    for (std::size_t at = 0; at != seen.size(); ++at) {
        if (seen[at]->id() == type) return true;
        if (!recursive) continue;
        for (const meta_base* base : seen[at]->bases_ref())
            if (std::ranges::find(seen, base) == seen.end()) seen.push_back(base);
    }
    return false;
}

std::vector<meta_object*> meta_object_impl::base_types() const {
    return bases_as<meta_object, meta_object_impl>();
}

// Related types.

void meta_object_impl::add_related_type(u32 type) {
    all_related_types_.reset();
    notify(nullptr);
    const std::vector<meta_object_base*> below = all_derived();
    const auto at = std::ranges::lower_bound(own_related_types_, type);
    if (at == own_related_types_.end() || *at != type) own_related_types_.insert(at, type);
    all_related_types_.reset(); // whoever was told may have read
    drop_caches_of(below);
}

bool meta_object_impl::has_related_type(u32 type) const {
    return std::ranges::binary_search(related_types_ref(), type);
}

// Exclusions: they concern derived types alone, so the lists of this type stay.

void meta_object_impl::exclude(std::vector<u32>& list, u32 id) {
    notify(nullptr);
    const std::vector<meta_object_base*> below = all_derived();
    if (!contains(list, id)) list.push_back(id);
    drop_caches_of(below);
}

void meta_object_impl::exclude_composition(u32 child_type) { exclude(excluded_compositions_, child_type); }

void meta_object_impl::exclude_property(u32 id) { exclude(excluded_properties_, id); }

void meta_object_impl::exclude_semantic(u32 id) { exclude(excluded_semantics_, id); }

bool meta_object_impl::is_composition_excluded(u32 child_type) const {
    return contains(excluded_compositions_, child_type);
}

bool meta_object_impl::is_property_excluded(u32 id) const { return contains(excluded_properties_, id); }

bool meta_object_impl::is_semantic_excluded(u32 id) const { return contains(excluded_semantics_, id); }

void meta_object_impl::copy_marks(const meta_object_impl& other) {
    generic_ = other.generic_;
    for (const auto& [attribute, value] : other.own_attributes()) set_attribute_value(attribute, *value);
}

} // namespace kelm
