// Preparing and making the calls.
// How they are printed is step_code.cpp.
#include "testing/step_calls.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/subject.h>

#include <algorithm>

namespace kelm::testing {

namespace {

bool has_mark(const object& what, u32 id, u32 attribute) {
    const meta_property* const declared =
        what.model()->meta_model()->find_meta_object(what.type())->find_property(id);
    const value_ptr value = declared ? declared->attribute_value(attribute) : value_ptr{};
    return value && property<bool>{true}.equals(value.get());
}

/// What streams do not tell is not made, and what summaries leave out is not changed.
bool suits_mix(const object& what, u32 id, const history_mix& mix) {
    if (mix.stored && (!has_declared(what, id) || has_mark(what, id, attribute_id::non_persistent)))
        return false;
    if (!mix.summed) return true;
    for (const u32 skipping : {attribute_id::skip_in_summary, attribute_id::skip_in_summary_unless_local,
                               attribute_id::non_persistent})
        if (has_mark(what, id, skipping)) return false;
    return true;
}

bool fits_value(const step& what, const history_mix& mix, const edit_call& call) {
    if (!suits_mix(*call.at, what.id, mix)) return false;
    switch (what.what) {
    case action::delete_property:
    case action::set_mark:
    case action::delete_element: return true;
    case action::refresh_property: return !mix.heard;
    case action::move_element: {
        const value_ptr own = call.at->get_own_property(what.id);
        const auto* const list = dynamic_cast<const vector_property*>(own.get());
        return what.to < std::max<std::size_t>(list ? list->elements.size() : 0, 1);
    }
    default: return call.value != nullptr;
    }
}

/// Whether all of what a step about the tree needs is there.
bool fits_tree(const step& what, const history_mix& mix, const edit_call& call) {
    const object* const owner = call.at->owner();
    if (!owner) return false;
    switch (what.what) {
    case action::delete_object: return !mix.heard || owner->state() != state::deleted;
    case action::add_child: return true;
    case action::remove_child: return !mix.stored;
    case action::set_owner: return call.other && owner->child_position(call.at) != npos;
    default:
        return owner->child_position(call.at) != npos && what.position < owner->child_count(call.at->type());
    }
}

bool fits_bases(const step& what, const history_mix& mix, const edit_call& call) {
    if (!mix.bases) return false;
    if (what.what == action::cancel_all_bases) return true;
    if (!call.other) return false;
    if (what.what != action::add_base) return true;
    // To be told twice is more than listeners, streams and deltas can tell from once.
    return !(mix.heard || mix.stored || mix.summed) || !call.at->inherits_from(call.other, false);
}

bool fits(const step& what, const history_mix& mix, const edit_call& call) {
    if (what.what == action::create_object) return true;
    const bool is_value = what.what >= action::set_property && what.what <= action::delete_element;
    if (is_value) return fits_value(what, mix, call);
    if (what.object == object_name{}) return false; // the root is no child, and inherits from nobody
    if (what.what >= action::attach) {
        if (!mix.observing || !call.other || call.other == call.at) return false;
        return mix.in_circles || call.other->id() > call.at->id();
    }
    return what.what >= action::add_base ? fits_bases(what, mix, call) : fits_tree(what, mix, call);
}

void perform_on_value(const step& what, const edit_call& call) {
    object& at = *call.at;
    switch (what.what) {
    case action::set_property: at.set_property(what.id, *call.value); return;
    case action::delete_property: at.delete_property(what.id); return;
    case action::refresh_property:
        at.refresh_property(what.id, call.value.get(), call.other_value.get());
        return;
    case action::set_mark: at.set_property_not_inheritable(what.id, what.position != 0); return;
    case action::append_element: at.append_vector_element(what.id, *call.value); return;
    case action::insert_element: at.insert_vector_element(what.id, *call.value, what.position); return;
    case action::set_element: at.set_vector_element(what.id, *call.value, what.position); return;
    case action::move_element: at.move_vector_element(what.id, what.position, what.to); return;
    default: at.delete_vector_element(what.id, what.position); return;
    }
}

void perform_on_base(const step& what, const edit_call& call) {
    object& at = *call.at;
    switch (what.what) {
    case action::add_base: at.add_inherits_from(call.other); return;
    case action::insert_base: at.insert_inherits_from(call.other, what.position); return;
    case action::cancel_base: at.cancel_inherits_from(call.other); return;
    case action::cancel_all_bases: at.cancel_all_inherits_from(); return;
    case action::replace_base: at.replace_inherits_from_at(call.other, what.position); return;
    default: at.set_inherits_from_position(call.other, what.position); return;
    }
}

void perform_on_tree(const step& what, const edit_call& call) {
    object& at = *call.at;
    switch (what.what) {
    case action::delete_object: framework::instance().delete_object(&at); return;
    case action::set_owner: at.set_owner(call.other); return;
    case action::add_child: at.owner()->add_child(&at); return;
    case action::remove_child: at.owner()->remove_child(&at); return;
    case action::set_child_position: at.owner()->set_child_position(&at, what.position); return;
    case action::attach: at.attach(dynamic_cast<observer*>(call.other)); return;
    default: at.detach_object(call.other); return;
    }
}

} // namespace

bool has_declared(const object& what, u32 id) {
    const meta_object* const type = what.model()->meta_model()->find_meta_object(what.type());
    return type && type->find_property(id);
}

std::optional<edit_call> prepare(const step& what, const history_mix& mix, const object_names& names) {
    edit_call call;
    call.at = names.find(what.object);
    if (!call.at) return std::nullopt;
    if (what.other != object_name{})
        call.other = names.find(what.other);
    else if (what.what == action::set_owner)
        call.other = names.find({});
    call.value = make_value(what.value, names);
    call.other_value = make_value(what.other_value, names);
    const bool lacks_value = (what.value.kind != data_type::none && !call.value) ||
                             (what.other_value.kind != data_type::none && !call.other_value);
    if (lacks_value || !fits(what, mix, call)) return std::nullopt;
    return call;
}

object* perform(const step& what, const edit_call& call) {
    if (what.what == action::create_object) return framework::instance().create_object(what.id, call.at);
    if (what.what >= action::set_property && what.what <= action::delete_element)
        perform_on_value(what, call);
    else if (what.what >= action::add_base && what.what <= action::move_base)
        perform_on_base(what, call);
    else
        perform_on_tree(what, call);
    return nullptr;
}

} // namespace kelm::testing
