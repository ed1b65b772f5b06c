// Finding and adding types.
// The built-in ones are added by built_in_types.cpp.
#include "meta/meta_model_impl.h"

#include "meta/meta_object_impl.h"
#include "meta/meta_object_proxy.h"

#include <algorithm>
#include <utility>

namespace kelm {

meta_model_impl::meta_model_impl(u32 id, const std::string& name, const std::string& definition)
    : meta_thing(id) {
    describe(name, definition);
}

meta_model_impl::meta_model_impl(instance_of_application) : meta_model_impl(kelm::application_meta_model()) {}

meta_model_impl::meta_model_impl(meta_model_impl& application)
    : meta_model_impl(1, "Instance Meta Model", {}) {
    application_ = &application;
    version_ = application.version();
    minor_version_ = application.minor_version();
    add_base(&application);
    reserve(application.objects_.size());
    for (meta_object* type : application.objects_) own_or_proxy(type->id());
}

meta_model_impl::~meta_model_impl() { clear(); }

meta_object* meta_model_impl::find_meta_object(const std::string& name) const {
    meta_object* found = find_named(objects_, name);
    for (std::size_t at = 0; !found && at != bases_ref().size(); ++at)
        found = static_cast<const meta_model_impl*>(bases_ref()[at])->find_meta_object(name);
    return found;
}

meta_object_base* meta_model_impl::find_type(u32 id) const {
    meta_object_base* found = by_id_.find(id);
    for (std::size_t at = 0; !found && at != bases_ref().size(); ++at)
        found = static_cast<const meta_model_impl*>(bases_ref()[at])->find_type(id);
    return found;
}

meta_object* meta_model_impl::add_meta_object(u32 id, const std::string& name, const std::string& definition,
                                              const std::string& alternative_name) {
    if (by_id_.find(id)) return nullptr;
    auto made = std::make_unique<meta_object_impl>(id, this);
    made->describe(name, definition);
    if (!alternative_name.empty()) made->set_text(attribute_id::alternative_name, alternative_name);
    return add_existing_meta_object(std::move(made));
}

meta_object_base* meta_model_impl::add_existing_meta_object(std::unique_ptr<meta_object_base> made) {
    const u32 id = made->id();
    if (by_id_.find(id)) return nullptr;
    if (owned_.size() == owned_.capacity()) reserve(2 * owned_.size() + 4);
    meta_object_base* const type = made.get();
    by_id_.insert(id, type);
    const auto at = std::ranges::lower_bound(objects_, id, {}, &meta_object::id);
    owned_.insert(owned_.begin() + (at - objects_.begin()), std::move(made));
    objects_.insert(at, type);
    return type;
}

void meta_model_impl::reserve(std::size_t types) {
    owned_.reserve(types);
    objects_.reserve(types);
}

meta_object_base* meta_model_impl::own_or_proxy(u32 id) {
    if (meta_object_base* const own = by_id_.find(id)) return own;
    auto* const type = application_ ? dynamic_cast<meta_object_impl*>(application_->find_type(id)) : nullptr;
    return type ? add_existing_meta_object(std::make_unique<meta_object_proxy>(*type, *this)) : nullptr;
}

void meta_model_impl::clear() {
    by_id_.clear();
    objects_.clear();
    // A dying base tells all below it, which here is for nobody.
    for (const auto& type : owned_)
        if (auto* const thing = dynamic_cast<meta_base*>(type.get())) thing->release_bases();
    owned_.clear();
}

meta_model_impl& application_meta_model() {
    static meta_model_impl* const the_one = [] {
        auto made = std::make_unique<meta_model_impl>(0, "Application Meta Model", "");
        made->reserve(100);
        return made.release();
    }();
    return *the_one;
}

const semantic_table* application_semantics(u32 type) {
    const meta_object_base* const found = application_meta_model().find_type(type);
    return found ? found->merged_semantics() : nullptr;
}

} // namespace kelm
