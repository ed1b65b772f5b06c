// The implementation of the copier: a snapshot, the rules, and who may work on them at a time.
// Copying is collector, pasting is paste_run, the stored form is snapshot_io.
#pragma once

#include "copier/child_positions.h"
#include "copier/copier_rules.h"
#include "copier/snapshot.h"

#include <boost/enable_shared_from_this.hpp>

namespace kelm {

class paste_run;

/// Rules and hooks may call back while a copy or a paste is running: then copy_object() in a paste, and read() and
/// paste() in both, change nothing and answer false.
class copier_impl final : public copier, public boost::enable_shared_from_this<copier_impl> {
public:
    explicit copier_impl(const model& source);
    ~copier_impl() override;
    copier_impl(const copier_impl&) = delete;
    copier_impl& operator=(const copier_impl&) = delete;

    bool copy_object(object* what, bool selected) override;
    void add_user_id(u32 id) override { snapshot_.user_ids.push_back(id); }
    bool paste(model* destination, const std::vector<object*>& owners, std::vector<object*>* pasted) override;

    void set_type_order(const std::vector<u32>& types) override { snapshot_.type_order = types; }
    void set_copy_rule(u32 type, const copy_rule& rule) override { rules_.copy.set(type, rule); }
    void set_paste_rule(u32 type, const paste_rule& rule) override { rules_.paste.set(type, rule); }
    void set_object_order_rule(u32 owner_type, u32 child_type, const object_order_rule& rule) override {
        rules_.order.set({owner_type, child_type}, rule);
    }
    void add_extra_property(u32 type, u32 property_id) override {
        rules_.extra_properties.emplace(type, property_id);
    }
    void set_property_paste_rule(u32 type, const property_paste_rule& rule) override {
        rules_.property_paste.set(type, rule);
    }
    void set_end_transaction_rule(const end_transaction_rule& rule) override {
        rules_.end.reset(rule.clone());
    }
    bool can_paste_into(const object* owner) const override;

    GUID source_model_id() const override { return snapshot_.source_model_id; }
    u32 user_value() const override { return snapshot_.user_value; }
    void set_user_value(u32 value) override { snapshot_.user_value = value; }
    GUID destination_model_id() const override;
    void selected_objects(std::vector<std::pair<u32, u32>>& out) const override;
    bool has_selected_object(u32 id) const override;
    std::vector<u32> user_ids() const override { return snapshot_.user_ids; }

    bool read(std::istream& in) override;
    bool write(std::ostream& out) const override { return write_snapshot(out, snapshot_); }

    /// Appends, while a paste runs, the objects that stand for the selected top nodes by now.
    void pasted_objects(std::vector<object*>& out) const;

private:
    bool is_busy() const { return running_paste_ || is_copying_; }

    snapshot snapshot_;
    copier_rules rules_;
    child_positions positions_;
    const paste_run* running_paste_ = nullptr;
    bool is_copying_ = false;
};

} // namespace kelm
