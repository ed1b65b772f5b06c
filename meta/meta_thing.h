// The seam between an interface of meta things and their common implementation.
// No behaviour of its own: the operations that both name lead to the implementation.
#pragma once

#include "meta/meta_base.h"

#include <kelm/meta_model.h>

#include <vector>

namespace kelm {

/// An interface joined with meta_base.
template <class Interface>
class meta_thing : public Interface, public meta_base {
public:
    explicit meta_thing(u32 id = no_id) : meta_base(id) {}

    std::string name() const override { return meta_base::name(); }
    std::string definition() const override { return meta_base::definition(); }
    u32 id() const override { return meta_base::id(); }
    value_ptr attribute_value(u32 attribute) const override { return meta_base::attribute_value(attribute); }
    void set_attribute_value(u32 attribute, const abstract_property& value) override {
        meta_base::set_attribute_value(attribute, value);
    }
    bool remove_attribute(u32 attribute) override { return meta_base::remove_attribute(attribute); }
    value_map attributes() const override { return meta_base::attributes(); }

protected:
    /// \returns the direct bases, each of which is a `Thing`
    template <class As, class Thing>
    std::vector<As*> bases_as() const {
        std::vector<As*> out;
        out.reserve(bases_ref().size());
        for (meta_base* base : bases_ref()) out.push_back(static_cast<Thing*>(base));
        return out;
    }
};

} // namespace kelm
