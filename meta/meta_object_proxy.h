// A type of the application as one model shows it: read through, copied when it is first changed.
// Types that hold their own declarations are meta_object_impl.h.
#pragma once

#include "meta/flattening.h"
#include "meta/meta_object_base.h"
#include "meta/meta_object_impl.h"

#include <memory>
#include <string>
#include <vector>

namespace kelm {

/// Shows a type of the application in an instance meta model, which owns it.
///
/// Properties can be added and removed: the first attempt gives the model a private type that derives from the
/// application's, and there is no way back.  Compositions, attributes, hooks and bases are those of the
/// application in every model: operations that would change them do nothing.
class meta_object_proxy final : public meta_object_base, public observer_impl {
public:
    /// \param target  borrowed: the application's type
    /// \param in      borrowed: the instance meta model
    meta_object_proxy(meta_object_impl& target, kelm::meta_model& in);
    ~meta_object_proxy() override;

    std::string name() const override { return target_->name(); }
    std::string alternative_name() const override { return target_->alternative_name(); }
    std::string definition() const override { return target_->definition(); }
    u32 id() const override { return target_->id(); }
    void set_generic() override {}
    bool is_generic() const override { return target_->is_generic(); }
    bool is_base_of(u32 type) const override { return target_->is_base_of(type); }

    std::vector<meta_property*> properties() const override { return target_->properties(); }
    meta_property* add_property(u32 id) override { return own_target().add_property(id); }
    meta_property* add_property(u32 id, const std::string& name, u32 property_class,
                                const std::string& definition) override {
        return own_target().add_property(id, name, property_class, definition);
    }
    meta_property* find_property(const std::string& name) const override {
        return target_->find_property(name);
    }
    meta_property* find_property(u32 id) const override { return target_->find_property(id); }
    bool has_property(const std::string& name) const override { return target_->has_property(name); }
    bool has_property(u32 id) const override { return target_->has_property(id); }
    meta_property* override_property(u32 id) override { return own_target().override_property(id); }

    std::vector<meta_composition*> compositions() const override { return compositions_ref(); }
    meta_composition* add_composition(u32, const std::string&, const std::string&) override {
        return nullptr;
    }
    meta_composition* add_composition(u32) override { return nullptr; }
    meta_composition* find_composition(const std::string& name) const override;
    meta_composition* find_composition(u32 child_type) const override;
    meta_composition* find_composition_by_alternative_name(const std::string& name) const override;
    bool has_composition(const std::string& name) const override { return target_->has_composition(name); }
    bool has_composition(u32 child_type) const override { return target_->has_composition(child_type); }

    value_ptr attribute_value(u32 attribute) const override { return target_->attribute_value(attribute); }
    void set_attribute_value(u32, const abstract_property&) override {}
    bool remove_attribute(u32) override { return false; }
    value_map attributes() const override { return target_->attributes(); }

    bool add_semantic(semantic*) override { return false; }
    bool semantics_of_kind(int kind, std::vector<shared_ptr<semantic>>& out) const override {
        return target_->semantics_of_kind(kind, out);
    }
    semantic* find_semantic(u32 id) const override { return target_->find_semantic(id); }

    void add_base_type(meta_object*) override {}
    void remove_base_type(meta_object*) override {}
    bool has_base_type(u32 type, bool recursive) const override {
        return target_->has_base_type(type, recursive);
    }
    std::vector<meta_object*> base_types() const override { return target_->base_types(); }

    void add_related_type(u32) override {}
    std::vector<u32> related_types() const override { return target_->related_types(); }
    bool has_related_type(u32 type) const override { return target_->has_related_type(type); }

    void exclude_composition(u32) override {}
    void exclude_property(u32) override {}
    void exclude_semantic(u32) override {}
    bool is_composition_excluded(u32 id) const override { return target_->is_composition_excluded(id); }
    bool is_property_excluded(u32 id) const override { return target_->is_property_excluded(id); }
    bool is_semantic_excluded(u32 id) const override { return target_->is_semantic_excluded(id); }

    const std::vector<meta_property*>& properties_ref() const override { return target_->properties_ref(); }
    /// \returns copies whose child types are those of this meta model, ascending by id
    const std::vector<meta_composition*>& compositions_ref() const override;
    const abstract_property* find_attribute(u32 attribute) const override {
        return target_->find_attribute(attribute);
    }
    bool remove_property(u32 id) override { return own_target().remove_property(id); }
    kelm::meta_model* owner_meta_model() const override { return meta_model_; }
    meta_property* add_existing_property(std::unique_ptr<meta_property_impl> made) override {
        return own_target().add_existing_property(std::move(made));
    }
    const std::vector<u32>& related_types_ref() const override { return target_->related_types_ref(); }
    const semantic_table* merged_semantics() const override { return target_->merged_semantics(); }
    void drop_caches() override { compositions_.clear(); }

    /// The target has changed: frees the copies of its compositions.
    bool update(subject* from, message* what) override;

    /// \returns whether the first change has been made, or tried
    bool owns_target() const { return own_ != nullptr; }

private:
    /// Makes the private type unless it is there.
    meta_object_impl& own_target();

    meta_object_impl* target_;
    kelm::meta_model* meta_model_;
    std::unique_ptr<meta_object_impl> own_; // once made, the target
    mutable declarations<meta_composition> compositions_;
};

} // namespace kelm
