// Taking objects of a model into a snapshot, with what belongs to them.
// What a snapshot is made of is told by snapshot.h; nothing here changes a model.
#pragma once

#include "copier/child_positions.h"
#include "copier/copier_rules.h"
#include "copier/models_in_use.h"
#include "copier/snapshot.h"

namespace kelm {

class object_impl;

/// One call of copier::copy_object.  Owners, children and what is pulled along wait for one another on a stack of its
/// own, in the order in which nested calls would run: chains are as long as a model is big.
class collector {
public:
    collector(snapshot& into, const copier_rules& rules, child_positions& positions)
        : into_(into), rules_(rules), positions_(positions) {}
    collector(const collector&) = delete;
    collector& operator=(const collector&) = delete;
    ~collector() { destroy(unplaced_); }

    /// \returns false for what is in the snapshot already, for null, and for an object without a model
    /// \throws  what rules and hooks throw: then nothing of what this call has made stays
    bool copy(object* what, bool selected);

private:
    /// Something to be copied as well.
    struct pull {
        object* what;
        std::size_t behind_list; // where to go on when it is there already: a list ends with such an element
    };

    enum class stage { extras, rule, children, below };

    /// A node that is being filled.
    struct unfinished {
        object_impl* what;
        copy_node* node;
        bool selected;
        bool is_for_owner; // its owner's node is the one below on the stack, and takes it
        stage at = stage::extras;
        std::vector<pull> pulls{};
        std::size_t next_pull = 0;
        std::vector<u32> extras{};
        std::size_t next_extra = 0;
        std::vector<object*> children{};
        std::size_t next_child = 0;
        u32 run_type = 0; // of the children that are being counted
        u32 run_position = 0;
    };

    bool begin(object* what, bool selected, const u32* position);
    void fill(copy_node& node, object_impl& what, const u32* position);
    void copy_values(unfinished& of);
    void go_on();
    void pull_next(unfinished& of);
    void copy_next_extra(unfinished& of);
    void copy_lists_and_ask_rule(unfinished& of);
    void take_next_child(unfinished& of);
    void finish();
    void place(copy_node& node, const object_impl& what);
    void add_pull(unfinished& of, object& what);
    void plan_pulls(unfinished& of, u32 id, const abstract_property* value);
    void forget_all();

    snapshot& into_;
    const copier_rules& rules_;
    child_positions& positions_;
    node_list unplaced_;
    std::vector<unfinished> stack_;
    std::vector<copy_node*> made_;
    models_in_use models_; // rules and hooks must not free what waits here
};

} // namespace kelm
