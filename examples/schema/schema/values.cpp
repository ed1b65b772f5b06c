// Making objects, setting and reading their values, through the library's boxes.
// What the values mean is told in types.h.
#include "schema/values.h"

#include <kelm/filters.h>
#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/object_helpers.h>
#include <kelm/property.h>

namespace schema {

namespace {

void set(kelm::object& what, kelm::u32 property, const kelm::abstract_property& value) {
    if (!what.set_property(property, value)) throw model_refusal("the model refused a value");
}

template <class T>
void set_vector(kelm::object& what, kelm::u32 property, const std::vector<T>& values) {
    kelm::vector_property list;
    for (const T& value : values) list.elements.push_back(new kelm::property<T>(value)); // the list owns it
    set(what, property, list);
}

template <class T>
T value_or(const kelm::object& what, kelm::u32 property, T otherwise) {
    const kelm::value_ptr box = what.get_property(property);
    const auto* typed = dynamic_cast<const kelm::property<T>*>(box.get());
    return typed ? typed->value : otherwise;
}

} // namespace

kelm::object& add(kelm::object& owner, kelm::u32 type) {
    kelm::object* made = kelm::framework::instance().create_object(type, &owner);
    if (!made) throw model_refusal("the model refused an object");
    return *made;
}

kelm::object& add(kelm::object& owner, kelm::u32 type, const std::string& name) {
    kelm::object& made = add(owner, type);
    set_text(made, kelm::property_id::name, name);
    return made;
}

void set_text(kelm::object& what, kelm::u32 property, const std::string& text) {
    set(what, property, kelm::property<std::string>(text));
}

void set_number(kelm::object& what, kelm::u32 property, int number) {
    set(what, property, kelm::property<int>(number));
}

void set_flag(kelm::object& what, kelm::u32 property) { set(what, property, kelm::property<bool>(true)); }

void set_target(kelm::object& what, kelm::u32 property, kelm::object& target) {
    set(what, property, kelm::property<kelm::object*>(&target));
}

void set_list(kelm::object& what, kelm::u32 property, const std::vector<std::string>& texts) {
    set_vector(what, property, texts);
}

void set_list(kelm::object& what, kelm::u32 property, const std::vector<kelm::u32>& numbers) {
    set_vector(what, property, numbers);
}

void inherit_only(kelm::object& what, kelm::object& base) {
    if (what.inherits_from(&base, false)) return;
    if (!what.cancel_all_inherits_from() || !what.add_inherits_from(&base))
        throw model_refusal("the model refused a base");
}

void clear(kelm::object& what, kelm::u32 property) {
    if (!what.delete_property(property)) throw model_refusal("the model refused to take a value away");
}

void remove(kelm::object& what) {
    if (!kelm::framework::instance().delete_object(&what))
        throw model_refusal("the model refused to delete an object");
}

bool has(const kelm::object& what, kelm::u32 property) { return what.has_property(property); }

std::string text(const kelm::object& what, kelm::u32 property) {
    return value_or<std::string>(what, property, {});
}

int number(const kelm::object& what, kelm::u32 property) { return value_or(what, property, 0); }

bool flag(const kelm::object& what, kelm::u32 property) { return value_or(what, property, false); }

kelm::object* target(const kelm::object& what, kelm::u32 property) {
    return value_or<kelm::object*>(what, property, nullptr);
}

std::string name(const kelm::object& what) { return kelm::object_name(&what); }

std::vector<kelm::object*> parts(const kelm::object& owner, kelm::u32 type) {
    kelm::obj_filter_type only(type);
    return owner.children(&only);
}

} // namespace schema
