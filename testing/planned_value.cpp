// From plan to value, and from plan to code.
// Which values are tried is told by random_steps.cpp.
#include "testing/planned_value.h"

#include <kelm/framework.h>

#include <algorithm>
#include <limits>

namespace kelm::testing {

namespace {

constexpr const char* not_a_number = "nan";

std::unique_ptr<abstract_property> make_reference(const planned_value& plan, const object_names& names) {
    object* const target = plan.target ? names.find(*plan.target) : nullptr;
    if (plan.target && !target) return nullptr;
    return std::make_unique<property<object*>>(target);
}

std::unique_ptr<abstract_property> make_list(const planned_value& plan, const object_names& names) {
    auto list = std::make_unique<vector_property>();
    for (const planned_value& each : plan.elements) {
        auto element = make_value(each, names);
        if (!element) return nullptr;
        list->elements.push_back(element.release());
    }
    return list;
}

std::string quoted(const std::string& text) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string out = "\"";
    for (const char each : text) {
        const auto byte = static_cast<unsigned char>(each);
        if (each == '"' || each == '\\') {
            out += '\\';
            out += each;
        } else if (byte < 32 || byte > 126) {
            out += std::string("\\x") + digits[byte >> 4U] + digits[byte & 15U] + "\" \"";
        } else {
            out += each;
        }
    }
    return out + '"';
}

std::string box(const char* type, const std::string& value) {
    return std::string("kelm::property<") + type + ">{" + value + "}";
}

/// \returns the text as a number that an initialiser takes
std::string number(const std::string& text) { return text.empty() ? "0" : text; }

} // namespace

std::unique_ptr<abstract_property> make_value(const planned_value& plan, const object_names& names) {
    switch (plan.kind) {
    case data_type::none: return nullptr;
    case data_type::object_reference: return make_reference(plan, names);
    case data_type::vector: return make_list(plan, names);
    case unsigned_number:
        return std::make_unique<property<unsigned>>(static_cast<unsigned>(std::stoul(number(plan.text))));
    default: break;
    }
    if (plan.kind == data_type::real && plan.text == not_a_number)
        return std::make_unique<property<double>>(std::numeric_limits<double>::quiet_NaN());
    std::unique_ptr<abstract_property> made{framework::instance().create_value(plan.kind)};
    if (made) made->from_string(plan.text);
    return made;
}

std::string code_of(const object* what) { return what ? "o(" + std::to_string(what->id()) + ")" : "nullptr"; }

std::string code_of(const planned_value& plan, const object_names& names) {
    switch (plan.kind) {
    case data_type::none: return "nullptr";
    case data_type::object_reference:
        return box("kelm::object*", plan.target ? code_of(names.find(*plan.target)) : "nullptr");
    case data_type::boolean: return box("bool", plan.text == "True" ? "true" : "false");
    case data_type::short_integer: return box("short", number(plan.text));
    case data_type::integer: return box("int", number(plan.text));
    case data_type::long_integer: return box("long", number(plan.text));
    case data_type::long_long: return box("long long", number(plan.text));
    case data_type::string: return box("std::string", quoted(plan.text));
    case data_type::real:
        return box("double", plan.text == not_a_number ? "std::numeric_limits<double>::quiet_NaN()"
                                                       : number(plan.text));
    case unsigned_number: return box("unsigned", number(plan.text) + "U");
    case data_type::vector: break;
    default: return "*made(" + std::to_string(plan.kind) + ", " + quoted(plan.text) + ")";
    }
    std::string out;
    for (const planned_value& each : plan.elements) out += (out.empty() ? "" : ", ") + code_of(each, names);
    return "*list(" + out + ")";
}

bool has_targets(const planned_value& plan) {
    return plan.kind == data_type::object_reference || std::ranges::any_of(plan.elements, has_targets);
}

} // namespace kelm::testing
