// The summary itself: its details by kind and by object.
// Folding messages into it is summary.h.
#pragma once

#include "delta/details.h"

#include <map>
#include <memory>

namespace kelm {

class model_impl;

/// Owns its details, also those that no list shows.
class delta_impl final : public delta {
public:
    explicit delta_impl(model_impl& of) : model_(of) {}

    std::vector<delta_detail*> deleted_details() const override { return deleted.handed_out(); }
    std::vector<delta_detail*> created_details() const override { return created.handed_out(); }
    std::vector<delta_detail*> modified_details() const override { return modified.handed_out(); }

    model_impl& model() const { return model_; }
    /// \param of  an object of this model
    /// \returns the detail of what was deleted, else of what was modified; null when there is none
    detail_base_original_properties_impl* state_before(const object& of) const;
    /// \returns the name that an object had at the start; "NULL" for null
    std::string original_object_name(const object* of) const;

    template <class Detail>
    using details_by_id = std::map<u32, std::unique_ptr<Detail>>;
    template <class Detail>
    static Detail* find(const details_by_id<Detail>& among, const object& of) {
        const auto at = among.find(of.id());
        return at == among.end() ? nullptr : at->second.get();
    }

    // What whoever makes the summary fills: the top-level details, and all of them by object id.
    detail_list deleted;
    detail_list created;
    detail_list modified;
    details_by_id<detail_delete_impl> deleted_by_id;
    details_by_id<detail_create_impl> created_by_id;
    details_by_id<detail_modified_impl> modified_by_id; // also those dropped from `modified`

private:
    model_impl& model_;
};

} // namespace kelm
