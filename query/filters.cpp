// The filters: combinations, by type, by name, all but one.
// Listings of children take the runs of the two filters by type without asking them.
#include "util/ascii.h"

#include <kelm/filters.h>
#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/object.h>
#include <kelm/object_helpers.h>

#include <algorithm>
#include <utility>

namespace kelm {

namespace {

meta_object* application_type(u32 type) {
    return framework::instance().application_meta_model()->find_meta_object(type);
}

} // namespace

// Kept: operands join in what they leave out, so the names read the other way round to who thinks of what passes.
bool or_filter::do_it(const object* candidate) const { return a_->do_it(candidate) || b_->do_it(candidate); }

bool and_filter::do_it(const object* candidate) const { return a_->do_it(candidate) && b_->do_it(candidate); }

bool not_filter::do_it(const object* candidate) const { return !a_->do_it(candidate); }

obj_filter_type::obj_filter_type(u32 type, bool derived)
    : type_(type), derived_(derived), meta_(derived ? application_type(type) : nullptr) {}

bool obj_filter_type::do_it(const object* candidate) const {
    return candidate->type() != type_ && !(derived_ && meta_ && meta_->is_base_of(candidate->type()));
}

obj_filter_types::obj_filter_types(std::vector<u32> types, bool derived)
    : types_(std::move(types)), derived_(derived) {
    if (!derived_) return;
    for (const u32 type : types_)
        if (meta_object* const meta = application_type(type)) metas_.push_back(meta);
}

bool obj_filter_types::do_it(const object* candidate) const {
    const u32 type = candidate->type();
    return std::ranges::find(types_, type) == types_.end() &&
           std::ranges::none_of(metas_, [&](const meta_object* meta) { return meta->is_base_of(type); });
}

obj_filter_name_and_type::obj_filter_name_and_type(u32 type, std::string name)
    : type_(type), name_(std::move(name)) {}

bool obj_filter_name_and_type::do_it(const object* candidate) const {
    return candidate->type() != type_ || fast_unsafe_object_name(candidate) != name_;
}

obj_filter_name_and_type_no_case::obj_filter_name_and_type_no_case(u32 type, std::string name)
    : type_(type), name_(std::move(name)) {}

bool obj_filter_name_and_type_no_case::do_it(const object* candidate) const {
    return candidate->type() != type_ || !equal_no_case(fast_unsafe_object_name(candidate), name_);
}

bool filter_type_and_obj::do_it(const object* candidate) const {
    return candidate->type() != type_ || candidate == but_;
}

} // namespace kelm
