// Birth and end of a model, its ids, and what a reader tells it.
// Transactions are model_transactions.cpp and model_log.cpp.
#include "object/model_impl.h"

#include "util/scoped_mark.h"

#include <algorithm>

namespace kelm {

namespace {

constexpr u32 last_id_of_new_model = 2; // the model itself has 1, and the first object gets 3
constexpr u32 no_more_udp_ids = 65535;

} // namespace

model_impl::model_impl(bool assign_id)
    : object_impl(type_id::model, nullptr, false, assign_id),
      model_guid_(make_guid()),
      last_object_id_(last_id_of_new_model, npos32,
                      "Maximum Number of Model Objects Allowed Has Been Reached...."),
      last_udp_id_(property_id::first_user_defined, no_more_udp_ids,
                   "Maximum Number of User Defined Properties Allowed Has Been Reached...."),
      last_transaction_id_(0, npos32, "Maximum Number of Transaction Allowed Has Been Reached...."),
      instance_meta_model_(instance_of_application{}),
      history_(*this) {
    set_model(this);
    process().live_models.push_back(this);
}

model_impl::~model_impl() {
    std::erase(process().live_models, static_cast<kelm::model*>(this));
    unlink(true);
}

bool model_impl::is_alive(const kelm::model* which) {
    return std::ranges::find(process().live_models, which) != process().live_models.end();
}

std::size_t model_impl::object_ids(std::vector<u32>& out) const {
    out.reserve(out.size() + objects_by_id_.size());
    objects_by_id_.for_each([&](u32 id, object_impl*) { out.push_back(id); });
    return objects_by_id_.size();
}

bool model_impl::post_load() {
    if (in_post_load_) return true;
    std::vector<object*> to_visit{as_object()};
    while (!to_visit.empty()) {
        object_impl& at = *impl_of(to_visit.back());
        to_visit.pop_back();
        objects_by_id_.enter(at.id(), &at);
        std::vector<object*> below;
        at.children(below);
        to_visit.insert(to_visit.end(), below.rbegin(), below.rend());
    }
    const scoped_mark mark{in_post_load_};
    if (!as_object()->post_read()) return false;
    std::vector<u32> ids;
    object_ids(ids);
    for (const u32 id : ids) {
        object_impl* const each = objects_by_id_.find(id);
        if (each && !each->is_deleted()) each->post_read();
    }
    return true;
}

bool model_impl::remember_object_ids(object* what) {
    if (!what) return false;
    std::map<u32, u32>& ids = remembered_ids_[what->id()];
    objects_by_id_.for_each([&](u32 id, object_impl*) { ids.emplace(id, id); });
    return true;
}

} // namespace kelm
