// The properties that types declare.
// Which of them a type has, with those it inherits, is in flattening.h.
#pragma once

#include "meta/meta_thing.h"

namespace kelm {

/// A declared property; its type owns it.
class meta_property_impl final : public meta_thing<meta_property> {
public:
    explicit meta_property_impl(u32 id = no_id) : meta_thing(id) {}
    /// With a name, a class (data_type) and, when it is not empty, a definition.
    meta_property_impl(u32 id, const std::string& name, u32 property_class, const std::string& definition);

    u32 property_class() const override;
    void add_base(meta_property* base) override;
    void remove_base(meta_property* base) override;
    std::vector<meta_property*> bases() const override;
    bool is_user_defined() const override { return id() >= property_id::udp_multiline_value; }

    /// The record of meta_base, followed by the stored class.
    bool read(std::istream* in, void* element) override;
    void write(std::ostream* out, void* element) const override;

    /// \returns borrowed: the type that declares it; null as long as none does
    meta_object* owner() const { return owner_; }
    void set_owner(meta_object* type) { owner_ = type; }

private:
    /// Hides that of meta_base, which it begins with.
    template <class Self, class Archive>
    static bool fields(Self& self, Archive& archive);

    using meta_base::add_base;
    using meta_base::remove_base;

    meta_object* owner_ = nullptr;
    /// Kept: a field of the binary record alone.  property_class() is attribute 2, and nothing joins the two:
    /// streams carry the field as they found it, and documents are not asked for it.
    u32 stored_class_ = 0;
};

/// \returns borrowed: what meta_base::find_attribute answers for a property
const abstract_property* find_attribute(const meta_property& of, u32 attribute);

} // namespace kelm
