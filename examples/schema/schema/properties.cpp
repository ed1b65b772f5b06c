// Reads definition objects, and the values of what they define.
// The definitions are asked, not the model's types: an undone removal brings the choices back to the former alone.
#include "schema/properties.h"

#include "schema/values.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/model.h>
#include <kelm/object_helpers.h>

namespace schema {

namespace {

std::vector<kelm::object*> definitions(const kelm::object& root) {
    return parts(root, kelm::type_id::user_defined_property);
}

} // namespace

kelm::object* definition_of(const kelm::object& root, kelm::u32 property) {
    for (kelm::object* definition : definitions(root))
        if (kelm::framework::instance().udp_property_id(definition) == property) return definition;
    return nullptr;
}

std::vector<std::string> choices(const kelm::object& definition) {
    constexpr kelm::u32 list = kelm::property_id::udp_default_value_choices;
    std::vector<std::string> found;
    for (std::size_t at = 0; at < kelm::vector_prop_size(&definition, list); ++at)
        found.push_back(kelm::string_at_vector_prop_pos(&definition, list, at));
    return found;
}

std::vector<std::pair<std::string, std::string>> user_values(const kelm::object& what) {
    kelm::framework& framework = kelm::framework::instance();
    std::vector<std::pair<std::string, std::string>> found;
    for (const kelm::object* definition : definitions(*what.model()->as_object())) {
        const kelm::u32 id = framework.udp_property_id(definition);
        if (framework.is_object_type_of_udp(definition, what.type()) && what.defines_property(id))
            found.emplace_back(name(*definition), text(what, id));
    }
    return found;
}

} // namespace schema
