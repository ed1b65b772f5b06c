// Start-up of the process, and the framework's door to attributes and types.
// The built-in tables themselves stand with the meta model.
#include "framework/data_types.h"
#include "framework/framework_impl.h"
#include "framework/values.h"
#include "meta/built_ins.h"
#include "meta/meta_attribute_table.h"
#include "meta/meta_model_impl.h"
#include "meta/udp_definition.h"
#include "util/scoped_mark.h"

namespace kelm {

void framework_impl::initialise(meta_model_builder& builder) {
    if (initialised_ || initialising_) return;
    const scoped_mark mark{initialising_};
    build_built_ins();
    builder.define_data_types();
    builder.define_meta_attributes();
    builder.define_meta_objects();
    initialised_ = true;
}

// A builder that throws may be tried again: what is built in stands by then.
void framework_impl::build_built_ins() {
    if (built_ins_stand_) return;
    data_types::register_built_in_data_types();
    add_built_in_attributes();
    add_built_in_types(kelm::application_meta_model());
    built_ins_stand_ = true;
}

meta_model* framework_impl::application_meta_model() { return &kelm::application_meta_model(); }

void framework_impl::add_meta_attribute(u32 id, const std::string& name, bool is_inheritable) {
    meta_attributes().add(id, name, nullptr, is_inheritable);
}

void framework_impl::add_meta_attribute_with_default(u32 id, const std::string& name,
                                                     const abstract_property& value, bool is_inheritable) {
    meta_attributes().add(id, name, clone(&value), is_inheritable);
}

meta_attribute* framework_impl::find_meta_attribute(u32 id) { return meta_attributes().find(id); }
void framework_impl::meta_attribute_ids(std::vector<u32>& out) { meta_attributes().ids(out); }

bool framework_impl::is_object_type_of_udp(const object* what, u32 type) {
    return udp::is_object_type_of_udp(what, type);
}

u32 framework_impl::udp_property_id(const object* what) { return udp::udp_property_id(what); }

} // namespace kelm
