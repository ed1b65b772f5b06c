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
inline constexpr u32 normal = 0;
inline constexpr u32 being_created = 1;
inline constexpr u32 being_deleted = 2;
inline constexpr u32 deleted = 3; ///< kept only by the history that can bring it back
} // namespace state

/// A typed node.  Everything it hands out as a raw pointer is borrowed, and lives as long as the model.
///
/// Each mutator runs the hooks of its kind, changes the data, records a message in the model's history, tells
/// observers, and runs the hooks behind.  It answers false when a hook or a check refused (the open transaction
/// level is then rolled back) or an observer did (nothing is); true otherwise, also on a deleted object.
class KELM_EXPORT object {
public:
    /// Stores a clone of `value`.  The id is not checked against the type.
    virtual bool set_property(u32 id, const abstract_property& value) = 0;
    /// Takes the own value away; an inherited value is not touched.
    virtual bool delete_property(u32 id) = 0;
    /// \returns whether a read finds a value
    virtual bool has_property(u32 id) const = 0;
    /// \returns whether this very object stores a value
    virtual bool defines_property(u32 id) const = 0;
    /// \returns whether the value comes from a base; with `deep`, from one that stores it
    virtual bool inherits_property(u32 id, bool deep) const = 0;
    /// \returns the effective value: own, else inherited, else what a hook supplies; empty when there is none
    virtual value_ptr get_property(u32 id) const = 0;
    /// Replaces `out` by the text of the effective value, and `*value`, when given, by the value.
    /// \returns false when there is no value, or a hook refused
    virtual bool get_property_as_string(u32 id, std::string& out, value_ptr* value = nullptr) const = 0;
    /// \returns the object whose stored value a read of this one finds; null when there is none
    virtual object* property_source(u32 id) const = 0;
    /// \returns a clone of the own value; no hooks, no inheritance
    virtual value_ptr get_own_property(u32 id) const = 0;
    /// Adds clones of the own values; entries that are there stay.
    virtual void own_properties(value_map& out) const = 0;
    virtual shared_ptr<value_map> own_properties() const = 0;
    /// Adds the effective value of each property of the type; entries that are there stay.
    virtual void all_properties(value_map& out) const = 0;
    virtual shared_ptr<value_map> all_properties() const = 0;
    /// Records that an inherited value changed by other means; the object itself does not change.
    virtual bool refresh_property(u32 id, const abstract_property* new_value,
                                  const abstract_property* old_value) = 0;

    // Elements of an own vector value, changed in place.  Positions count from 0; the size appends.
    /// A position behind the size puts nothing in; the operation goes on all the same.
    virtual bool insert_vector_element(u32 id, const abstract_property& element, std::size_t position) = 0;
    /// Makes the vector first when there is none.
    virtual bool append_vector_element(u32 id, const abstract_property& element) = 0;
    virtual bool delete_vector_element(u32 id, std::size_t position) = 0;
    virtual bool set_vector_element(u32 id, const abstract_property& element, std::size_t position) = 0;
    /// \param to  a position in the list without the element
    virtual bool move_vector_element(u32 id, std::size_t from, std::size_t to) = 0;

    /// Refuses to inherit a property, or allows it again.
    virtual bool set_property_not_inheritable(u32 id, bool flag) = 0;
    virtual bool is_property_not_inheritable(u32 id) const = 0;
    virtual std::vector<u32> not_inheritable_properties() const = 0;

    // Children, ordered by type; inside one type the order is the user's, and every position counts in it.
    /// Puts `child` last among its type and makes this object its owner.
    virtual bool add_child(object* child) = 0;
    /// Takes `child` out; its owner() stays.
    virtual bool remove_child(object* child) = 0;
    /// Removes all that `which` does not leave out.
    /// \returns false when one was refused; the others are removed all the same
    virtual bool remove_children(filter* which) = 0;
    /// Replaces `out`.  \returns the number of entries
    virtual std::size_t children(std::vector<object*>& out, filter* leave_out, sorter* order) const = 0;
    virtual std::size_t children(std::vector<object*>& out, sorter* order) const = 0;
    virtual std::size_t children(std::vector<object*>& out, filter* leave_out) const = 0;
    virtual std::size_t children(std::vector<object*>& out) const = 0;
    virtual std::vector<object*> children(filter* leave_out, sorter* order) const = 0;
    virtual std::vector<object*> children(sorter* order) const = 0;
    virtual std::vector<object*> children(filter* leave_out) const = 0;
    virtual std::vector<object*> children() const = 0;
    virtual bool has_children() const = 0;
    virtual bool has_children(filter* leave_out) const = 0;
    virtual std::size_t child_count(u32 type) const = 0;
    virtual std::size_t child_count(filter* leave_out) const = 0;
    /// \param position  in the run of the child's type, counted without the child.  Past the end the child leaves
    ///                  the list, and nothing is recorded.
    virtual bool set_child_position(object* child, std::size_t position) = 0;
    /// \returns npos when it is no child
    virtual std::size_t child_position(object* child) const = 0;
    /// \returns null past the end
    virtual object* child_at(u32 type, std::size_t index) const = 0;
    /// Moves this object to the end of its type among the children of another owner in the same model.
    virtual bool set_owner(object* new_owner) = 0;
    /// \returns the direct owner, or with a type the nearest owner of it; null when there is none
    virtual object* owner(u32 type = 0) const = 0;

    // Bases: objects that this one inherits values from; position 0 is asked first.
    virtual bool add_inherits_from(object* base) = 0;
    virtual bool insert_inherits_from(object* base, std::size_t position) = 0;
    virtual bool cancel_inherits_from(object* base) = 0;
    virtual bool cancel_all_inherits_from() = 0;
    virtual bool replace_inherits_from_at(object* base, std::size_t position) = 0;
    virtual bool replace_inherits_from(object* new_base, object* old_base) = 0;
    virtual bool inherits_from(object* base, bool recursive) const = 0;
    /// Appends the bases of a type, 0 for all.  \returns the size of `out`
    virtual std::size_t inherits_from_list(std::vector<object*>& out, u32 type) const = 0;
    virtual std::vector<object*> inherits_from_list(u32 type) const = 0;
    virtual std::size_t inherits_from_list(std::vector<object*>& out) const = 0;
    virtual bool set_inherits_from_position(object* base, std::size_t position) = 0;
    virtual std::size_t inherits_from_position(object* base) const = 0;
    virtual object* inherits_from_at(std::size_t position) const = 0;

    /// Replaces `out` by the hooks of a kind.  \returns false when there is none
    virtual bool semantics_of_kind(int kind, std::vector<shared_ptr<semantic>>& out) const = 0;
    /// \returns the hook with that id, of the lowest kind; null when there is none
    virtual semantic* find_semantic(u32 id) const = 0;

    virtual u32 type() const = 0;
    virtual u32 id() const = 0;
    /// \returns one of kelm::state
    virtual u32 state() const = 0;
    /// \returns null only for a bare object that no reader has placed yet
    virtual kelm::model* model() const = 0;

    /// \returns the objects with a value that refers to this one, each once
    virtual std::vector<object*> referencing_objects() const = 0;
    /// \returns the objects that list this one as a base, each once
    virtual std::vector<object*> inheritors() const = 0;
    /// \returns the targets of all effective values of the type's properties, each once
    virtual std::vector<object*> referenced_objects() const = 0;
    /// \returns the properties whose effective value refers to `target`
    virtual std::vector<u32> referencing_property_ids(object* target) const = 0;

    /// As subject::attach; an observer that is an object is recorded in the history.
    virtual bool attach(observer* who) = 0;
    virtual bool detach_object(object* who) = 0;
    virtual bool detach(observer* who) = 0;
    virtual std::vector<subject*> subjects() const = 0;
    virtual std::vector<observer*> observers() const = 0;

    /// Called for each object once a model has been read.
    virtual bool post_read() = 0;
    /// Writes the object with its subtree: docs/stream_format.md and docs/document_format.md tell what stands where.
    /// \param element  a `xercesc::DOMElement*` as void*: filled instead of the stream.  Null: the stream is written
    /// \returns false when the stream has failed, or there is none
    virtual bool write(std::ostream* out, void* element) const = 0;

    virtual ~object() = default;
};

} // namespace kelm
