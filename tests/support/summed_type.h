// A type with properties that summaries leave out.
// The other types of the tests are in world.h.
#pragma once

#include <kelm/meta_model.h>
#include <kelm/property.h>

namespace kelm::test {

namespace types {
inline constexpr u32 summed = 43001;
} // namespace types

namespace props {
inline constexpr u32 told = 43101;      ///< a text without any mark
inline constexpr u32 said_told = 43102; ///< a text that is said not to be left out, in each of the three ways
inline constexpr u32 skipped = 43103;   ///< a text that is left out of summaries
inline constexpr u32 local = 43104;     ///< a text that is left out unless the object has its own
inline constexpr u32 fleeting = 43105;  ///< a text that is not persistent
} // namespace props

inline void declare_summed_type(meta_model& all) {
    meta_object& type = *all.add_meta_object(types::summed, "Summed", "", "");
    type.add_base_type(all.find_meta_object(type_id::generic_object));
    const auto declare = [&](u32 id, const char* name) {
        return type.add_property(id, name, data_type::string, "");
    };
    const auto mark = [](meta_property* which, u32 attribute, bool value) {
        which->set_attribute_value(attribute, property<bool>{value});
    };
    declare(props::told, "Told");
    meta_property* const said = declare(props::said_told, "Said Told");
    for (const u32 attribute : {attribute_id::skip_in_summary, attribute_id::skip_in_summary_unless_local,
                                attribute_id::non_persistent})
        mark(said, attribute, false);
    mark(declare(props::skipped, "Skipped"), attribute_id::skip_in_summary, true);
    mark(declare(props::local, "Local"), attribute_id::skip_in_summary_unless_local, true);
    mark(declare(props::fleeting, "Fleeting"), attribute_id::non_persistent, true);
}

} // namespace kelm::test
