// Making a summary: one walk back through a stretch of the log, then a comparison with the present.
// What comes out of it is delta_impl.
#pragma once

#include "delta/delta_impl.h"
#include "delta/skip_filter.h"
#include "message/message_impl.h"

#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace kelm {

/// One summary in the making.  The objects as they are now are its end; each message, the newest first, restores in the
/// detail of its object the state before itself.
class summary {
public:
    /// \param stretch  borrowed messages, newest first
    summary(model_impl& of, const std::vector<message_impl*>& stretch);

    /// \returns null when the stretch comes to nothing
    std::unique_ptr<delta_impl> make();
    /// \returns whether messages of that type change what a summary tells of
    static bool folds(u32 type);

    // The rows of the table of fold_message(), each for its messages.
    void fold_obj_create(message_impl& what);
    void fold_obj_delete(message_impl& what);
    void fold_property_set(message_impl& what);
    void fold_property_delete(message_impl& what);
    void fold_element_set(message_impl& what);
    void fold_element_insert(message_impl& what);
    void fold_element_delete(message_impl& what);
    void fold_element_move(message_impl& what);
    void fold_not_inheritable(message_impl& what);
    void fold_child_remove(message_impl& what);
    void fold_child_order(message_impl& what);
    void fold_owner_set(message_impl& what);
    void fold_inherits_add(message_impl& what);
    void fold_inherits_insert(message_impl& what);
    void fold_inherits_cancel(message_impl& what);
    void fold_inherits_order(message_impl& what);
    void fold_inherits_replace(message_impl& what);

private:
    struct summed_property {
        u32 id;
        summary_part part;
    };

    void fold_message(message_impl& what);
    void finish();

    detail_base_original_properties_impl& detail_of(object_impl& about);
    detail_modified_impl& modified_detail_of(object_impl& about);
    void note_present_state(detail_modified_impl& detail);
    /// \returns the properties of a type that a summary looks at, in the order of the type
    const std::vector<summed_property>& properties_of(const object_impl& about);
    static bool is_summed(const summed_property& which, const object_impl& about) {
        return !is_left_out(which.part, which.id, about);
    }

    vector_property& list_of(message_impl& what);
    std::vector<object*>& bases_of(message_impl& what);
    bool is_new(const object_impl& about) const { return made_in_stretch_.contains(&about); }
    void leave_out(detail_delete_impl& gone);
    void leave_out(detail_modified_impl& changed);
    void adopt_children(detail_create_impl& made);

    void add_inheritors();
    void find_changes();
    void drop_void_details();
    void compact();

    const std::vector<message_impl*>& stretch_;
    std::unique_ptr<delta_impl> made_;
    std::unordered_set<const object*> made_in_stretch_; // whose changes need not be followed
    std::unordered_map<const object*, std::map<u32, detail_create_impl*>>
        waiting_; // by owner, for its own detail
    std::unordered_map<u32, std::vector<summed_property>> properties_by_type_;
};

} // namespace kelm
