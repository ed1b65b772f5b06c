// A model's user-defined properties: the only road by which the types of a model change.
// Which change of a definition object asks for them is the business of the hooks in meta/.
#include "framework/values.h"
#include "message/udp_messages.h"
#include "meta/meta_object_base.h"
#include "meta/udp_definition.h"
#include "object/model_impl.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace kelm {

namespace {

/// The ids of the objects of exactly `type` in the tree, owners first.  No recursion: trees may be deep.  No
/// hooks of reading either: a child that they hide loses its value as well.
std::vector<u32> ids_of_type(object_impl& root, u32 type) {
    std::vector<u32> ids;
    std::vector<object_impl*> to_visit{&root};
    while (!to_visit.empty()) {
        const object_impl* const at = to_visit.back();
        to_visit.pop_back();
        if (at->type() == type) ids.push_back(at->id());
        const auto reversed_from = static_cast<std::ptrdiff_t>(to_visit.size());
        if (const child_list* const children = at->child_objects())
            children->for_each([&](object_impl& child) { to_visit.push_back(&child); });
        std::reverse(to_visit.begin() + reversed_from, to_visit.end());
    }
    return ids;
}

} // namespace

meta_property* model_impl::add_user_defined_property(u32 type, const std::string& name, u32 property_class,
                                                     const std::string& definition, u32 id) {
    history_.take_back_interrupted();
    meta_object* const owner = instance_meta_model_.own_or_proxy(type);
    if (!owner || owner->find_property(name)) return nullptr;
    const u32 wanted = id != 0 ? id : last_udp_id_.next();
    auto message = std::make_unique<udp_add_message_impl>(this, owner, wanted, name, property_class);
    history_.make_room();
    meta_property* const made = owner->add_property(wanted, name, property_class, definition);
    if (!made) return nullptr; // the id is taken: a message of it would take the other property away on undo
    history_.add_message(std::move(message));
    return made;
}

bool model_impl::set_user_defined_property_attribute(meta_object* type, meta_property* which, u32 attribute,
                                                     const abstract_property& value) {
    if (!type || !which) return false;
    if (const u32 id = which->id(); history_.take_back_interrupted()) { // the property may have gone by that
        meta_object* const shown = instance_meta_model_.own_or_proxy(type->id());
        which = shown ? shown->find_property(id) : nullptr;
    }
    if (!which || !udp::is_own(*which, instance_meta_model_)) return false;
    auto after = udp::attribute_copy(value);
    // The application's type does not have the property: what is recorded is this model's view of it.
    if (meta_object* const shown = instance_meta_model_.own_or_proxy(type->id())) type = shown;
    auto before = clone(which->attribute_value(attribute).get());
    const abstract_property& set = *after;
    auto message = std::make_unique<udp_set_attribute_value_message_impl>(
        this, type, which->id(), attribute, std::move(after), std::move(before));
    history_.make_room();
    which->set_attribute_value(attribute, set);
    history_.add_message(std::move(message));
    return true;
}

bool model_impl::remove_user_defined_property(u32 type, u32 id) {
    history_.take_back_interrupted();
    meta_object_base* const owner = instance_meta_model_.own_or_proxy(type);
    const meta_property* const there = owner ? owner->find_property(id) : nullptr;
    if (!there || !udp::is_own(*there, instance_meta_model_)) return false; // before a value is lost
    // Ids first: hooks of the objects may change the tree meanwhile.
    for (const u32 each : ids_of_type(*this, type))
        if (object* const holder = find_object(each); holder && !holder->delete_property(id)) return false;

    const meta_property* const leaving = owner->find_property(id);
    if (!leaving) return false;
    auto message = std::make_unique<udp_remove_message_impl>(
        this, owner, id, leaving->name(), leaving->property_class(),
        clone(leaving->attribute_value(attribute_id::default_value).get()));
    history_.make_room();
    if (!owner->remove_property(id)) return false;
    history_.add_message(std::move(message));
    return true;
}

} // namespace kelm
