// What happened to one object, one class a kind.
// How details are made and filled is summary.h; reading values back is original_value.cpp.
#pragma once

#include "framework/values.h"
#include "object/effective_value.h"
#include "object/object_impl.h"

#include <kelm/delta.h>

#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace kelm {

class delta_impl;
class detail_impl;

/// Details in order.  Taking one out costs nothing, and leaves a hole until compact().
class detail_list {
public:
    /// Where a detail stands; each keeps its own.
    struct place {
        detail_list* list = nullptr;
        std::size_t index = 0;
    };

    void append(detail_impl& which);
    /// Does nothing for a detail that is in no list.
    static void take_out(detail_impl& which);
    void compact();
    bool empty() const { return details_.empty(); }
    const std::vector<detail_impl*>& details() const { return details_; }
    std::vector<delta_detail*> handed_out() const;

private:
    std::vector<detail_impl*> details_; // null for a hole
};

/// What all details share: the object, and the place among its like.
class detail_impl : public delta_detail {
public:
    detail_impl(delta_impl& owner, object_impl& about) : owning_delta_(owner), object_(about) {}
    detail_impl(const detail_impl&) = delete;
    detail_impl& operator=(const detail_impl&) = delete;

    u32 object_type() const final { return object_.type(); }
    u32 object_id() const final { return object_.id(); }
    delta* owning_delta() const final;

    delta_impl& in() const { return owning_delta_; }
    object_impl& about() const { return object_; }
    detail_list::place& place() { return place_; }

private:
    delta_impl& owning_delta_;
    object_impl& object_;
    detail_list::place place_;
};

/// The state at the start of the stretch, as far as it has been found out.  Values are borrowed from the object and
/// from messages unless this made them.
class detail_base_original_properties_impl : public detail_impl, public detail_base_original_properties {
public:
    using detail_impl::detail_impl;

    bool has_original_property(u32 id) const override { return original_properties_.contains(id); }
    bool had_property(u32 id) const override;
    value_ptr original_property(u32 id, original_properties_semantics* translate) const override;
    std::string original_property_as_string(
        u32 id, original_properties_as_string_semantics* translate) const override;

    /// \returns the name that the object had, or words for none
    std::string original_name() const;

    // Going back, a change at a time.
    void set_original(u32 id, const abstract_property* value);
    /// Keeps a value that was made for this detail.
    void set_original(u32 id, std::unique_ptr<abstract_property> made);
    /// \returns the list at the start as far as known, a copy of this detail's own to go back in
    vector_property& original_vector(u32 id);
    std::vector<object*>& original_inherits() { return original_inherits_; }
    const std::vector<object*>& original_inherits() const { return original_inherits_; }
    void set_original_not_inheritable(std::vector<u32> ids) { original_not_inheritable_ = std::move(ids); }
    void mark_original_not_inheritable(u32 id, bool flag);

    /// \returns the value at the start, own or inherited; a temporary where a hook made it for this read
    effective_value original_value(u32 id) const;

private:
    const abstract_property* known_value(u32 id) const;
    bool could_inherit(u32 id) const;

    std::map<u32, const abstract_property*> original_properties_; // none is null
    std::vector<std::unique_ptr<abstract_property>> temporaries_;
    std::vector<object*> original_inherits_;
    std::map<u32, std::unique_ptr<vector_property>>
        owned_vectors_; // each stands in original_properties_ as well
    std::vector<u32> original_not_inheritable_;
};

class detail_create_impl final : public detail_impl, public detail_create {
public:
    detail_create_impl(delta_impl& owner, object_impl& about, object* owning_object)
        : detail_impl(owner, about), owner_(owning_object) {}

    int kind() const override { return created; }
    void name(std::string& out) const override;
    delta_detail* parent_detail() const override { return parent_; }
    std::vector<delta_detail*> child_details() const override { return children_.handed_out(); }

    object* owner() const { return owner_; }
    detail_list& children() { return children_; }
    void set_parent(detail_create_impl& parent) { parent_ = &parent; }

private:
    object* owner_;
    detail_create_impl* parent_ = nullptr;
    detail_list children_;
};

class detail_delete_impl final : public detail_base_original_properties_impl, public detail_delete {
public:
    detail_delete_impl(delta_impl& owner, object_impl& about, object* owning_object)
        : detail_base_original_properties_impl(owner, about), owner_(owning_object) {}

    int kind() const override { return deleted; }
    void name(std::string& out) const override { out = original_name(); }
    delta_detail* parent_detail() const override { return parent_; }
    object* owner() const override { return owner_; }
    std::vector<delta_detail*> child_details() const override { return children_.handed_out(); }
    u32 position() const override { return position_; }

    detail_list& children() { return children_; }
    void set_parent(detail_delete_impl* parent) { parent_ = parent; }
    void set_position(u32 position) { position_ = position; }

private:
    object* owner_;
    detail_delete_impl* parent_ = nullptr;
    detail_list children_;
    u32 position_ = npos32;
};

class detail_modified_impl final : public detail_base_original_properties_impl, public detail_modified {
public:
    using detail_base_original_properties_impl::detail_base_original_properties_impl;

    int kind() const override { return modified; }
    void name(std::string& out) const override;
    std::vector<child_order_change> child_order_changes() const override { return child_order_changes_; }
    std::vector<u32> changed_properties() const override { return changed_properties_; }
    std::vector<inherits_change> inherits_changes() const override;
    object* old_owner() const override { return old_owner_; }

    void set_old_owner(object* owner) { old_owner_ = owner; }
    /// Goes back over a move of `child`: one record a child stays, or none when it is back at its place.
    void fold_child_order(object& child, u32 old_pos, u32 new_pos);
    void compact_child_orders();
    void add_changed(u32 id) { changed_properties_.push_back(id); }
    /// \returns whether nothing is left that a reader would see
    bool is_void() const {
        return changed_properties_.empty() && child_order_changes_.empty() && !old_owner_;
    }

private:
    std::vector<child_order_change> child_order_changes_; // with null children for holes until compacted
    std::unordered_map<const object*, std::size_t> order_of_child_;
    std::vector<u32> changed_properties_;
    mutable std::optional<std::vector<inherits_change>> inherits_changes_;
    object* old_owner_ = nullptr;
};

} // namespace kelm
