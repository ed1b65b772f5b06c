// Questions to lists of objects, to owners and to lists of children.
// Only public interfaces are used; names of objects and their values have files of their own.
#include "util/ascii.h"

#include <kelm/filters.h>
#include <kelm/model.h>
#include <kelm/object.h>
#include <kelm/object_helpers.h>
#include <kelm/property.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <unordered_set>

namespace kelm {

namespace {

auto has_type(unsigned type) {
    return [type](const object* each) { return each && each->type() == type; };
}

/// Lists, and interfaces that only look for an object, take it without const.
object* without_const(const object* what) { return const_cast<object*>(what); }

/// Calls `ask` with the filter that leaves out what `Join` of the type and `more` leaves out.
template <class Join, class Ask>
auto ask_with(unsigned type, filter* more, Ask&& ask) {
    obj_filter_type of_type{type};
    Join both{&of_type, more};
    return ask(more ? static_cast<filter*>(&both) : &of_type);
}

} // namespace

// Lists

void append_objects_with_type(std::vector<object*>& out, const std::vector<object*>& in, unsigned type) {
    const std::size_t count = in.size(); // the two may be the same list
    for (std::size_t i = 0; i != count; ++i)
        if (object* const each = in[i]; has_type(type)(each)) out.push_back(each);
}

std::vector<object*> remove_object_type(const std::vector<object*>& in, unsigned type) {
    std::vector<object*> out;
    std::ranges::remove_copy_if(in, std::back_inserter(out), has_type(type));
    return out;
}

std::size_t contains_object_type(const std::vector<object*>& in, unsigned type) {
    return static_cast<std::size_t>(std::ranges::count_if(in, has_type(type)));
}

std::size_t object_position(const std::vector<object*>& in, const object* what) {
    const auto at = std::ranges::find(in, what);
    return at == in.end() ? npos : static_cast<std::size_t>(at - in.begin());
}

bool container_contains_object(const std::vector<object*>& in, const object* what) {
    return object_position(in, what) != npos;
}

object* container_contains_object_reference(const std::vector<object*>& in, unsigned property,
                                            const object* target) {
    const auto refers = [&](const object* each) {
        const value_ptr value = each ? each->get_property(property) : value_ptr{};
        const auto* const reference = dynamic_cast<const kelm::property<object*>*>(value.get());
        return reference && reference->value == target;
    };
    const auto at = std::ranges::find_if(in, refers);
    return at == in.end() ? nullptr : *at;
}

unsigned homogenous(const std::vector<object*>& in, unsigned also_allowed) {
    if (in.empty() || !in.front()) return 0;
    const unsigned type = in.front()->type();
    // Kept: the first alone says which type it is, so a list that begins with the other one is mixed.
    const auto fits = [&](const object* each) {
        return each && (each->type() == type || each->type() == also_allowed);
    };
    return std::ranges::all_of(in, fits) ? type : 0;
}

void objs_to_ids(const std::vector<object*>& in, std::vector<unsigned long>& out) {
    for (const object* each : in)
        if (each) out.push_back(each->id());
}

void ids_to_objs(const model* from, const std::vector<unsigned long>& ids, std::vector<object*>& out) {
    if (!from) return;
    for (const unsigned long id : ids) {
        if (id > std::numeric_limits<u32>::max()) continue; // no object has it
        if (object* const found = from->find_object(static_cast<u32>(id))) out.push_back(found);
    }
}

bool set_object_order(std::vector<object*>& list, const object* what, std::size_t position) {
    if (position < list.size() && list[position] == what) return true;
    const std::size_t old_position = object_position(list, what);
    const auto at = [&](std::size_t n) { return list.begin() + static_cast<std::ptrdiff_t>(n); };
    if (old_position != npos) list.erase(at(old_position));
    // Kept: the object is out by now, and stays out where the position is none.
    if (position > list.size()) return false;
    list.insert(at(position), without_const(what));
    return true;
}

// Owners and children

bool is_owned(const object* what, const object* owner) {
    if (!what || !owner) return false;
    do what = what->owner();
    while (what && what != owner);
    return what != nullptr;
}

object* child_by_name(const object* owner, const std::string& name, unsigned type, bool no_case) {
    if (!owner) return nullptr;
    std::vector<object*> children;
    if (type == 0)
        owner->children(children);
    else
        children_by_type(owner, children, type, nullptr);
    const auto has_name = [&](const object* each) {
        const std::string& own = fast_unsafe_object_name(each);
        return no_case ? equal_no_case(own, name) : own == name;
    };
    const auto at = std::ranges::find_if(children, has_name);
    return at == children.end() ? nullptr : *at;
}

std::size_t children_by_type(const object* owner, std::vector<object*>& out, unsigned type, filter* more) {
    out.clear();
    if (!owner) return 0;
    return ask_with<or_filter>(type, more, [&](filter* both) { return owner->children(out, both); });
}

// Kept: the two that count take what is of the type or passes `more`, where the listing takes what is both.
std::size_t num_children_of_type(const object* owner, unsigned type, filter* more) {
    if (!owner) return 0;
    return ask_with<and_filter>(type, more, [&](filter* both) { return owner->child_count(both); });
}

bool has_children_of_type(const object* owner, unsigned type, filter* more) {
    if (!owner) return false;
    return ask_with<and_filter>(type, more, [&](filter* both) { return owner->has_children(both); });
}

std::size_t children_that_inherit_from(const object* owner, const object* base, std::vector<object*>& out,
                                       unsigned type) {
    out.clear();
    if (!base) return 0;
    children_by_type(owner, out, type != 0 ? type : base->type(), nullptr);
    std::erase_if(out, [&](const object* each) { return !each->inherits_from(without_const(base), false); });
    return out.size();
}

object* inherit_from_same_object(const object* a, const object* b) {
    if (!a || !b) return nullptr;
    std::vector<object*> bases;
    std::vector<object*> of_b;
    a->inherits_from_list(bases);
    b->inherits_from_list(of_b);
    const std::unordered_set<const object*> wanted(of_b.begin(), of_b.end());
    const auto at = std::ranges::find_if(bases, [&](const object* each) { return wanted.contains(each); });
    return at == bases.end() ? nullptr : *at;
}

} // namespace kelm
