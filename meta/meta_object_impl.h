// A type: what it declares, what it derives from, and the flat lists of both.
// How a model shows a type of the application is meta_object_proxy.h.
#pragma once

#include "meta/flattening.h"
#include "meta/meta_composition_impl.h"
#include "meta/meta_object_base.h"
#include "meta/meta_thing.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelm {

/// A type that holds its own declarations.  Its meta model owns it, or the proxy that it was made for.
///
/// Every change forgets the lists that it touches, tells the observers, who are the derived types and the proxies,
/// and only then is tried; so also a change that is then refused is told.  What they read meanwhile is forgotten once
/// more behind the change, for which nothing is allocated: a change is done, or it fails and nothing has changed.
/// A type must outlive the proxies that show it.
class meta_object_impl final : public meta_thing<meta_object_base> {
public:
    /// \param owner  borrowed: where child types are looked up
    meta_object_impl(u32 id, kelm::meta_model* owner) : meta_thing(id), meta_model_(owner) {}

    std::string alternative_name() const override;
    void set_generic() override { generic_ = true; }
    bool is_generic() const override { return generic_; }
    bool is_base_of(u32 type) const override;

    std::vector<meta_property*> properties() const override { return properties_ref(); }
    meta_property* add_property(u32 id) override;
    meta_property* add_property(u32 id, const std::string& name, u32 property_class,
                                const std::string& definition) override;
    meta_property* find_property(const std::string& name) const override;
    meta_property* find_property(u32 id) const override;
    bool has_property(const std::string& name) const override;
    bool has_property(u32 id) const override;
    meta_property* override_property(u32 id) override;

    std::vector<meta_composition*> compositions() const override { return compositions_ref(); }
    meta_composition* add_composition(u32 child_type, const std::string& name,
                                      const std::string& definition) override;
    meta_composition* add_composition(u32 child_type) override;
    meta_composition* find_composition(const std::string& name) const override;
    meta_composition* find_composition(u32 child_type) const override;
    meta_composition* find_composition_by_alternative_name(const std::string& name) const override;
    bool has_composition(const std::string& name) const override;
    bool has_composition(u32 child_type) const override;

    bool add_semantic(semantic* hook) override;
    bool semantics_of_kind(int kind, std::vector<shared_ptr<semantic>>& out) const override;
    semantic* find_semantic(u32 id) const override;

    void add_base_type(meta_object* base) override;
    void remove_base_type(meta_object* base) override;
    bool has_base_type(u32 type, bool recursive) const override;
    std::vector<meta_object*> base_types() const override;

    void add_related_type(u32 type) override;
    std::vector<u32> related_types() const override { return related_types_ref(); }
    bool has_related_type(u32 type) const override;

    void exclude_composition(u32 child_type) override;
    void exclude_property(u32 id) override;
    void exclude_semantic(u32 id) override;
    bool is_composition_excluded(u32 child_type) const override;
    bool is_property_excluded(u32 id) const override;
    bool is_semantic_excluded(u32 id) const override;

    const std::vector<meta_property*>& properties_ref() const override;
    const std::vector<meta_composition*>& compositions_ref() const override;
    const abstract_property* find_attribute(u32 attribute) const override {
        return meta_base::find_attribute(attribute);
    }
    bool remove_property(u32 id) override;
    kelm::meta_model* owner_meta_model() const override { return meta_model_; }
    meta_property* add_existing_property(std::unique_ptr<meta_property_impl> made) override;
    const std::vector<u32>& related_types_ref() const override;
    const semantic_table* merged_semantics() const override;
    void drop_caches() override;

    /// A base has changed: forgets all flat lists and tells on.  Answers true always, so that all derived hear it.
    bool update(subject* from, message* what) override;

    /// Takes over what a private copy of `other` starts from: generic, and clones of its own attributes.
    void copy_marks(const meta_object_impl& other);

private:
    // Flat lists, built on demand.
    const flattened<meta_property>& all_properties() const;
    const flattened<meta_composition>& all_compositions() const;
    void forget_lists();
    void forget_semantics();
    /// \returns borrowed: all that keep lists of this type, directly or not, each once whatever lines of inheritance
    ///          lead to it.  Asked for when all have been told, and before the change.
    std::vector<meta_object_base*> all_derived() const;
    static void drop_caches_of(const std::vector<meta_object_base*>& those) noexcept;
    void exclude(std::vector<u32>& list, u32 id);

    // Declared here.
    bool generic_ = false;
    declarations<meta_property> own_properties_;
    declarations<meta_composition> own_compositions_;
    std::unique_ptr<semantic_table> semantics_; // made for the first hook
    std::vector<u32> own_related_types_;        // sorted, unique
    kelm::meta_model* meta_model_;
    std::vector<u32> excluded_compositions_;
    std::vector<u32> excluded_properties_;
    std::vector<u32> excluded_semantics_;

    // Kept of all, built when first read.
    mutable flattened<meta_property> all_properties_;
    mutable flattened<meta_composition> all_compositions_;
    mutable std::unique_ptr<semantic_table> all_semantics_; // null also when there are none
    mutable bool has_all_semantics_ = false;
    mutable std::optional<std::vector<u32>> all_related_types_;
    // Objects borrow a merged table for life: one that is out of date is kept aside, not freed.
    // There is room for the present one.
    mutable std::vector<std::unique_ptr<semantic_table>> retired_semantics_;
};

} // namespace kelm
