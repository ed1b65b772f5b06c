// Random steps with definitions of user-defined properties, and the text of what they have made.
// Values of such properties are set like any other, by the law kit.
#include "tests/random/random_histories.h"
#include "tests/support/world.h"

#include "testing/canonical_text.h"
#include "testing/player.h"

#include <algorithm>
#include <vector>

namespace kelm::test {

namespace {

using kelm::testing::action;
using kelm::testing::planned_value;
using kelm::testing::player;
using kelm::testing::random_numbers;
using kelm::testing::step;
using kelm::testing::unsigned_number;

constexpr u32 unknown_type = 41999;
constexpr u32 defined_for[] = {types::thing, types::part, types::hooked, unknown_type};

planned_value plain(u32 kind, const std::string& text) { return {kind, text, {}, {}}; }
planned_value plain_list(std::vector<planned_value> elements) {
    return {data_type::vector, {}, {}, std::move(elements)};
}

class definition_steps final : public kelm::testing::companion {
public:
    void made(player&, object& what) override {
        if (what.type() == type_id::user_defined_property) definitions_.push_back(what.id());
    }
    std::optional<step> draw(player& at, random_numbers& numbers) override {
        if (!numbers.one_in(4)) return std::nullopt;
        const object* const found = any_definition(at, numbers);
        step out;
        if (!found) {
            out.what = action::create_object;
            out.id = type_id::user_defined_property;
            return out;
        }
        out.object = at.names().name_of(*found);
        return change_of(out, *found, numbers);
    }
    void add_state(kelm::model& of, std::string& out) const override;

private:
    const object* any_definition(const player& at, random_numbers& numbers) const {
        std::vector<const object*> living;
        for (const u32 id : definitions_)
            if (const object* const found = at.model().find_object(id)) living.push_back(found);
        return living.empty() ? nullptr : numbers.one_of(living);
    }
    static std::optional<step> change_of(step out, const object& definition, random_numbers& numbers);
    static step change_list(step out, const object& definition, random_numbers& numbers);

    std::vector<u32> definitions_;
};

/// Appends the user-defined properties of the types that have any.
void definition_steps::add_state(kelm::model& of_model, std::string& out) const {
    for (const u32 type : defined_for) {
        const meta_object* const of = of_model.meta_model()->find_meta_object(type);
        if (!of) continue;
        std::vector<meta_property*> all = of->properties();
        std::ranges::sort(all, {}, [](const meta_property* each) { return each->id(); });
        for (const meta_property* each : all) {
            if (!each->is_user_defined()) continue;
            const value_ptr by_default = each->attribute_value(attribute_id::default_value);
            out += "type " + std::to_string(type) + " has " + std::to_string(each->id()) + ' ' +
                   each->name() + " by default " + kelm::testing::value_text(by_default.get()) + '\n';
        }
    }
}

std::optional<step> definition_steps::change_of(step out, const object& definition, random_numbers& numbers) {
    const auto set = [&](u32 id, planned_value value) {
        out.what = action::set_property;
        out.id = id;
        out.value = std::move(value);
        return out;
    };
    const planned_value text = plain(data_type::string, "u" + std::to_string(numbers.below(3)));
    switch (numbers.below(12)) {
    case 0:
    case 1: return set(property_id::name, text);
    case 2: {
        std::vector<planned_value> list;
        for (const u32 type : defined_for)
            if (!numbers.one_in(3)) list.push_back(plain(unsigned_number, std::to_string(type)));
        return set(property_id::udp_object_types, plain_list(std::move(list)));
    }
    case 3: return set(property_id::udp_default_value, text);
    case 4: {
        std::vector<planned_value> list;
        for (std::size_t count = numbers.below(3); count != 0; --count)
            list.push_back(plain(data_type::string, "c" + std::to_string(count)));
        return set(property_id::udp_default_value_choices, plain_list(std::move(list)));
    }
    case 5:
        return set(property_id::udp_multiline_value,
                   plain(data_type::boolean, numbers.one_in(2) ? "True" : "False"));
    case 6: return set(property_id::definition, text);
    case 7: {
        constexpr u32 ids[] = {property_id::name, property_id::udp_object_types,
                               property_id::udp_default_value, property_id::udp_default_value_choices,
                               property_id::udp_id};
        out.what = action::delete_property;
        out.id = numbers.one_of(ids);
        return out;
    }
    case 8:
        if (!numbers.one_in(3)) return std::nullopt;
        out.what = action::delete_object;
        return out;
    default: return change_list(out, definition, numbers);
    }
}

/// Changes an element of the types or the choices.
step definition_steps::change_list(step out, const object& definition, random_numbers& numbers) {
    const bool is_types = numbers.one_in(2);
    out.id = is_types ? property_id::udp_object_types : property_id::udp_default_value_choices;
    out.value = is_types ? plain(unsigned_number, std::to_string(numbers.one_of(defined_for)))
                         : plain(data_type::string, "d" + std::to_string(numbers.below(3)));
    const value_ptr stored = definition.get_own_property(out.id);
    const auto* const list = dynamic_cast<const vector_property*>(stored.get());
    out.what = action::append_element;
    if (!list || list->elements.empty() || numbers.one_in(2)) return out;
    const std::size_t size = list->elements.size();
    out.position = numbers.below(size);
    switch (numbers.below(4)) {
    case 0: out.what = action::set_element; return out;
    case 1:
        out.what = action::move_element;
        out.to = numbers.below(size);
        return out;
    default: out.what = action::delete_element; return out;
    }
}

} // namespace

std::unique_ptr<kelm::testing::companion> make_definition_steps() {
    return std::make_unique<definition_steps>();
}

} // namespace kelm::test
