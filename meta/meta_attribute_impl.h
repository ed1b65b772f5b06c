// One row of the table of attributes.
// The values that meta things hold for it are in meta_base.h.
#pragma once

#include <kelm/meta_model.h>
#include <kelm/property.h>

#include <iosfwd>
#include <memory>
#include <string>

namespace kelm {

/// An attribute as registered.  The table owns it; see meta_attribute_table.h for how long it lives.
class meta_attribute_impl final : public meta_attribute {
public:
    meta_attribute_impl() = default;
    /// \param default_value  may be null: the attribute has no default
    meta_attribute_impl(u32 id, std::string name, std::unique_ptr<abstract_property> default_value,
                        bool inheritable);

    u32 id() const override { return id_; }
    const std::string& name() const override { return name_; }
    const abstract_property* default_value() const override { return default_.get(); }
    bool is_inheritable() const override { return inheritable_; }

    /// Reads what write() wrote; on a failure, which the state of `in` tells, this row stays as it was.
    void read(std::istream& in);
    /// Writes the record: id, name, inheritable, has-default, and with a default its code and value.
    void write(std::ostream& out) const;

private:
    /// The fields of the record in their order, for both directions.
    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive);

    u32 id_ = 0;
    std::string name_;
    std::unique_ptr<abstract_property> default_;
    bool inheritable_ = false;
};

} // namespace kelm
