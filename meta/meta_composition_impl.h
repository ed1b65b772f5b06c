// The child types that types declare.
// Which of them a type has, with those it inherits, is in flattening.h.
#pragma once

#include "meta/meta_thing.h"

namespace kelm {

/// A declared child type; its type owns it, or the proxy that shows it in another meta model.
class meta_composition_impl final : public meta_thing<meta_composition> {
public:
    /// \param in  borrowed: where the child type is looked up
    meta_composition_impl(u32 child_type, kelm::meta_model* in) : meta_thing(child_type), meta_model_(in) {}

    std::string alternative_name() const override;
    void add_base(meta_composition* base) override;
    void remove_base(meta_composition* base) override;
    std::vector<meta_composition*> bases() const override;
    meta_object* child_meta_object() const override;
    bool is_user_defined() const override { return id() >= type_id::first_user_defined; }

protected:
    /// Asks the child type last, so that a composition without a name shows that of its child type.
    const abstract_property* search(u32 attribute, visited& been) const override;

private:
    using meta_base::add_base;
    using meta_base::remove_base;

    kelm::meta_model* meta_model_;
};

} // namespace kelm
