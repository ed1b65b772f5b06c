// What a property adds to meta_base.
// Its stored form is in meta_record.cpp.
#include "meta/meta_property_impl.h"

#include "meta/whole_number.h"

namespace kelm {

meta_property_impl::meta_property_impl(u32 id, const std::string& name, u32 property_class,
                                       const std::string& definition)
    : meta_thing(id) {
    describe(name, definition);
    set_attribute_value(attribute_id::property_class, property<int>(static_cast<int>(property_class)));
}

u32 meta_property_impl::property_class() const {
    return whole_number(find_attribute(attribute_id::property_class)).value_or(0);
}

void meta_property_impl::add_base(meta_property* base) {
    meta_base::add_base(dynamic_cast<meta_property_impl*>(base));
}

void meta_property_impl::remove_base(meta_property* base) {
    meta_base::remove_base(dynamic_cast<meta_property_impl*>(base));
}

std::vector<meta_property*> meta_property_impl::bases() const {
    return bases_as<meta_property, meta_property_impl>();
}

const abstract_property* find_attribute(const meta_property& of, u32 attribute) {
    return static_cast<const meta_property_impl&>(of).find_attribute(attribute); // types hold no other class
}

} // namespace kelm
