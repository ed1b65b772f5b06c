// One function a kind of relation: owners, bases, references.
// What follows from another change, as the child that a new object becomes, is told by that one.
#include "log/touched.h"

#include <kelm/property.h>
#include <kelm/property_messages.h>
#include <kelm/structure_messages.h>

#include <algorithm>

namespace schema {

namespace {

const kelm::object* new_owner(const kelm::message& by) {
    const auto* made = kelm::message_cast<const kelm::obj_create_message>(&by);
    return made ? made->owner() : nullptr;
}

const kelm::object* new_target(const kelm::message& by) {
    const auto* set = kelm::message_cast<const kelm::property_set_message>(&by);
    const kelm::value_ptr value = set ? set->new_value() : nullptr;
    const auto* reference = dynamic_cast<const kelm::property<kelm::object*>*>(value.get());
    return reference ? reference->value : nullptr;
}

const kelm::object* base(const kelm::message& by) {
    if (const auto* added = kelm::message_cast<const kelm::inherits_add_message>(&by))
        return added->inherits_from();
    const auto* cancelled = kelm::message_cast<const kelm::inherits_cancel_message>(&by);
    return cancelled ? cancelled->inherits_from() : nullptr;
}

const kelm::object* moved_child(const kelm::message& by) {
    const auto* order = kelm::message_cast<const kelm::child_order_message>(&by);
    return order ? order->child() : nullptr;
}

} // namespace

std::vector<const kelm::object*> objects_touched(const kelm::message& by) {
    std::vector<const kelm::object*> all{by.object(), new_owner(by), new_target(by), base(by),
                                         moved_child(by)};
    std::erase(all, nullptr);
    return all;
}

} // namespace schema
