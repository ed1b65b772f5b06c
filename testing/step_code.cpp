// Steps as the calls that they make, in C++.
// The source around them is printed_history.cpp.
#include "testing/step_calls.h"

namespace kelm::testing {

namespace {

const char* call_of(action what) {
    switch (what) {
    case action::begin: return "model.begin_transaction(\"\")";
    case action::end: return "model.end_transaction()";
    case action::rollback: return "model.rollback_transaction()";
    case action::rollback_all: return "model.rollback_transaction_all()";
    case action::rollback_last: return "model.rollback_last_transaction()";
    case action::undo: return "model.undo()";
    case action::redo: return "model.redo()";
    case action::clear_history: return "model.clear_history()";
    case action::set_owner: return "set_owner";
    case action::add_child: return "add_child";
    case action::remove_child: return "remove_child";
    case action::set_child_position: return "set_child_position";
    case action::set_property: return "set_property";
    case action::delete_property: return "delete_property";
    case action::refresh_property: return "refresh_property";
    case action::set_mark: return "set_property_not_inheritable";
    case action::append_element: return "append_vector_element";
    case action::insert_element: return "insert_vector_element";
    case action::set_element: return "set_vector_element";
    case action::move_element: return "move_vector_element";
    case action::delete_element: return "delete_vector_element";
    case action::add_base: return "add_inherits_from";
    case action::insert_base: return "insert_inherits_from";
    case action::cancel_base: return "cancel_inherits_from";
    case action::cancel_all_bases: return "cancel_all_inherits_from";
    case action::replace_base: return "replace_inherits_from_at";
    case action::move_base: return "set_inherits_from_position";
    case action::attach: return "attach";
    case action::detach: return "detach_object";
    case action::create_object: return "create_object";
    case action::delete_object: return "delete_object";
    case action::set_undo_levels: break;
    }
    return "set_undo_levels";
}

/// \returns a pointer to a value; null where there is none
std::string pointer_to(const planned_value& plan, const object_names& names) {
    if (plan.kind == data_type::none) return "nullptr";
    const std::string code = code_of(plan, names);
    return code.starts_with('*') ? code.substr(1) + ".get()" : "box(" + code + ").get()";
}

std::string arguments_of(const step& what, const edit_call& call, const object_names& names) {
    std::string id = std::to_string(what.id);
    const std::string at = std::to_string(what.position);
    switch (what.what) {
    case action::set_owner:
    case action::add_base:
    case action::cancel_base:
    case action::detach: return code_of(call.other);
    case action::attach: return "dynamic_cast<kelm::observer*>(" + code_of(call.other) + ")";
    case action::add_child:
    case action::remove_child: return code_of(call.at);
    case action::set_child_position: return code_of(call.at) + ", " + at;
    case action::insert_base:
    case action::replace_base:
    case action::move_base: return code_of(call.other) + ", " + at;
    case action::set_property:
    case action::append_element: return id + ", " + code_of(what.value, names);
    case action::insert_element:
    case action::set_element: return id + ", " + code_of(what.value, names) + ", " + at;
    case action::delete_property: return id;
    case action::delete_element: return id + ", " + at;
    case action::move_element: return id + ", " + at + ", " + std::to_string(what.to);
    case action::set_mark: return id + (what.position ? ", true" : ", false");
    case action::refresh_property:
        return id + ", " + pointer_to(what.value, names) + ", " + pointer_to(what.other_value, names);
    default: return {};
    }
}

} // namespace

std::string code_of(const step& what, const edit_call& call, const object_names& names) {
    if (what.what == action::create_object)
        return "fw.create_object(" + std::to_string(what.id) + ", " + code_of(call.at) + ")";
    if (what.what == action::delete_object) return "fw.delete_object(" + code_of(call.at) + ")";
    const bool at_owner = what.what >= action::add_child && what.what <= action::set_child_position;
    return code_of(call.at) + (at_owner ? "->owner()->" : "->") + call_of(what.what) + "(" +
           arguments_of(what, call, names) + ")";
}

std::string code_of(const step& what) {
    if (what.what != action::set_undo_levels) return call_of(what.what);
    const std::string levels = what.position == npos ? "-1" : std::to_string(what.position);
    return "model.set_undo_levels(" + levels + ")";
}

} // namespace kelm::testing
