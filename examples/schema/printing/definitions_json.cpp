// An object a domain, an object a property.
// What a user has not said is null.
#include "printing/definitions_json.h"

#include "printing/json_text.h"
#include "schema/properties.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>

#include <string>
#include <vector>

namespace schema {

namespace {

void write_one_domain(json_writer& json, const kelm::object& domain) {
    json.begin_object();
    json.key("name").value(name(domain));
    json.key("type").value(text(domain, property::declared_type));
    json.key("not_null").value(flag(domain, property::not_null));
    text_or_null(json, "default", domain, property::default_value);
    json.end_object();
}

void write_property(json_writer& json, const kelm::object& definition) {
    kelm::framework& framework = kelm::framework::instance();
    json.begin_object();
    json.key("name").value(name(definition));
    json.key("on_tables").value(framework.is_object_type_of_udp(&definition, type::table));
    json.key("on_columns").value(framework.is_object_type_of_udp(&definition, type::column));
    text_or_null(json, "default", definition, kelm::property_id::udp_default_value);
    json.key("choices").begin_array();
    for (const std::string& choice : choices(definition)) json.value(choice);
    json.end_array();
    json.end_object();
}

void write_list(json_writer& json, const char* key, const std::vector<kelm::object*>& all,
                void (*write)(json_writer&, const kelm::object&)) {
    if (all.empty()) return;
    json.key(key).begin_array();
    for (const kelm::object* each : all) write(json, *each);
    json.end_array();
}

} // namespace

void write_definitions(json_writer& json, const kelm::object& root) {
    write_list(json, "domains", parts(root, type::domain), write_one_domain);
    write_list(json, "properties", parts(root, kelm::type_id::user_defined_property), write_property);
}

void write_domain(json_writer& json, const kelm::object& column) {
    if (const kelm::object* domain = column.inherits_from_at(0)) json.key("domain").value(name(*domain));
}

void write_user_values(json_writer& json, const kelm::object& what) {
    const auto values = user_values(what);
    if (values.empty()) return;
    json.key("properties").begin_object();
    for (const auto& [key, value] : values) json.key(key).value(value);
    json.end_object();
}

} // namespace schema
