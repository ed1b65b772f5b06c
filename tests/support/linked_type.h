// A type whose references must exist, or take their targets along into a snapshot; hooked like the type it derives from.
// The other types of the tests are in world.h.
#pragma once

#include "tests/support/world.h"

namespace kelm::test {

namespace types {
inline constexpr u32 linked = 42001; ///< derived from hooked; thing, hooked, linked and the model may own it
} // namespace types

namespace props {
inline constexpr u32 needed = 42101;       ///< a reference that must exist
inline constexpr u32 needed_list = 42102;  ///< a vector that must exist
inline constexpr u32 needed_text = 42103;  ///< a text that must exist
inline constexpr u32 free_to_go = 42104;   ///< a reference that is said not to need to exist
inline constexpr u32 pulled = 42105;       ///< a reference that takes its target along
inline constexpr u32 pulled_list = 42106;  ///< a vector that takes its targets along
inline constexpr u32 left_behind = 42107;  ///< a reference that is said not to take its target along
inline constexpr u32 pulled_again = 42108; ///< one more reference that takes its target along
} // namespace props

inline void declare_linked_type(meta_model& all) {
    meta_object& type = *all.add_meta_object(types::linked, "Linked", "", "");
    type.add_base_type(all.find_meta_object(types::hooked));
    const auto declare = [&](u32 id, const char* name, u32 kind, u32 attribute, bool value) {
        type.add_property(id, name, kind, "")->set_attribute_value(attribute, property<bool>{value});
    };
    declare(props::needed, "Needed", data_type::object_reference, attribute_id::must_exist, true);
    declare(props::needed_list, "Needed List", data_type::vector, attribute_id::must_exist, true);
    declare(props::needed_text, "Needed Text", data_type::string, attribute_id::must_exist, true);
    declare(props::free_to_go, "Free To Go", data_type::object_reference, attribute_id::must_exist, false);
    declare(props::pulled, "Pulled", data_type::object_reference, attribute_id::copy_referenced_object, true);
    declare(props::pulled_list, "Pulled List", data_type::vector, attribute_id::copy_referenced_object, true);
    declare(props::left_behind, "Left Behind", data_type::object_reference,
            attribute_id::copy_referenced_object, false);
    declare(props::pulled_again, "Pulled Again", data_type::object_reference,
            attribute_id::copy_referenced_object, true);
    for (const u32 owner : {type_id::model, types::thing, types::hooked, types::linked})
        all.find_meta_object(owner)->add_composition(types::linked);
}

} // namespace kelm::test
