// The node of the graph: a typed thing with values, ordered children, references and value inheritance.
// Objects are made and deleted by the framework alone.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace kelm {

/// Where an object stands in its life.
namespace state {
inline constexpr u32 normal = 0;        ///< made, and not deleted
inline constexpr u32 being_created = 1; ///< inside create_object(), or while its creation is done again
inline constexpr u32 being_deleted = 2; ///< inside delete_object(), or while its creation is undone
inline constexpr u32 deleted = 3;       ///< kept only by the history that can bring it back
} // namespace state

/// A typed node.
///
/// framework::create_object makes it, framework::delete_object deletes it; nobody else may free one.  Every object
/// that is handed out is borrowed.  It stays where it is until its model closes, but for a deleted one: that goes
/// when the history drops the messages that could bring it back.  Values are handed out as copies, which the caller
/// shares with nobody.
///
/// Each mutator runs the hooks of its kind, changes the data, records a message in the model's history, tells
/// observers, and runs the hooks behind: docs/mutation.md.  It answers false when a hook or a check refused
/// (the open transaction level is then rolled back) or an observer did (nothing is); true otherwise, also on
/// a deleted object, which takes no change of its values and bases.  A bare object
/// (framework::instantiate_object) takes no change of values, children, owner and bases at all: what would
/// make one answers false.  A mutation outside any transaction is recorded, and nothing takes it back.
///
/// Nothing here throws by itself, but std::bad_alloc: what else comes out was thrown by a hook, an observer,
/// a filter, a sorter or a value of an application's own kind.  Hooks and observers may read and change every
/// object from inside, but not close the model.  An observer that hears of an undo, redo or rollback must
/// change nothing.
class KELM_EXPORT object {
public:
    /// Gives the object a value of its own, in the place of one that it has.
    ///
    /// \param id     property id; not checked against the object's type
    /// \param value  borrowed; cloned into the object.  A reference links its target to this object
    /// \returns false when a hook, here or on an inheritor that sees the change, or an observer refused
    /// Hooks:   pre_ and post_prop_set_semantic, here and on inheritors; without an own value those of the
    ///          read of the former one
    /// Message: property_set_message
    /// Cost:    one clone, and a read without an own value; linear in the inheritors that see the change
    virtual bool set_property(u32 id, const abstract_property& value) = 0;
    /// Takes the own value away; an inherited value is not touched, and shows again.
    ///
    /// \returns true also when there is no own value: then nothing is told, but the hooks before have run
    /// Hooks:   pre_ and post_prop_delete_semantic, here and on inheritors
    /// Message: property_delete_message
    /// Cost:    linear in the inheritors that see the change
    virtual bool delete_property(u32 id) = 0;
    /// \returns whether get_property() gives a value.  Runs the hooks of reads
    virtual bool has_property(u32 id) const = 0;
    /// \returns whether this very object stores a value.  No hooks
    virtual bool defines_property(u32 id) const = 0;
    /// Asks the bases, in their order.
    ///
    /// \param deep  true: for one that stores the value, however far up.  False: for one whose has_property()
    ///              is true, which runs the hooks of reads, and one of them may supply the value
    /// \returns whether a base has it; false for what the object stores itself, or refuses to inherit
    virtual bool inherits_property(u32 id, bool deep) const = 0;
    /// \returns the effective value: own, else inherited, else what a hook supplies; empty when there is none
    ///          or a hook of reads refused
    /// Hooks:   pre_ and post_prop_get_semantic on each object that the search passes
    /// Cost:    one clone; the bases on the way, until one has a value
    virtual value_ptr get_property(u32 id) const = 0;
    /// Reads a value as text.
    ///
    /// \param out    receives the text of the effective value; empty without one
    /// \param value  null, or receives the value itself; left alone without one
    /// \returns false when there is no value, or a hook refused the text, which stays in `out`
    /// Hooks:   as get_property(), then post_prop_get_as_string_semantic here
    virtual bool get_property_as_string(u32 id, std::string& out, value_ptr* value = nullptr) const = 0;
    /// \returns the object whose stored value this one has: itself or a base; null when there is none.  No hooks
    virtual object* property_source(u32 id) const = 0;
    /// \returns the own value; empty when there is none.  No hooks, no inheritance
    virtual value_ptr get_own_property(u32 id) const = 0;
    /// Adds the own values; entries that are there stay.  No hooks.
    virtual void own_properties(value_map& out) const = 0;
    /// \returns the own values; never null.  No hooks
    virtual shared_ptr<value_map> own_properties() const = 0;
    /// Adds the effective value of each property of the type that has one; entries that are there stay.
    ///
    /// Hooks:   as get_property(), for each property of the type
    virtual void all_properties(value_map& out) const = 0;
    /// \returns what the form above adds to an empty map; never null
    virtual shared_ptr<value_map> all_properties() const = 0;
    /// Records that an inherited value changed by other means, such as a hook of reads that computes it; the object
    /// itself does not change.
    ///
    /// \param new_value  borrowed; null for a value that is gone
    /// \param old_value  borrowed; null for one that was not there.  With two nulls nothing happens
    /// \returns false when a hook or an observer refused
    /// Hooks:   as set_property(), or without a new value delete_property(), with null for the origin
    /// Message: property_set_message or property_delete_message
    virtual bool refresh_property(u32 id, const abstract_property* new_value,
                                  const abstract_property* old_value) = 0;

    // Elements of an own vector value, changed in place.  Positions count from 0.  Without an own vector
    // under the id, all are refused.

    /// Puts a clone of `element`, which is borrowed, before the element at `position`.
    ///
    /// \param position  the size appends.  Past it nothing is put in, and the operation is told and recorded
    ///                  as done
    /// \returns false when a hook, a check or an observer refused
    /// Hooks:   pre_ and post_prop_insert_vecprop_semantic, here and on inheritors
    /// Message: property_insert_vec_prop_message
    /// Cost:    one clone; linear in the elements behind `position` and in the inheritors that see the change
    virtual bool insert_vector_element(u32 id, const abstract_property& element, std::size_t position) = 0;
    /// Puts a clone of `element`, which is borrowed, at the end.  Makes the vector first, by set_property(),
    /// when there is no own value; that message is not the user's own doing.
    ///
    /// \returns false when a hook, a check or an observer refused
    /// Hooks:   as insert_vector_element(), and set_property() for a new vector
    /// Message: property_insert_vec_prop_message, and before it property_set_message for a new vector
    /// Cost:    as insert_vector_element()
    virtual bool append_vector_element(u32 id, const abstract_property& element) = 0;
    /// Takes an element out.  Its value goes to the message.
    ///
    /// \returns false when a hook, a check or an observer refused; so it does past the last element
    /// Hooks:   pre_ and post_prop_delete_vecprop_semantic, here and on inheritors; none without an own vector
    /// Message: property_delete_vec_prop_message
    /// Cost:    linear in the elements behind `position` and in the inheritors that see the change
    virtual bool delete_vector_element(u32 id, std::size_t position) = 0;
    /// Replaces an element by a clone of `element`, which is borrowed.
    ///
    /// \returns false when a hook, a check or an observer refused; so it does past the last element
    /// Hooks:   pre_ and post_prop_set_vecprop_semantic, here and on inheritors
    /// Message: property_set_vec_prop_message
    /// Cost:    one clone; linear in the inheritors that see the change
    virtual bool set_vector_element(u32 id, const abstract_property& element, std::size_t position) = 0;
    /// Moves an element.
    ///
    /// \param from  past the last element nothing moves, and the operation is told and recorded as done
    /// \param to    a position in the list without the element.  Past its end the move is refused, and the
    ///              element is out of the list all the same: no rollback brings it back
    /// \returns false when a hook, a check or an observer refused
    /// Hooks:   pre_ and post_prop_change_vecprop_elem_order_semantic, here and on inheritors
    /// Message: element_position_vec_prop_message
    /// Cost:    linear in the elements between, and in the inheritors that see the change
    virtual bool move_vector_element(u32 id, std::size_t from, std::size_t to) = 0;

    /// Refuses to inherit a property, or allows it again.  An own value stays.
    ///
    /// \param flag  true refuses.  Where that is so already, nothing happens, without a hook
    /// \returns false when a hook or an observer refused
    /// Hooks:   pre_ and post_prop_set_not_inheritable_semantic, here and on inheritors, and those of a read
    /// Message: property_set_not_inheritable_message
    /// Cost:    a read; linear in the inheritors that see the change
    virtual bool set_property_not_inheritable(u32 id, bool flag) = 0;
    /// \returns whether this object itself refuses to inherit the property
    virtual bool is_property_not_inheritable(u32 id) const = 0;
    /// \returns the properties that this object itself refuses to inherit, in the order of marking
    virtual std::vector<u32> not_inheritable_properties() const = 0;

    // Children, ordered by type; inside one type the order is the user's, and every position counts in it.

    /// Puts `child` last among its type and makes this object its owner.  A child that is here already stays
    /// where it is, and nothing is told.
    ///
    /// \param child  borrowed; null, one of another model, one that stands in the list of another owner, this
    ///               object and what owns it are refused
    /// \returns false when a hook, a check or an observer refused
    /// Hooks:   pre_ and post_add_child_semantic.  Without hooks of the kind a deleted object takes the change
    /// Message: child_add_message
    /// Cost:    that of an append; linear in the owners above when `child` owns others
    virtual bool add_child(object* child) = 0;
    /// Takes `child` out of the list; its owner() stays.  For null and a stranger nothing is told.
    ///
    /// \returns false when a hook or an observer refused; true also when it is no child
    /// Hooks:   pre_ and post_remove_child_semantic.  Without hooks of the kind a deleted object takes the change
    /// Message: child_remove_message
    /// Cost:    linear in the children of its type, but for the first and the last
    virtual bool remove_child(object* child) = 0;
    /// remove_child() for each child that `which` does not leave out.
    ///
    /// \param which  borrowed; null leaves out none
    /// \returns false when one was refused; the others are removed all the same
    /// Hooks:   those of children() and of each remove_child()
    /// Message: a child_remove_message each
    virtual bool remove_children(filter* which) = 0;
    /// Lists children: by ascending type, and inside a type in the user's order.
    ///
    /// \param out        replaced by the children, which are borrowed
    /// \param leave_out  borrowed; null leaves out none.  An obj_filter_type or obj_filter_types is not
    ///                   asked: it stands for the children of exactly its types, in the order of its list
    /// \param order      borrowed; null leaves the order as it is.  The order of equal entries is not promised
    /// \returns the number of entries; 0 when a hook refused
    /// Hooks:   pre_children_get_semantic, and post_children_get_semantic when there are children, or have been
    virtual std::size_t children(std::vector<object*>& out, filter* leave_out, sorter* order) const = 0;
    /// \returns as above, with no filter
    virtual std::size_t children(std::vector<object*>& out, sorter* order) const = 0;
    /// \returns as above, with no sorter
    virtual std::size_t children(std::vector<object*>& out, filter* leave_out) const = 0;
    /// \returns as above, with neither
    virtual std::size_t children(std::vector<object*>& out) const = 0;
    /// \returns the entries that the first form gives
    virtual std::vector<object*> children(filter* leave_out, sorter* order) const = 0;
    /// \returns the entries, with no filter
    virtual std::vector<object*> children(sorter* order) const = 0;
    /// \returns the entries, with no sorter
    virtual std::vector<object*> children(filter* leave_out) const = 0;
    /// \returns the entries, with neither
    virtual std::vector<object*> children() const = 0;
    /// \returns whether there is a child.  No hooks
    virtual bool has_children() const = 0;
    /// \returns whether child_count() of the same filter counts any
    virtual bool has_children(filter* leave_out) const = 0;
    /// \returns how many children are of exactly that type.  No hooks
    virtual std::size_t child_count(u32 type) const = 0;
    /// \param leave_out  as for children()
    /// \returns how many children it does not leave out.  No hooks
    virtual std::size_t child_count(filter* leave_out) const = 0;
    /// Moves a child among those of its type.  To its own place it is told and recorded all the same.
    ///
    /// \param child     borrowed; one that names this object as its owner and is out of the list comes back
    ///                  into it, any other stranger and null are refused
    /// \param position  in the run of the child's type, counted without the child.  Past the end the child leaves
    ///                  the list, and nothing is recorded
    /// \returns false when a hook, a check or an observer refused
    /// Hooks:   pre_ and post_set_child_order_semantic.  Without hooks of the kind a deleted object takes the
    ///          change
    /// Message: child_order_message
    /// Cost:    linear in the children of its type
    virtual bool set_child_position(object* child, std::size_t position) = 0;
    /// \returns where the child stands among those of its type; npos when it is no child
    virtual std::size_t child_position(object* child) const = 0;
    /// \returns the child at that place among those of the type; null past the end
    virtual object* child_at(u32 type, std::size_t index) const = 0;
    /// Moves this object to the end of its type among the children of another owner in the same model.
    ///
    /// \param new_owner  borrowed; null, one of another model, this object and what lies below it are refused
    /// \returns false when a hook, a check or an observer refused
    /// Hooks:   pre_ and post_set_owner_semantic, and between them those of remove_child() and add_child()
    /// Message: child_remove_message, child_add_message, owner_set_message
    /// Cost:    that of the two operations on the lists
    virtual bool set_owner(object* new_owner) = 0;
    /// \param type  0: the direct owner; else the nearest owner of exactly that type
    /// \returns null when there is none.  A deleted object keeps its owner
    virtual object* owner(u32 type = 0) const = 0;

    // Bases: objects that this one inherits values from; position 0 is asked first.  A base is another object
    // of the same model that is not deleted, and does not inherit from this one: else the operation is
    // refused, also for null.  After the message, observers hear a message about each value that the change
    // has brought, changed or, with cancel and replace, taken: these are never stored.  Each costs a look at
    // every property of the type that the object has no value for, before and behind.

    /// Puts a base at the end of the list.  One that is in the list stays where it is, and is told and
    /// recorded all the same.
    ///
    /// \returns false when a hook, a check or an observer refused
    /// Hooks:   pre_ and post_add_inherits_from_semantic; of the values that change, pre_ and
    ///          post_prop_set_semantic, here and on inheritors
    /// Message: inherits_add_message
    virtual bool add_inherits_from(object* base) = 0;
    /// Puts a base before the one at `position`.  For one that is in the list nothing happens, without a hook.
    ///
    /// \param position  the size appends; past it the operation is refused
    /// \returns false when a hook, a check or an observer refused
    /// Hooks:   pre_ and post_insert_inherits_from_semantic; of the values that change, pre_ and
    ///          post_prop_set_semantic, here and on inheritors
    /// Message: inherits_insert_message
    virtual bool insert_inherits_from(object* base, std::size_t position) = 0;
    /// Takes a base out of the list.
    ///
    /// \returns false when a hook or an observer refused; true also when it is no base, and for null: then
    ///          nothing is told, but the hooks before have run
    /// Hooks:   pre_ and post_cancel_inherits_from_semantic; of the values that change or go, pre_ and
    ///          post_prop_set_semantic or pre_ and post_prop_delete_semantic, here and on inheritors
    /// Message: inherits_cancel_message
    virtual bool cancel_inherits_from(object* base) = 0;
    /// cancel_inherits_from() for each base, from the last to the first.
    ///
    /// \returns false at the first refusal
    virtual bool cancel_all_inherits_from() = 0;
    /// Puts `base` in the place of another.  When it is in the list already nothing happens, without a hook.
    ///
    /// \param position  of the base that goes; past the end the operation is refused
    /// \returns false when a hook, a check or an observer refused
    /// Hooks:   pre_ and post_replace_inherits_from_semantic; of the values that change or go, pre_ and
    ///          post_prop_set_semantic or pre_ and post_prop_delete_semantic, here and on inheritors
    /// Message: inherits_replace_message
    virtual bool replace_inherits_from_at(object* base, std::size_t position) = 0;
    /// replace_inherits_from_at() where `old_base` stands.
    ///
    /// \returns false also when `old_base` is no base; nothing is then rolled back
    virtual bool replace_inherits_from(object* new_base, object* old_base) = 0;
    /// \param recursive  also asks the bases of bases
    /// \returns whether `base` is a base; false for null
    virtual bool inherits_from(object* base, bool recursive) const = 0;
    /// Appends the bases of exactly that type, 0 for all.
    ///
    /// \returns the size of `out`
    virtual std::size_t inherits_from_list(std::vector<object*>& out, u32 type) const = 0;
    /// \returns the bases of exactly that type, 0 for all
    virtual std::vector<object*> inherits_from_list(u32 type) const = 0;
    /// Replaces `out` by all bases.
    ///
    /// \returns the size of `out`
    virtual std::size_t inherits_from_list(std::vector<object*>& out) const = 0;
    /// Moves a base in the list.  To its own place it is told and recorded all the same.
    ///
    /// \param position  in the list without the base; one that is its whole size means the end as well, and
    ///                  past that the operation is refused
    /// \returns false when a hook, a check or an observer refused; so it does when it is no base
    /// Hooks:   pre_ and post_set_inherits_from_order_semantic; of the values that change, pre_ and
    ///          post_prop_set_semantic, here and on inheritors
    /// Message: inherits_from_order_message
    virtual bool set_inherits_from_position(object* base, std::size_t position) = 0;
    /// \returns where the base stands; npos when it is none
    virtual std::size_t inherits_from_position(object* base) const = 0;
    /// \returns null past the end
    virtual object* inherits_from_at(std::size_t position) const = 0;

    /// Gives the hooks that this object runs, as its type had them when it was made.
    ///
    /// \param kind  0 to 44; there is none of another
    /// \param out   replaced by the hooks, in the order of running
    /// \returns false when there is none
    virtual bool semantics_of_kind(int kind, std::vector<shared_ptr<semantic>>& out) const = 0;
    /// \returns the hook with that id, of the lowest kind, borrowed from the type; null when there is none
    virtual semantic* find_semantic(u32 id) const = 0;

    /// \returns the id of the object's type: what it is called and has is told by meta_model::find_meta_object
    virtual u32 type() const = 0;
    /// \returns the id, which no other object of the model has or gets; 1 for the model itself, 0 for a bare object
    ///          that no reader has filled
    virtual u32 id() const = 0;
    /// \returns one of kelm::state
    virtual u32 state() const = 0;
    /// \returns null only for a bare object that no reader has placed yet
    virtual kelm::model* model() const = 0;

    /// \returns the objects with an own value that refers to this one, each once, in no promised order
    virtual std::vector<object*> referencing_objects() const = 0;
    /// \returns the objects that list this one as a base, each once, in no promised order
    virtual std::vector<object*> inheritors() const = 0;
    /// \returns the targets of all effective values of the type's properties, elements of lists among them,
    ///          each once, by ascending property
    /// Hooks:   as get_property(), for each property of the type
    virtual std::vector<object*> referenced_objects() const = 0;
    /// \returns the properties of the type, ascending, whose effective value is a reference to `target` or a
    ///          list that has one
    /// Hooks:   as get_property(), for each property of the type
    virtual std::vector<u32> referencing_property_ids(object* target) const = 0;

    /// As subject::attach; an observer that is an object is recorded in the history and stored with the model.
    ///
    /// \param who  borrowed; detach it before it dies, unless it is an object
    /// \returns false for null, and when it is attached already
    /// Message: observer_add_message for an object, which nobody is told of
    virtual bool attach(observer* who) = 0;
    /// detach() for an observer that is an object.
    ///
    /// \returns false for null, and when it was not attached
    virtual bool detach_object(object* who) = 0;
    /// As subject::detach.
    ///
    /// \returns false for null, and when it was not attached
    /// Message: observer_remove_message for an object, which nobody is told of
    virtual bool detach(observer* who) = 0;
    /// \returns what this object itself observes, ordered by address
    virtual std::vector<subject*> subjects() const = 0;
    /// \returns who observes this object, ordered by address
    virtual std::vector<observer*> observers() const = 0;

    /// Called by model::post_load for each object once a model has been read.
    ///
    /// \returns true
    virtual bool post_read() = 0;
    /// Writes the object with its subtree: docs/stream_format.md and docs/document_format.md tell what stands
    /// where.
    ///
    /// \param out      borrowed; null when there is an element
    /// \param element  a `xercesc::DOMElement*` as void*: filled instead of the stream.  Null: the stream is
    ///                 written
    /// \returns false when the stream has failed, or there is none
    virtual bool write(std::ostream* out, void* element) const = 0;

    virtual ~object() = default;
};

} // namespace kelm
