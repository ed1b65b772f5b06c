// A line a domain, a line a property.
// The values that tables and columns have of them are printed with these, by tree_printer.cpp.
#include "printing/definitions_printer.h"

#include "printing/shown.h"
#include "printing/text.h"
#include "schema/properties.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>

namespace schema {

namespace {

void print_domain(std::ostream& out, const kelm::object& domain) {
    std::string line =
        "domain " + shown_name(domain) + "  " + printable(text(domain, property::declared_type));
    if (flag(domain, property::not_null)) line += "  not null";
    if (has(domain, property::default_value))
        line += "  default " + shown_sql(text(domain, property::default_value));
    print_line(out, line);
}

void print_property(std::ostream& out, const kelm::object& definition) {
    std::string types;
    if (kelm::framework::instance().is_object_type_of_udp(&definition, type::table))
        append(types, "table", ", ");
    if (kelm::framework::instance().is_object_type_of_udp(&definition, type::column))
        append(types, "column", ", ");
    std::string line = "property " + shown_name(definition) + " on " + types;
    if (has(definition, kelm::property_id::udp_default_value))
        line += "  default " + shown_identifier(text(definition, kelm::property_id::udp_default_value));
    std::string all;
    for (const std::string& choice : choices(definition)) append(all, shown_identifier(choice), ", ");
    if (!all.empty()) line += "  choices (" + all + ')';
    print_line(out, line);
}

void print_block(std::ostream& out, const kelm::object& root, kelm::u32 type,
                 void (*print)(std::ostream&, const kelm::object&)) {
    const std::vector<kelm::object*> all = parts(root, type);
    if (!all.empty()) out << '\n';
    for (const kelm::object* each : all) print(out, *each);
}

} // namespace

void print_definitions(std::ostream& out, const kelm::object& root) {
    print_block(out, root, type::domain, print_domain);
    print_block(out, root, kelm::type_id::user_defined_property, print_property);
}

} // namespace schema
