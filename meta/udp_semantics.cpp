// The hooks behind user-defined properties: what each change of a definition brings about, and what a read
// of an object without a value gets.
// How a definition is read and its properties are made is udp_definition.h.
#include "meta/udp_semantics.h"

#include "framework/semantic_table.h"
#include "framework/values.h"
#include "meta/udp_definition.h"

#include <kelm/property.h>

#include <algorithm>
#include <array>
#include <memory>

namespace kelm {

namespace {

using udp::definition;
using udp::meta_property_of_type;

/// Where a value of the definition goes when it is handed to the property it stands for.
struct passed_on {
    u32 property;
    u32 attribute;
};
constexpr std::array<passed_on, 4> passed_on_values{{
    {property_id::definition, attribute_id::definition},
    {property_id::udp_multiline_value, attribute_id::multiline},
    {property_id::udp_default_value_choices, attribute_id::default_value_choices},
    {property_id::udp_default_value, attribute_id::default_value},
}};

/// \returns the first element; null when there is none, and for what is no vector
const abstract_property* first_of(const abstract_property* list) {
    const auto* const all = exact_cast<vector_property>(list);
    return all && !all->elements.empty() ? all->elements.front() : nullptr;
}

/// After a property of a definition is set.
class udp_scratch_post_set_prop final : public post_prop_set_semantic {
public:
    u32 id() const override { return 2; }

    bool do_it(object* what, u32 id, given_value value, value_ptr old, object*, object*) override {
        definition it{*what};
        if (id == property_id::udp_default_value_choices && !follow_choices(*what, it, value)) return false;
        // Kept: also an empty list of types leaves a definition incomplete, so what it stood for stays.
        if (!it.is_complete()) return true;
        if (id == property_id::name) return follow_name(it, value, text_or_empty(old.get()));
        if (id == property_id::udp_object_types) return it.remove(it.find_left_out(old.get())) && it.make();
        return pass_on(it, id, value);
    }

private:
    /// The first choice becomes the default where there is none, and a value from a list has one line.
    // Kept: that is, the definition no longer asks for more; a property that it has made keeps its mark.
    static bool follow_choices(object& what, definition& it, given_value choices) {
        const abstract_property* const first = first_of(&choices);
        if (first && !it.has_default_value() && !it.set(property_id::udp_default_value, *first)) return false;
        return what.delete_property(property_id::udp_multiline_value);
    }

    /// A rename keeps the properties, with their ids and the values that objects have of them.
    static bool follow_name(definition& it, given_value name, const std::string& old_name) {
        const auto those = it.find(old_name);
        return those.empty() ? it.make() : it.set_attribute(those, attribute_id::name, name);
    }

    static bool pass_on(definition& it, u32 id, given_value value) {
        const auto row = std::ranges::find(passed_on_values, id, &passed_on::property);
        if (row == passed_on_values.end()) return true;
        const auto those = it.find();
        return those.empty() ? it.is_passed_over() : it.set_attribute(those, row->attribute, value);
    }
};

/// Before a property of a definition is deleted: without a name or types, nothing is left of what it made.
// Kept: what else is deleted does not reach what it made, which keeps the definition, default or choices it has.
class udp_scratch_pre_prop_delete final : public pre_prop_delete_semantic {
public:
    u32 id() const override { return 3; }

    bool do_it(object* what, u32 id, object*) override {
        if (id != property_id::name && id != property_id::udp_object_types) return true;
        definition it{*what};
        return it.remove(it.find());
    }
};

/// Before an element of a list of a definition is deleted.
class udp_scratch_pre_prop_delete_vecprop final : public pre_prop_delete_vecprop_semantic {
public:
    u32 id() const override { return 4; }

    bool do_it(object* what, u32 id, std::size_t position, object*) override {
        definition it{*what};
        if (!it.is_complete()) return true;
        if (id == property_id::udp_default_value_choices) return pass_on_without(it, position);
        if (id == property_id::udp_object_types) return it.remove_from(type_at(it, position));
        return true;
    }

private:
    /// The element is still there: what is passed on is the list as it will be.
    static bool pass_on_without(definition& it, std::size_t position) {
        const value_ptr choices = it.choices();
        auto* const list = exact_cast<vector_property>(choices.get());
        if (!list) return true;
        if (position < list->elements.size()) {
            const auto at = list->elements.begin() + static_cast<std::ptrdiff_t>(position);
            delete *at;
            list->elements.erase(at);
        }
        return it.set_attribute(it.find(), attribute_id::default_value_choices, *list);
    }

    static u32 type_at(const definition& it, std::size_t position) {
        const auto types = it.object_types();
        return position < types.size() ? types[position] : 0;
    }
};

/// After an element is inserted in a list of a definition.
class udp_scratch_post_prop_insert_vecprop final : public post_prop_insert_vecprop_semantic {
public:
    u32 id() const override { return 5; }

    bool do_it(object* what, u32 id, given_value element, std::size_t, object*) override {
        definition it{*what};
        const bool is_choice = id == property_id::udp_default_value_choices;
        if (is_choice && !it.has_default_value() &&
            !it.set(property_id::udp_default_value, property<std::string>(element.to_string())))
            return false;
        if (!it.is_complete()) return true;
        if (is_choice) return it.pass_on_choices();
        return id != property_id::udp_object_types || it.make_for(udp::id_in(&element));
    }
};

bool choices_changed(object& what, u32 id) {
    definition it{what};
    return id != property_id::udp_default_value_choices || !it.is_complete() || it.pass_on_choices();
}

/// After elements of a list of a definition change places.
class udp_scratch_post_prop_change_vecprop_elem_order final
    : public post_prop_change_vecprop_elem_order_semantic {
public:
    u32 id() const override { return 6; }
    bool do_it(object* what, u32 id, std::size_t, std::size_t, object*) override {
        return choices_changed(*what, id);
    }
};

/// After an element of a list of a definition is replaced.
class udp_scratch_post_prop_set_vecprop final : public post_prop_set_vecprop_semantic {
public:
    u32 id() const override { return 7; }
    bool do_it(object* what, u32 id, given_value, std::size_t, value_ptr, object*) override {
        return choices_changed(*what, id);
    }
};

/// After a property of any object is read: a user-defined one that has no value gets its default.
class udp_default_value final : public post_prop_get_semantic, public supplies_absent_values {
public:
    u32 id() const override { return 8; }

    bool do_it(object* what, u32 id, abstract_property*& value) override {
        if (value || id < property_id::first_user_defined) return true;
        const meta_object* const type = udp::type_of(*what);
        const meta_property* const read = type ? type->find_property(id) : nullptr;
        if (!read) return false;
        value = default_of(*read);
        return true;
    }

private:
    /// \returns a new value: the default, else the first choice, else an empty text; null when there are no
    ///          choices in the list of choices
    static owned<abstract_property*> default_of(const meta_property& of) {
        if (const value_ptr given = of.attribute_value(attribute_id::default_value)) return given->clone();
        if (const value_ptr choices = of.attribute_value(attribute_id::default_value_choices)) {
            const abstract_property* const first = first_of(choices.get());
            return first ? first->clone() : nullptr;
        }
        return new property<std::string>;
    }
};

template <class Hook>
void add(meta_object& type) {
    auto hook = std::make_unique<Hook>();
    if (type.add_semantic(hook.get())) static_cast<void>(hook.release());
}

} // namespace

owned<semantic*> make_udp_default_value() { return new udp_default_value; }

void add_udp_scratch_semantics(meta_object& type) {
    add<udp_scratch_post_set_prop>(type);
    add<udp_scratch_pre_prop_delete>(type);
    add<udp_scratch_post_prop_insert_vecprop>(type);
    add<udp_scratch_pre_prop_delete_vecprop>(type);
    add<udp_scratch_post_prop_set_vecprop>(type);
    add<udp_scratch_post_prop_change_vecprop_elem_order>(type);
}

} // namespace kelm
