// Random steps with definitions of user-defined properties, and the text of what they have made.
// Values of such properties are set like any other, see random_edits.cpp.
#include "tests/random/random_edits.h"

#include <algorithm>
#include <sstream>

namespace kelm::test {

namespace {

constexpr u32 unknown_type = 41999;
constexpr u32 defined_for[] = {types::thing, types::part, types::hooked, unknown_type};

std::string code_of_ids(const vector_property& list) {
    std::string out;
    for (const abstract_property* each : list.elements) out += (out.empty() ? "" : ", ") + each->to_string();
    return "ids({" + out + "})";
}

} // namespace

/// \returns a text of the objects and of the user-defined properties of the types that have any
std::string random_run::state_of(kelm::model& of_model) const {
    std::ostringstream out;
    out << dump_of(of_model);
    if (!mix_.definitions) return out.str();
    for (const u32 type : defined_for) {
        const meta_object* const of = of_model.meta_model()->find_meta_object(type);
        if (!of) continue;
        std::vector<meta_property*> all = of->properties();
        std::ranges::sort(all, {}, [](const meta_property* each) { return each->id(); });
        for (const meta_property* each : all) {
            if (!each->is_user_defined()) continue;
            const value_ptr by_default = each->attribute_value(attribute_id::default_value);
            out << "type " << type << " has " << each->id() << ' ' << each->name() << " by default "
                << dump_text(by_default.get()) << '\n';
        }
    }
    return out.str();
}

/// \returns a definition; null when there is none
object* random_run::any_definition() {
    std::erase_if(definitions_, [&](u32 id) {
        const object* const found = model_->find_object(id);
        return found &&
               found->type() != type_id::user_defined_property; // numbers of undone objects come again
    });
    if (definitions_.empty()) return nullptr;
    return model_->find_object(definitions_[numbers_.below(definitions_.size())]);
}

void random_run::edit_definition() {
    object* const found = any_definition();
    if (!found) {
        note("fw.create_object(" + std::to_string(type_id::user_defined_property) + ", root)");
        const object* const made = framework::instance().create_object(type_id::user_defined_property, root_);
        if (made) definitions_.push_back(made->id());
        return;
    }
    const auto set = [&](u32 id, const abstract_property& value, const std::string& code) {
        note(name_of(found) + "->set_property(" + std::to_string(id) + ", " + code + ")");
        found->set_property(id, value);
    };
    const property<std::string> text{"u" + std::to_string(numbers_.below(3))};
    switch (numbers_.below(12)) {
    case 0:
    case 1: return set(property_id::name, text, code_of(text));
    case 2: {
        vector_property list;
        for (const u32 type : defined_for)
            if (!one_in(3)) list.elements.push_back(new property<unsigned>{type});
        return set(property_id::udp_object_types, list, code_of_ids(list));
    }
    case 3: return set(property_id::udp_default_value, text, code_of(text));
    case 4: {
        vector_property list;
        for (std::size_t count = numbers_.below(3); count != 0; --count)
            list.elements.push_back(new property<std::string>{"c" + std::to_string(count)});
        return set(property_id::udp_default_value_choices, list, code_of(list));
    }
    case 5: {
        const property<bool> flag{one_in(2)};
        return set(property_id::udp_multiline_value, flag, code_of(flag));
    }
    case 6: return set(property_id::definition, text, code_of(text));
    case 7: {
        constexpr u32 ids[] = {property_id::name, property_id::udp_object_types,
                               property_id::udp_default_value, property_id::udp_default_value_choices,
                               property_id::udp_id};
        const u32 id = ids[numbers_.below(std::size(ids))];
        note(name_of(found) + "->delete_property(" + std::to_string(id) + ")");
        found->delete_property(id);
        return;
    }
    case 8:
        if (!one_in(3)) return;
        note("fw.delete_object(" + name_of(found) + ")");
        framework::instance().delete_object(found);
        return;
    default: return edit_definition_list(*found);
    }
}

/// Changes an element of the types or the choices.
void random_run::edit_definition_list(object& definition) {
    const bool is_types = one_in(2);
    const u32 id = is_types ? property_id::udp_object_types : property_id::udp_default_value_choices;
    const u32 type = defined_for[numbers_.below(std::size(defined_for))];
    std::unique_ptr<abstract_property> element = std::make_unique<property<unsigned>>(type);
    if (!is_types) element = std::make_unique<property<std::string>>("d" + std::to_string(numbers_.below(3)));
    const value_ptr stored = definition.get_own_property(id);
    const auto* const list = dynamic_cast<const vector_property*>(stored.get());
    const std::string call = name_of(&definition) + "->";
    const std::string start = "(" + std::to_string(id) + ", ";
    if (!list || list->elements.empty() || one_in(2)) {
        note(call + "append_vector_element" + start + code_of(*element) + ")");
        definition.append_vector_element(id, *element);
        return;
    }
    const std::size_t size = list->elements.size();
    const std::size_t position = numbers_.below(size);
    const std::string at = std::to_string(position);
    switch (numbers_.below(4)) {
    case 0:
        note(call + "set_vector_element" + start + code_of(*element) + ", " + at + ")");
        definition.set_vector_element(id, *element, position);
        return;
    case 1: {
        const std::size_t to = numbers_.below(size);
        note(call + "move_vector_element" + start + at + ", " + std::to_string(to) + ")");
        definition.move_vector_element(id, position, to);
        return;
    }
    default:
        note(call + "delete_vector_element" + start + at + ")");
        definition.delete_vector_element(id, position);
    }
}

} // namespace kelm::test
