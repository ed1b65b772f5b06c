// What the library itself asks of a type, beyond the public interface.
// Types of the application meta model and those of a model both answer it.
#pragma once

#include "framework/semantic_table.h"
#include "meta/meta_property_impl.h"

#include <kelm/meta_model.h>

#include <memory>
#include <string>
#include <vector>

namespace kelm {

/// A type as the library sees it.
class meta_object_base : public meta_object {
public:
    // The second names, which lead to the first.
    std::vector<meta_composition*> child_types() const final { return compositions(); }
    meta_composition* add_child_type(u32 child_type, const std::string& name,
                                     const std::string& definition) final {
        return add_composition(child_type, name, definition);
    }
    meta_composition* add_child_type(u32 child_type) final { return add_composition(child_type); }
    meta_composition* find_child_type(const std::string& name) const final { return find_composition(name); }
    meta_composition* find_child_type(u32 child_type) const final { return find_composition(child_type); }
    meta_composition* find_child_type_by_alternative_name(const std::string& name) const final {
        return find_composition_by_alternative_name(name);
    }
    bool has_child_type(const std::string& name) const final { return has_composition(name); }
    bool has_child_type(u32 child_type) const final { return has_composition(child_type); }
    void exclude_child_type(u32 child_type) final { exclude_composition(child_type); }
    bool is_child_type_excluded(u32 child_type) const final { return is_composition_excluded(child_type); }

    bool is_user_defined() const final { return id() >= type_id::first_user_defined; }

    /// \returns all properties, own first; good until the next change of this type or a base
    virtual const std::vector<meta_property*>& properties_ref() const = 0;
    /// \returns all compositions; good until the next change of this type or a base
    virtual const std::vector<meta_composition*>& compositions_ref() const = 0;
    /// \returns borrowed: the value, own or inherited; null when there is none
    virtual const abstract_property* find_attribute(u32 attribute) const = 0;
    /// Frees a property that is declared here.
    /// \returns false when it is not: an inherited one stays
    virtual bool remove_property(u32 id) = 0;
    /// \returns borrowed: the meta model that this type is found in
    virtual kelm::meta_model* owner_meta_model() const = 0;
    /// Declares a property made elsewhere, and owns it whatever the answer.
    /// \returns it; null, and it is freed, when its id is declared here already
    virtual meta_property* add_existing_property(std::unique_ptr<meta_property_impl> made) = 0;
    /// \returns own and inherited, ascending; good until the next change of this type or a base
    virtual const std::vector<u32>& related_types_ref() const = 0;
    /// \returns all hooks, own and inherited; null when there is none.  A table lives as long as the type, also
    ///          when a change has put another in its place.
    virtual const semantic_table* merged_semantics() const = 0;
    /// Forgets what is kept of bases or of a target, here alone and without telling.
    virtual void drop_caches() = 0;
};

} // namespace kelm
