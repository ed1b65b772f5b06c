// One paste: a snapshot becomes objects of a model.
// The snapshot and the rules stay as they are, and nothing of this outlives the paste.
#pragma once

#include "copier/copier_rules.h"
#include "copier/models_in_use.h"
#include "copier/own_level.h"
#include "copier/pending_list.h"
#include "copier/snapshot.h"
#include "message/silent_edit.h"

#include <kelm/object.h>

#include <tuple>
#include <unordered_map>

namespace kelm {

/// First all nodes are made into objects, in the order of the tree.  What then cannot be done yet waits in three lists
/// that are tried again until nothing moves any more, twice: the second time, rules hear that nothing more will come.
/// Then what lacks a mandatory value goes, extra values are set, and children are put in order.
class paste_run {
public:
    /// \param from    its top nodes are put in the order of its types
    /// \param owners  null entries are passed over
    paste_run(snapshot& from, const copier_rules& rules, model& into, std::vector<object*> owners);

    /// \returns whether the paste stands; else it has been rolled back
    /// \throws  what rules and hooks throw, and std::runtime_error when ids are used up; then as well
    bool run();
    /// Appends the objects that stand for the selected top nodes, also of a paste that has failed.
    void pasted_objects(std::vector<object*>& out) const;
    const model& destination() const { return into_; }

private:
    /// Where a node, or one step of it, leads.
    enum class outcome {
        go_on,    ///< to what comes next: of a whole node, the nodes below it
        stop,     ///< nothing more is done for this node, and the paste goes on
        deferred, ///< the node waits
        fail      ///< the paste fails
    };

    struct pending_value {
        object* of;
        u32 id;
        const copy_value* value;
        bool operator<(const pending_value& b) const {
            return std::tie(of, id, value) < std::tie(b.of, b.id, b.value);
        }
    };
    struct pending_base {
        object* of;
        u32 source_id;
        bool operator<(const pending_base& b) const {
            return std::tie(of, source_id) < std::tie(b.of, b.source_id);
        }
    };
    struct pending_node {
        const copy_node* node;
        object* owner;
        bool operator<(const pending_node& b) const {
            return std::tie(node, owner) < std::tie(b.node, b.owner);
        }
    };
    /// Compares by ids, so that rules are asked in an order that does not depend on addresses.
    struct by_id {
        using owner_and_type = std::pair<object*, u32>;
        bool operator()(const owner_and_type& a, const owner_and_type& b) const;
    };

    // The nodes (paste.cpp).
    void sort_top_nodes();
    bool paste_top_nodes();
    object* fitting_owner(u32 type);
    outcome paste_tree(const copy_node& top, object* owner);
    outcome paste_node(const copy_node& node, object* owner, object*& made);
    outcome ask_rule(paste_rule& rule, const copy_node& node, object* owner, object*& made);
    outcome use_answer(paste_rule& rule, int action, const copy_node& node, object*& made);
    int ask_action(paste_rule& rule, const copy_node& node, object* owner) const;
    void enter(u32 source_id, object* made);
    void enter_subtree(object* top);
    outcome create(const copy_node& node, object* owner, object*& made);
    outcome fill(const copy_node& node, object* owner, object* made);
    outcome after_a_change(const object* of) const;

    // What a node gives its object (paste_values.cpp).
    outcome set_marks(const copy_node& node, object* made);
    outcome add_bases(const copy_node& node, object* made);
    outcome set_values(const copy_node& node, object* made);
    outcome set_value(const property_copy& from, object* made);
    std::unique_ptr<abstract_property> resolve(const copy_value& value) const;
    std::unique_ptr<abstract_property> resolve_wholly(const copy_value& value) const;
    bool set_if_different(object* of, u32 id, const abstract_property& value) const;
    object* mapped(u32 source_id) const;
    bool stands(object* what) const;

    // What had to wait (paste_retry.cpp).
    bool retry_until_settled();
    retried retry_value(const pending_value& entry);
    retried retry_base(const pending_base& entry);
    retried retry_node(const pending_node& entry);

    // What comes last (paste_finish.cpp).
    bool delete_incomplete();
    bool set_extra_values();
    bool set_extra_values_of(const copy_node& node, object* made);
    bool run_order_rules();
    pasted_positions positions_below(const object* owner, u32 type) const;

    snapshot& from_;
    const copier_rules& rules_;
    model& into_;
    const std::vector<object*> owners_;
    own_level level_;
    models_in_use models_;
    bool is_last_pass_ = false;
    std::unordered_map<u32, object*> new_objects_; // by source id
    std::unordered_map<const object*, u32> source_ids_;
    pending_list<pending_value> pending_values_;
    pending_list<pending_base> pending_bases_;
    pending_list<pending_node> deferred_nodes_;
    std::set<by_id::owner_and_type, by_id> ordered_owners_;
    std::map<u32, object*> fitting_owners_; // by type of node; null for none
};

} // namespace kelm
