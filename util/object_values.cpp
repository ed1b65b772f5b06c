// Questions to the values of objects: who has them, whether they may be inherited, what their lists hold.
// Only public interfaces are used; names of objects and lists of objects have files of their own.
#include <kelm/meta_model.h>
#include <kelm/object.h>
#include <kelm/object_helpers.h>
#include <kelm/property.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace kelm {

namespace {

/// The effective value of a property as a list, for as long as this lives.
class list_value {
public:
    list_value(const object* of, unsigned id)
        : value_(of ? of->get_property(id) : value_ptr{}),
          list_(dynamic_cast<const vector_property*>(value_.get())) {}

    std::size_t size() const { return list_ ? list_->elements.size() : 0; }
    /// \returns null past the end, and for an element of another kind
    template <class T>
    const property<T>* at(std::size_t position) const {
        return position < size() ? dynamic_cast<const property<T>*>(list_->elements[position]) : nullptr;
    }
    /// \returns the index of the first element that `wanted` answers true for; npos when there is none
    template <class Wanted>
    std::size_t position_of(Wanted&& wanted) const {
        for (std::size_t i = 0; i != size(); ++i)
            if (wanted(list_->elements[i])) return i;
        return npos;
    }

private:
    value_ptr value_;
    const vector_property* list_;
};

} // namespace

bool defines_property(const object* what, unsigned id) {
    return what && (what->defines_property(id) || what->inherits_property(id, true));
}

bool allow_property(object* what, unsigned id, bool allow, bool reset) {
    if (!what) return false;
    if (!allow) {
        if (what->defines_property(id) && !what->delete_property(id)) return false;
        return what->set_property_not_inheritable(id, true);
    }
    if (!reset || !what->is_property_not_inheritable(id)) return true;
    return what->set_property_not_inheritable(id, false);
}

bool property_can_be_inherited(unsigned type, unsigned id, const meta_model& in) {
    const meta_object* const declared_in = in.find_meta_object(type);
    const meta_property* const found = declared_in ? declared_in->find_property(id) : nullptr;
    if (!found) return false;
    const value_ptr mark = found->attribute_value(attribute_id::not_inheritable);
    // An application may store another kind of value under the attribute: that marks nothing.
    const auto* const truth = dynamic_cast<const property<bool>*>(mark.get());
    return !truth || !truth->value;
}

std::size_t vector_prop_size(const object* what, unsigned id) { return list_value(what, id).size(); }

object* object_at_vector_prop_pos(const object* what, unsigned id, std::size_t position) {
    const list_value list{what, id};
    const property<object*>* const element = list.at<object*>(position);
    return element ? element->value : nullptr;
}

std::string string_at_vector_prop_pos(const object* what, unsigned id, std::size_t position) {
    const list_value list{what, id};
    const property<std::string>* const element = list.at<std::string>(position);
    return element ? element->value : std::string{};
}

std::size_t vector_prop_object_position(const object* what, const object* target, unsigned id) {
    return list_value(what, id).position_of([&](const abstract_property* element) {
        const auto* const reference = dynamic_cast<const property<object*>*>(element);
        return reference && reference->value == target;
    });
}

std::size_t vector_prop_position(const object* what, const abstract_property* value, unsigned id) {
    if (!value) return npos;
    return list_value(what, id).position_of(
        [&](const abstract_property* element) { return value->equals(element); });
}

} // namespace kelm
