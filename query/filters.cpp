// Filters by type.
// Listings of children take the runs of these types without asking.
#include <kelm/filters.h>
#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/object.h>

#include <algorithm>
#include <utility>

namespace kelm {

namespace {

meta_object* application_type(u32 type) {
    return framework::instance().application_meta_model()->find_meta_object(type);
}

} // namespace

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

} // namespace kelm
