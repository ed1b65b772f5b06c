// The second storey of a change: values, elements and children of one object, changed without a word.
// Edits of bases are inherit_edits.cpp.
#include "object/model_impl.h"
#include "object/reference_targets.h"

namespace kelm {

void object_impl::add_reference_from(object_impl& holder) {
    auto& list = made_links().referencing;
    if (!list) list = std::make_unique<back_links>();
    list->add(&holder);
}

void object_impl::drop_reference_from(object_impl& holder) {
    if (!links().referencing) return;
    auto& list = made_links().referencing;
    list->remove(&holder);
    if (list->empty()) list.reset();
}

void object_impl::keep_inner_targets(const abstract_property* element) {
    for_each_inner_target(element, [](object* target) { impl_of(target)->stays_ = true; });
}

// All of them, or none.
void object_impl::link_references(const abstract_property* value) {
    std::size_t linked = 0;
    try {
        for_each_target(value, [&](object* target) {
            impl_of(target)->add_reference_from(*this);
            ++linked;
        });
    } catch (...) {
        for_each_target(value, [&](object* target) {
            if (linked == 0) return;
            impl_of(target)->drop_reference_from(*this);
            --linked;
        });
        throw;
    }
    if (const auto* const list = exact_cast<vector_property>(value))
        std::ranges::for_each(list->elements, keep_inner_targets);
}

bool object_impl::has_inner_lists() const {
    const auto is_list = [](const abstract_property* element) {
        return exact_cast<vector_property>(element) != nullptr;
    };
    return std::any_of(values_.begin(), values_.end(), [&](const auto& each) {
        const auto* const list = exact_cast<vector_property>(each.value);
        return list && std::ranges::any_of(list->elements, is_list);
    });
}

void object_impl::unlink_references(const abstract_property* value) {
    for_each_target(value, [this](object* target) { impl_of(target)->drop_reference_from(*this); });
}

abstract_property* object_impl::own_value(u32 id) const { return values_.find(id); }

std::unique_ptr<abstract_property> object_impl::exchange_value(u32 id,
                                                               std::unique_ptr<abstract_property>& value) {
    if (!value) return take_value(id); // a history may have lost it
    values_.make_room(id);
    link_references(value.get());
    std::unique_ptr<abstract_property> former = values_.exchange(id, std::move(value));
    unlink_references(former.get());
    return former;
}

std::unique_ptr<abstract_property> object_impl::take_value(u32 id) {
    std::unique_ptr<abstract_property> former = values_.take(id);
    unlink_references(former.get());
    return former;
}

void object_impl::keep_lost_value(std::unique_ptr<abstract_property> value) {
    if (value && model_) model_->keep_lost(std::move(value));
}

vector_property* object_impl::own_vector(u32 id) const {
    return exact_cast<vector_property>(values_.find(id));
}

void object_impl::exchange_element(u32 id, std::size_t position,
                                   std::unique_ptr<abstract_property>& element) {
    vector_property* const list = own_vector(id);
    if (!list || position >= list->elements.size()) return;
    link_references(element.get());
    keep_inner_targets(element.get());
    std::unique_ptr<abstract_property> former{list->elements[position]};
    list->elements[position] = element.release();
    element = std::move(former);
    unlink_references(element.get());
}

void object_impl::insert_element(u32 id, std::size_t position, std::unique_ptr<abstract_property>& element) {
    vector_property* const list = own_vector(id);
    if (!list || position > list->elements.size()) return;
    auto& elements = list->elements;
    if (elements.size() == elements.capacity())
        elements.reserve(elements.size() + std::max<std::size_t>(elements.size(), 1));
    link_references(element.get()); // behind it nothing fails
    keep_inner_targets(element.get());
    elements.insert(elements.begin() + static_cast<std::ptrdiff_t>(position), element.release());
}

std::unique_ptr<abstract_property> object_impl::take_element(u32 id, std::size_t position,
                                                             const abstract_property* wanted) {
    vector_property* const list = own_vector(id);
    if (!list) return nullptr;
    auto& elements = list->elements;
    if (wanted && (position >= elements.size() || elements[position] != wanted))
        position =
            static_cast<std::size_t>(std::find(elements.begin(), elements.end(), wanted) - elements.begin());
    if (position >= elements.size()) return nullptr;
    std::unique_ptr<abstract_property> former{elements[position]};
    elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(position));
    unlink_references(former.get());
    return former;
}

void object_impl::move_element(u32 id, std::size_t from, std::size_t to) {
    vector_property* const list = own_vector(id);
    if (!list || from >= list->elements.size()) return;
    auto& elements = list->elements;
    abstract_property* const moved = elements[from];
    elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(from));
    if (to <= elements.size()) {
        elements.insert(elements.begin() + static_cast<std::ptrdiff_t>(to), moved);
        return;
    }
    // Kept: behind the end there is no place for it, and no message has it; the model frees it at its end.
    std::unique_ptr<abstract_property> lost{moved};
    unlink_references(moved);
    keep_lost_value(std::move(lost));
}

child_list& object_impl::made_children() {
    if (!children_) children_ = std::make_unique<child_list>();
    return *children_;
}

void object_impl::insert_child(object& child, std::size_t position) {
    object_impl& what = *impl_of(&child);
    if (what.is_listed_) return; // here, or with another owner
    if (what.owner_object_ != this && closes_circle(what)) return;
    made_children().insert(what, position);
    what.is_listed_ = true;
    what.set_owner_field(this);
}

void object_impl::take_child(object& child) {
    object_impl& what = *impl_of(&child);
    if (children_ && what.is_listed_ && children_->remove(what) != npos) what.is_listed_ = false;
}

void object_impl::move_child(object& child, std::size_t position) {
    if (children_) children_->move(*impl_of(&child), position);
}

// A deleted owner stays counted when an object leaves it: the history that can take that back names it too.
void object_impl::set_owner_field(object* owner) {
    if (owner == owner_object_ || (owner && impl_of(owner)->closes_circle(*this))) return;
    if (owner_object_ && !owner_object_->is_deleted()) --owner_object_->named_as_owner_;
    owner_object_ = static_cast<object_impl*>(owner);
    if (owner_object_) ++owner_object_->named_as_owner_;
}

} // namespace kelm
