// A snapshot of some objects of one model, and pasting it into any model; the rules of both.
// Following changes between two models is not done here: that is what a compare is for.
#pragma once

#include <kelm/guid.h>
#include <kelm/property.h>

#include <iosfwd>
#include <map>
#include <utility>
#include <vector>

namespace kelm {

/// Says what else goes into the snapshot with an object of its type.
class KELM_EXPORT copy_rule {
public:
    copy_rule() = default;
    copy_rule(const copy_rule&) = default;
    copy_rule& operator=(const copy_rule&) = default;
    virtual ~copy_rule() = default;
    /// Appends what is to be copied as well, in the order of copying; null entries are passed over.
    ///
    /// \param of  borrowed: an object of the type that is being copied, before its children
    /// \returns false, and `out` is not looked at
    virtual bool referenced_objects(const object* of, std::vector<object*>& out) = 0;
    /// \returns a copy, which the copier keeps and frees; null leaves the type without a rule
    virtual owned<copy_rule*> clone() const = 0;
};

/// What a paste rule wants done with a node.
namespace paste_action {
inline constexpr int create = 0;  ///< make an object as usual; so does every number not below
inline constexpr int replace = 1; ///< delete object(), then make an object; when it stays, leave the node out
inline constexpr int use_existing = 2;    ///< make none: give object() the node's values and children
inline constexpr int defer = 3;           ///< ask again on a later pass
inline constexpr int map_to_existing = 4; ///< make none, change none: references to the node lead to object()
inline constexpr int fail = 5;            ///< fail the whole paste
} // namespace paste_action

/// Decides what happens with each node of its type.
class KELM_EXPORT paste_rule {
public:
    paste_rule() = default;
    paste_rule(const paste_rule&) = default;
    paste_rule& operator=(const paste_rule&) = default;
    virtual ~paste_rule() = default;
    /// Asked before a node is pasted.  From inside, models may be read and changed; the copier's own read()
    /// and paste() answer false.
    ///
    /// \param owner      the object that the node goes under, borrowed
    /// \param type       of the node
    /// \param values     of the node, as far as they resolve yet: null for those that do not; borrowed for the call
    /// \param inherits   the new objects for the node's bases; null for those that are not there
    /// \param last_pass  true when nothing that is still missing will come any more
    /// \param source_id  the id of the object that the node was copied from
    /// \returns a paste_action
    virtual int paste(object* owner, u32 type, const std::map<u32, abstract_property*>& values,
                      const std::vector<object*>& inherits, bool last_pass, u32 source_id) = 0;
    /// Asked behind paste().
    ///
    /// \returns the object, borrowed, that the actions `replace`, `use_existing` and `map_to_existing` mean
    virtual kelm::object* object() = 0;
    /// \returns a copy, which the copier keeps and frees; null leaves the type without a rule
    virtual owned<paste_rule*> clone() const = 0;
};

/// What a property paste rule has done with a value.
namespace property_paste_result {
inline constexpr int nothing = 0; ///< the value is set as usual
inline constexpr int defer = 1;   ///< ask again on a later pass
inline constexpr int done = 2;    ///< leave the property alone
} // namespace property_paste_result

/// Decides about each value that objects of its type are given.
class KELM_EXPORT property_paste_rule {
public:
    property_paste_rule() = default;
    property_paste_rule(const property_paste_rule&) = default;
    property_paste_rule& operator=(const property_paste_rule&) = default;
    virtual ~property_paste_rule() = default;
    /// Asked before a value is set.
    ///
    /// \param what       the object, borrowed
    /// \param id         property id
    /// \param value      borrowed; null for references that do not resolve.  What is done to it is what is set
    /// \param last_pass  true when nothing that is still missing will come any more
    /// \returns a property_paste_result; when asked again, every other than `nothing` defers
    virtual int paste_property(object* what, u32 id, abstract_property* value, bool last_pass) = 0;
    /// \returns a copy, which the copier keeps and frees; null leaves the type without a rule
    virtual owned<property_paste_rule*> clone() const = 0;
};

/// Children that a paste made, each with its position below the source's owner.
using pasted_positions = std::vector<std::pair<object*, u32>>;

/// Puts the children of one type of an owner in order once all have been pasted.
class KELM_EXPORT object_order_rule {
public:
    object_order_rule() = default;
    object_order_rule(const object_order_rule&) = default;
    object_order_rule& operator=(const object_order_rule&) = default;
    virtual ~object_order_rule() = default;
    /// Asked once an owner, which is borrowed like the children.
    ///
    /// \returns false to fail the paste
    virtual bool order(object* owner, u32 child_type, const pasted_positions& children) = 0;
    /// \returns a copy, which the copier keeps and frees; null leaves the two types without a rule
    virtual owned<object_order_rule*> clone() const = 0;
};

/// Has the last word about a paste, also about one that has failed.
class KELM_EXPORT end_transaction_rule {
public:
    end_transaction_rule() = default;
    end_transaction_rule(const end_transaction_rule&) = default;
    end_transaction_rule& operator=(const end_transaction_rule&) = default;
    virtual ~end_transaction_rule() = default;
    /// Asked last, also when the paste has failed.
    ///
    /// \returns false to fail the paste
    virtual bool accept(model* destination) = 0;
    /// \returns a copy, which the copier keeps and frees; null leaves the copier without a rule
    virtual owned<end_transaction_rule*> clone() const = 0;
};

/// A snapshot: types, source ids, values, links and children, without a pointer into the source model, which may
/// change or go.
///
/// framework::create_copier() makes it, and it goes with its last pointer.  Rules given to it are cloned; one
/// that is set again replaces the former, of its type where it has one.  Rules and hooks may call back while
/// a copy or a paste is running: then copy_object() in a paste, and read() and paste() in both, change
/// nothing and answer false, and the models at work cannot be closed.  docs/copy_and_paste.md tells the rest.
class KELM_EXPORT copier {
public:
    virtual ~copier() = default;

    /// Adds an object with its subtree, and what its values and rules pull along.  The model does not change.
    ///
    /// \param what      borrowed for the call
    /// \param selected  marks it as chosen by the user, not pulled along
    /// \returns false for an object that is in the snapshot already (its mark stays), for one in no model,
    ///          and for null
    /// \throws  what a rule or a hook throws; nothing of this call stays in the snapshot then
    /// Hooks:   those of reads of children, and of values that rules and add_extra_property() ask for
    /// Cost:    linear in what is copied
    virtual bool copy_object(object* what, bool selected) = 0;
    /// Appends to user_ids().
    virtual void add_user_id(u32 id) = 0;
    /// Makes the snapshot's objects anew in a transaction "Paste Objects" of `destination`; the snapshot stays.
    ///
    /// \param destination  borrowed; the model that was copied from, or any other
    /// \param owners  of that model: each top node goes under the first that may have it, or is left out
    /// \param pasted  null, or receives the objects now standing for the selected top nodes; stale after a failure
    /// \returns false when a rule or a refusal failed it: it is rolled back, unless a rule has ended its
    ///          transaction; false also for null, and inside a copy or a paste of this copier
    /// \throws  std::runtime_error when the destination has used up its ids, and what a rule or a hook throws;
    ///          everything has been rolled back
    /// Hooks:   those of each object that is made, and of each value and base that is set
    /// Message: those of each object that is made, and of each value and base that is set
    /// Cost:    linear in the snapshot; what refers to what comes later is tried again
    virtual bool paste(model* destination, const std::vector<object*>& owners,
                       std::vector<object*>* pasted) = 0;

    /// The order in which top nodes are pasted: by type, those not listed last.
    virtual void set_type_order(const std::vector<u32>& types) = 0;
    /// Sets the rule that says what else is copied with objects of `type`.
    virtual void set_copy_rule(u32 type, const copy_rule& rule) = 0;
    /// Sets the rule that decides about nodes of `type`.
    virtual void set_paste_rule(u32 type, const paste_rule& rule) = 0;
    /// Sets the rule that orders children of `child_type` below owners of `owner_type`.
    virtual void set_object_order_rule(u32 owner_type, u32 child_type, const object_order_rule& rule) = 0;
    /// Has objects of `type` take the effective value of a property along that they do not define themselves.
    virtual void add_extra_property(u32 type, u32 property_id) = 0;
    /// Sets the rule that decides about values of objects of `type`.
    virtual void set_property_paste_rule(u32 type, const property_paste_rule& rule) = 0;
    /// Sets the rule that has the last word.
    virtual void set_end_transaction_rule(const end_transaction_rule& rule) = 0;
    /// \returns whether at least one top node may be a child of `owner`; false for null
    virtual bool can_paste_into(const object* owner) const = 0;

    /// \returns the id of the model that the copier was made for
    virtual GUID source_model_id() const = 0;
    /// A number for the application: kept and stored, never read by the library.
    ///
    /// \returns what was set, or read; 0 at first
    virtual u32 user_value() const = 0;
    /// Sets that number.
    virtual void set_user_value(u32 value) = 0;
    /// \returns the id of the model that is being pasted into; all zero when no paste is running
    virtual GUID destination_model_id() const = 0;
    /// Appends type and source id of each selected top node.
    virtual void selected_objects(std::vector<std::pair<u32, u32>>& out) const = 0;
    /// \returns whether a selected top node has that source id
    virtual bool has_selected_object(u32 id) const = 0;
    /// Numbers for the application: kept and stored, never read by the library.
    virtual std::vector<u32> user_ids() const = 0;

    /// Replaces the snapshot by what write() wrote; rules stay, and the ids read are appended to user_ids().
    /// \returns false for what ends early or tells what cannot be: the snapshot is then empty
    virtual bool read(std::istream& in) = 0;
    /// Appends the snapshot: docs/snapshot_format.md tells what stands where.
    ///
    /// \returns false when the stream has failed, and for values too deep or of no kind that a reader could make
    virtual bool write(std::ostream& out) const = 0;
};

} // namespace kelm
