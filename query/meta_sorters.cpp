// Orders of types, properties and compositions by name.
// Sorters of objects are sorters.cpp.
#include "util/ascii.h"

#include <kelm/meta_model.h>
#include <kelm/sorters.h>

#include <cstring>

namespace kelm {

namespace {

bool comes_before(const std::string& a, const std::string& b, bool case_sensitive) {
    return case_sensitive ? std::strcmp(a.c_str(), b.c_str()) < 0 : less_no_case(a, b);
}

template <class Thing>
std::string shown_name(const Thing& thing, bool use_alternative_name) {
    return use_alternative_name ? thing.alternative_name() : thing.name();
}

} // namespace

bool meta_object_name_sorter::operator()(const meta_object* a, const meta_object* b) const {
    return comes_before(a->name(), b->name(), case_sensitive_);
}

bool meta_property_name_sorter::operator()(const meta_property* a, const meta_property* b) const {
    return comes_before(a->name(), b->name(), case_sensitive_);
}

bool meta_composition_name_sorter::operator()(const meta_composition* a, const meta_composition* b) const {
    return comes_before(shown_name(*a, use_alternative_name_), shown_name(*b, use_alternative_name_),
                        case_sensitive_);
}

bool meta_obj_sort_name::operator()(const meta_object* a, const meta_object* b) const {
    return comes_before(name(a), name(b), case_sensitive_); // nodes of a map do not move
}

const std::string& meta_obj_sort_name::name(const meta_object* of) const {
    if (const auto found = cache_.find(of); found != cache_.end()) return found->second;
    return cache_.emplace(of, shown_name(*of, use_alternative_name_)).first->second;
}

} // namespace kelm
