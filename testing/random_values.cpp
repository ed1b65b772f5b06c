// Drawing values: of the kind that a property declares, or of any.
// Which step they are for is random_steps.cpp.
#include "testing/random_steps.h"

namespace kelm::testing {

const vocabulary::property* random_steps::any_property(const object& of, bool only_lists) {
    const vocabulary::type* const type = words_.find(of.type());
    if (!type) return nullptr;
    std::vector<const vocabulary::property*> all;
    for (const vocabulary::property& each : type->properties)
        if (!only_lists || each.kind == data_type::vector) all.push_back(&each);
    return all.empty() ? nullptr : numbers_.one_of(all);
}

planned_value random_steps::value_of(const vocabulary::property& which) {
    u32 kind = which.kind;
    if (history_.mix().undeclared) kind = numbers_.one_of(words_.wild_kinds);
    if (kind != data_type::vector) return scalar(kind, which.texts);
    planned_value list;
    list.kind = kind;
    for (std::size_t count = numbers_.below(4); count != 0; --count)
        list.elements.push_back(element_of(which));
    return list;
}

planned_value random_steps::element_of(const vocabulary::property& which) {
    u32 kind = which.element_kind;
    if (history_.mix().undeclared) {
        do kind = numbers_.one_of(words_.wild_kinds);
        while (kind == data_type::vector);
    } else if (kind == 0) {
        constexpr u32 kinds[] = {data_type::object_reference, data_type::string, data_type::integer};
        kind = numbers_.one_of(kinds);
    }
    return scalar(kind, which.texts);
}

planned_value random_steps::scalar(u32 kind, const std::vector<std::string>& texts) {
    planned_value out;
    out.kind = kind;
    if (kind != data_type::object_reference) {
        const bool is_chosen = !texts.empty() && (history_.mix().documented || !one_in(4));
        out.text = is_chosen ? numbers_.one_of(texts) : text_of_kind(kind);
    } else if (const object* const target = one_in(6) ? nullptr : any()) {
        out.target = name_of(target);
    }
    return out;
}

std::string random_steps::text_of_kind(u32 kind) {
    std::string digit = std::to_string(numbers_.below(10));
    switch (kind) {
    case data_type::string:
        return std::string(numbers_.below(history_.mix().undeclared || one_in(8) ? 40 : 4), 'x');
    case data_type::boolean: return one_in(2) ? "True" : "False";
    case data_type::real:
        if (history_.mix().documented) return digit;
        return history_.mix().undeclared || one_in(8) ? "nan" : digit + ".25";
    case data_type::model_id: return "{0000000" + digit + "-0000-0000-0000-000000000000}";
    case data_type::short_integer:
    case data_type::integer:
    case data_type::long_integer: return one_in(8) ? "-" + digit : digit;
    default: return digit;
    }
}

} // namespace kelm::testing
