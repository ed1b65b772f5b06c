// The sorters of objects: what each compares.
// How keys are kept is keyed_sorter.h.
#include "query/keyed_sorter.h"
#include "util/ascii.h"

#include <kelm/object.h>
#include <kelm/object_helpers.h>

#include <cstddef>

namespace kelm {

namespace {

struct kept_by_object {
    static const object* id(const object* of) { return of; }
};

struct by_bytes {
    static bool before(const std::string& a, const std::string& b) { return a < b; }
};

struct blind_to_case {
    static bool before(const std::string& a, const std::string& b) { return less_no_case(a, b); }
};

/// The names of so many owners, the farthest first, and the own one, each with a point in front but the first.
/// A missing owner has the empty name: its point stays.
template <std::size_t Owners>
struct by_owners_and_name : kept_by_object, blind_to_case {
    static std::string key(const object* of) {
        std::string made = object_name(of);
        for (std::size_t level = 0; level != Owners; ++level) {
            of = of ? of->owner() : nullptr;
            made.insert(0, object_name(of) + '.');
        }
        return made;
    }
};

std::size_t position_among_siblings(const object* of) {
    const object* const owner = of->owner();
    return owner ? owner->child_position(const_cast<object*>(of)) : npos; // only looked for
}

} // namespace

template <>
struct sort_rule<obj_sort_name> : kept_by_object, by_bytes {
    static std::string key(const object* of) { return object_name(of); }
};

template <>
struct sort_rule<obj_sort_name_no_case> : by_owners_and_name<0> {};

template <>
struct sort_rule<owner_obj_sort_name_no_case> : by_owners_and_name<1> {};

template <>
struct sort_rule<owner_owner_obj_sort_name_no_case> : by_owners_and_name<2> {};

template <>
struct sort_rule<owner_owner_owner_obj_sort_name_no_case> : by_owners_and_name<3> {};

template <>
struct sort_rule<obj_sort_full_path_name_no_case> : kept_by_object, blind_to_case {
    static std::string key(const object* of) { return object_full_path_name(of, nullptr, false); }
};

template <>
struct sort_rule<obj_sort_by_type_name> : by_bytes {
    static u32 id(const object* of) { return of->type(); }
    static std::string key(const object* of) { return object_type_as_string(of); }
};

template class keyed_sorter<obj_sort_name>;
template class keyed_sorter<obj_sort_name_no_case>;
template class keyed_sorter<owner_obj_sort_name_no_case>;
template class keyed_sorter<owner_owner_obj_sort_name_no_case>;
template class keyed_sorter<owner_owner_owner_obj_sort_name_no_case>;
template class keyed_sorter<obj_sort_full_path_name_no_case>;
template class keyed_sorter<obj_sort_by_type_name, u32>;

bool obj_sort_order::do_it(const object* a, const object* b) const {
    if (a->type() != b->type()) return a->type() < b->type();
    return position_among_siblings(a) < position_among_siblings(b);
}

} // namespace kelm
