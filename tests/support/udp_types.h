// The types that tests give user-defined properties, with the hooks of one of them.
// The other types of the tests are in world.h.
#pragma once

#include <kelm/meta_model.h>
#include <kelm/object.h>
#include <kelm/property.h>
#include <kelm/semantic.h>

#include <string>

namespace kelm::udp_world {

inline constexpr u32 table_type = 41001;
inline constexpr u32 column_type = 41002;   ///< the application gives it a property "Colour"
inline constexpr u32 derived_type = 41003;  ///< derived from the table
inline constexpr u32 stubborn_type = 41004; ///< keeps its user-defined values, and supplies absent ones
inline constexpr u32 unknown_type = 41999;
inline constexpr u32 colour_property = 41100;
inline constexpr u32 first_id = 50001;

class keeps_user_values final : public pre_prop_delete_semantic {
public:
    u32 id() const override { return 41200; }
    bool do_it(object*, u32 id, object*) override { return id < property_id::first_user_defined; }
};

class supplies_absent_values final : public post_prop_get_semantic {
public:
    u32 id() const override { return 41201; }
    bool do_it(object*, u32, abstract_property*& value) override {
        if (!value) value = new property<std::string>("supplied");
        return true;
    }
};

inline void declare_types(meta_model& types) {
    meta_object& base = *types.find_meta_object(type_id::generic_object);
    const auto declare = [&](u32 id, const char* name, meta_object& from) -> meta_object& {
        meta_object& made = *types.add_meta_object(id, name, "", "");
        made.add_base_type(&from);
        return made;
    };
    meta_object& table = declare(table_type, "Udp Table", base);
    declare(column_type, "Udp Column", base).add_property(colour_property, "Colour", data_type::string, "");
    declare(derived_type, "Udp Derived Table", table);
    meta_object& stubborn = declare(stubborn_type, "Udp Stubborn", base);
    stubborn.add_semantic(new keeps_user_values);
    stubborn.add_semantic(new supplies_absent_values);
}

} // namespace kelm::udp_world
