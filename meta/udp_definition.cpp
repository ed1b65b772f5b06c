// Reading a definition object, and finding, making and removing the properties it stands for.
// Undoing that is the business of the messages that the model records.
#include "meta/udp_definition.h"

#include "meta/meta_object_base.h"
#include "meta/meta_property_impl.h"
#include "meta/whole_number.h"

#include <kelm/model.h>
#include <kelm/property.h>

#include <algorithm>
#include <utility>

namespace kelm::udp {

namespace {

std::vector<u32> ids_in(const abstract_property* list) {
    std::vector<u32> ids;
    if (const auto* const all = exact_cast<vector_property>(list)) {
        ids.reserve(all->elements.size());
        std::ranges::transform(all->elements, std::back_inserter(ids), id_in);
    }
    return ids;
}

bool is_reference(const abstract_property* value) { return exact_cast<property<object*>>(value) != nullptr; }

void replace_references(vector_property& list) {
    for (abstract_property*& each : list.elements) {
        if (is_reference(each))
            delete std::exchange(each, attribute_copy(*each).release());
        else if (auto* const inner = exact_cast<vector_property>(each))
            replace_references(*inner);
    }
}

} // namespace

u32 id_in(const abstract_property* value) { return whole_number(value).value_or(0); }

bool is_object_type_of_udp(const object* what, u32 type) {
    if (!what) return false;
    const value_ptr list = what->get_property(property_id::udp_object_types);
    const auto* const all = exact_cast<vector_property>(list.get());
    // An element that is no number names no type, not even type 0.
    const auto names_it = [&](const abstract_property* element) { return whole_number(element) == type; };
    return all && std::ranges::any_of(all->elements, names_it);
}

u32 udp_property_id(const object* what) {
    return what ? id_in(what->get_property(property_id::udp_id).get()) : 0;
}

meta_object* type_of(const object& what) {
    kelm::model* const in = what.model();
    return in ? in->meta_model()->find_meta_object(what.type()) : nullptr;
}

bool is_own(const meta_property& which, const meta_model& types) {
    const auto* const declared = dynamic_cast<const meta_property_impl*>(&which);
    const auto* const by = declared ? dynamic_cast<const meta_object_base*>(declared->owner()) : nullptr;
    return by && by->owner_meta_model() == &types;
}

meta_object* definition::type(u32 id) const {
    kelm::model* const in = self_.model();
    return in ? in->meta_model()->find_meta_object(id) : nullptr;
}

bool definition::is_complete() const {
    return self_.has_property(property_id::name) && !object_types().empty();
}

std::string definition::name() const { return text_or_empty(self_.get_property(property_id::name).get()); }

bool definition::has_default_value() const { return self_.has_property(property_id::udp_default_value); }

std::vector<u32> definition::object_types() const {
    return ids_in(self_.get_property(property_id::udp_object_types).get());
}

value_ptr definition::choices() const { return self_.get_property(property_id::udp_default_value_choices); }

meta_property_of_type definition::named(const std::string& name, u32 type) const {
    meta_object* const at = this->type(type);
    return {at, at ? at->find_property(name) : nullptr};
}

std::vector<meta_property_of_type> definition::find(const std::string& name) const {
    if (!is_complete()) return {};
    return find(name.empty() ? this->name() : name, object_types());
}

// Kept: a name is all that ties a definition to its properties, so one that another definition made is found as
// well when it has the name.  Making passed such types over; what follows of the definition changes it, though.
std::vector<meta_property_of_type> definition::find(const std::string& name,
                                                    const std::vector<u32>& types) const {
    std::vector<meta_property_of_type> found;
    for (const u32 each : types)
        if (const auto it = named(name, each);
            it.property && is_own(*it.property, *self_.model()->meta_model()))
            found.push_back(it);
    return found;
}

std::vector<meta_property_of_type> definition::find_left_out(const abstract_property* before) const {
    const std::vector<u32> now = object_types();
    std::vector<u32> left_out;
    for (const u32 each : ids_in(before))
        if (std::ranges::find(now, each) == now.end() && std::ranges::find(left_out, each) == left_out.end())
            left_out.push_back(each);
    return find(name(), left_out);
}

bool definition::is_passed_over() const {
    if (!is_complete()) return false;
    return std::ranges::all_of(object_types(), [name = name(), this](u32 each) {
        const auto it = named(name, each);
        return it.property && !is_own(*it.property, *self_.model()->meta_model());
    });
}

std::unique_ptr<abstract_property> attribute_copy(const abstract_property& value) {
    if (is_reference(&value)) return std::make_unique<property<std::string>>(value.to_string());
    auto copy = clone(&value);
    if (auto* const list = exact_cast<vector_property>(copy.get())) replace_references(*list);
    return copy;
}

struct definition::plan {
    std::string name;
    std::string definition;
    std::string default_value;
    value_ptr choices;
    bool multiline;
    u32 id; ///< 0 until the first property is made
};

definition::plan definition::read_plan() const {
    const value_ptr multiline = self_.get_property(property_id::udp_multiline_value);
    const auto* const flag = exact_cast<property<bool>>(multiline.get());
    return {.name = name(),
            .definition = text_or_empty(self_.get_property(property_id::definition).get()),
            .default_value = text_or_empty(self_.get_property(property_id::udp_default_value).get()),
            .choices = choices(),
            .multiline = flag && flag->value,
            .id = udp_property_id(&self_)};
}

bool definition::make() {
    plan wanted = read_plan();
    return std::ranges::all_of(object_types(), [&](u32 type) { return make_for(type, wanted); });
}

bool definition::make_for(u32 type) {
    plan wanted = read_plan();
    return make_for(type, wanted);
}

// A type that is unknown, or has a property of that name, is passed over: that is no failure.
bool definition::make_for(u32 type, plan& wanted) {
    const meta_object* const there = this->type(type);
    if (!there || there->find_property(wanted.name)) return true;
    meta_property* const made = self_.model()->add_user_defined_property(type, wanted.name, data_type::string,
                                                                         wanted.definition, wanted.id);
    if (!made) return true;
    // Asked for again: the model may have made a type of its own for it only now.
    const std::vector<meta_property_of_type> it{{this->type(type), made}};
    if (wanted.choices && !set_attribute(it, attribute_id::default_value_choices, *wanted.choices))
        return false;
    if (!wanted.default_value.empty() &&
        !set_attribute(it, attribute_id::default_value, property<std::string>(wanted.default_value)))
        return false;
    if (wanted.multiline && !set_attribute(it, attribute_id::multiline, property<bool>(true))) return false;
    if (wanted.id != 0) return true;
    wanted.id = made->id();
    return set(property_id::udp_id, property<int>(static_cast<int>(wanted.id)));
}

bool definition::set(u32 property, const abstract_property& value) {
    return self_.set_property(property, value);
}

bool definition::set_attribute(const std::vector<meta_property_of_type>& those, u32 attribute,
                               const abstract_property& value) {
    kelm::model* const in = self_.model();
    return std::ranges::all_of(those, [&](const meta_property_of_type& it) {
        return in->set_user_defined_property_attribute(it.type, it.property, attribute, value);
    });
}

bool definition::remove(const std::vector<meta_property_of_type>& those) {
    // Ids, not pointers: removing runs hooks of objects, and a type that is listed twice is met again without
    // its property.
    std::vector<std::pair<u32, u32>> ids;
    ids.reserve(those.size());
    for (const auto& it : those) ids.emplace_back(it.type->id(), it.property->id());
    kelm::model* const in = self_.model();
    return std::ranges::all_of(
        ids, [&](const auto& id) { return in->remove_user_defined_property(id.first, id.second); });
}

// Kept: refused also where the type was passed over, which was no error then.  A new list can leave it out.
bool definition::remove_from(u32 type) {
    const meta_property* const it = named(name(), type).property;
    return it && self_.model()->remove_user_defined_property(type, it->id());
}

bool definition::pass_on_choices() {
    const value_ptr now = choices();
    return !now || set_attribute(find(), attribute_id::default_value_choices, *now);
}

} // namespace kelm::udp
