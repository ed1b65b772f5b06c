// The built-in types: what every type derives from, the model, the library, the definition of a user's property.
// The hooks they carry are in udp_semantics.cpp.
#include "meta/built_ins.h"
#include "meta/meta_model_impl.h"
#include "meta/udp_semantics.h"

#include <kelm/property.h>

#include <memory>

namespace kelm {

namespace {

struct property_row {
    u32 id;
    const char* name;
    u32 data_type;
};

constexpr property_row definition_properties[] = {
    {property_id::udp_default_value, "Default Value", data_type::string},
    {property_id::udp_object_types, "Object Types", data_type::vector},
    {property_id::udp_default_value_choices, "Default Value Choices", data_type::vector},
    {property_id::udp_id, "User Defined Property Id", data_type::integer},
    {property_id::udp_multiline_value, "Multiline Value", data_type::boolean},
};

meta_object& add_derived(meta_model_impl& to, u32 id, const char* name, meta_object& base) {
    meta_object* const type = to.add_meta_object(id, name, "", "");
    type->add_base_type(&base);
    return *type;
}

void add_own_semantic(meta_object& type, owned<semantic*> hook) {
    std::unique_ptr<semantic> holder(hook);
    if (type.add_semantic(hook)) static_cast<void>(holder.release());
}

} // namespace

// The order is a promise: it is the order of the types' lists.
void add_built_in_types(meta_model_impl& to) {
    meta_object& generic = *to.add_meta_object(type_id::generic_object, "Generic Object", "", "");
    generic.set_generic();
    generic.add_property(property_id::name, "Name", data_type::string, "");
    generic.add_property(property_id::definition, "Definition", data_type::string, "");
    add_own_semantic(generic, make_udp_default_value());

    meta_object& model = add_derived(to, type_id::model, "Model", generic);
    meta_object& library = add_derived(to, type_id::library, "Library", generic);
    meta_object& definition =
        add_derived(to, type_id::user_defined_property, "User Defined Property", generic);
    model.add_composition(type_id::user_defined_property);
    library.add_composition(type_id::user_defined_property);
    for (const property_row& row : definition_properties)
        definition.add_property(row.id, row.name, row.data_type, "");
    add_udp_scratch_semantics(definition);
}

} // namespace kelm
