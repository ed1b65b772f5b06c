// What a stretch of history came to: which objects are new, which are gone, which differ, and how it was before.
// Single changes in their order are the messages of message.h.
#pragma once

#include <kelm/property.h>

#include <string>
#include <vector>

namespace kelm {

class detail_base_original_properties;

/// Translates a value of the start of the stretch; the application implements it.
class KELM_EXPORT original_properties_semantics {
public:
    virtual ~original_properties_semantics() = default;
    /// Supplies a value.
    ///
    /// \param of     the detail that was asked, borrowed
    /// \param id     property id
    /// \param value  a clone of the original value, or null when there was none
    /// \returns the value to use: `value` itself, or another on the heap, and `value` is then freed by the caller.
    ///          The caller owns what is returned.
    virtual owned<abstract_property*> do_it(detail_base_original_properties* of, u32 id,
                                            abstract_property* value) = 0;
};

/// Translates the text of a value of the start of the stretch; the application implements it.
class KELM_EXPORT original_properties_as_string_semantics {
public:
    virtual ~original_properties_as_string_semantics() = default;
    /// Supplies a text.
    ///
    /// \param result  a string to use for the answer
    /// \param of      the detail that was asked, borrowed
    /// \param id      property id
    /// \param value   a clone of the original value; empty when there was none
    /// \param text    what the answer would be without the translation
    /// \returns the text to use: `result`, or another string that outlives the call
    virtual std::string& do_it(std::string& result, detail_base_original_properties* of, u32 id,
                               shared_ptr<abstract_property> value, const std::string& text) = 0;
};

/// A child that was put to another place on purpose: from where, before the first such move, and to where,
/// behind the last.  Children that were only pushed aside have none.
struct child_order_change {
    object* child = nullptr; ///< borrowed; its owner is the object of the detail
    u64 old_pos = 0;         ///< among the children of its type
    u64 new_pos = 0;         ///< among the children of its type, without it
};

/// A base that came, went or moved.
struct inherits_change {
    kelm::object* object = nullptr; ///< the base, borrowed
    std::int64_t old_pos = -1;      ///< -1 for a base that is new
    std::int64_t new_pos = -1;      ///< -1 for a base that is gone
};

/// What happened to one object.  The delta owns it; what is special is told by the interface of its kind:
/// detail_cast<detail_modified>(detail).
class KELM_EXPORT delta_detail {
public:
    /// The kinds of details.
    static constexpr int deleted = 0;  ///< detail_delete
    static constexpr int created = 1;  ///< detail_create
    static constexpr int modified = 2; ///< detail_modified

    /// \returns one of the three
    virtual int kind() const = 0;
    /// Replaces `out` by the object's name: as it is now for what was made or changed; as it was for what is gone,
    /// and "<unknown name>" when it had none.
    virtual void name(std::string& out) const = 0;
    /// \returns the type of the object
    virtual u32 object_type() const = 0;
    /// \returns the id of the object, by which model::find_object() finds it unless it is gone
    virtual u32 object_id() const = 0;
    /// \returns the delta that the detail belongs to
    virtual delta* owning_delta() const = 0;
    virtual ~delta_detail() = default;
};

/// \returns the other face of the same detail; null when it is of another kind, or null
template <class To, class From>
To* detail_cast(From* from) {
    return dynamic_cast<To*>(from);
}

/// The values that an object had at the start of the stretch: its own, and those it inherited then.
class KELM_EXPORT detail_base_original_properties {
public:
    /// \returns whether a value of the object itself is known; also one that it had inherited and then replaced is
    ///          taken for its own.  What summaries leave out is known only where a message speaks of it.
    virtual bool has_original_property(u32 id) const = 0;
    /// \returns whether a value is found: that of has_original_property(), or one along the bases of then
    virtual bool had_property(u32 id) const = 0;
    /// \param translate  borrowed; null for the value as it was
    /// \returns the value, own or inherited; empty when there was none
    virtual value_ptr original_property(u32 id, original_properties_semantics* translate) const = 0;
    /// The value in words: references as names of their targets, elements of vectors with "," between them.
    /// \param translate  borrowed; null for the text as it is
    /// \returns empty when there was no value
    virtual std::string original_property_as_string(
        u32 id, original_properties_as_string_semantics* translate) const = 0;
    virtual ~detail_base_original_properties() = default;
};

/// An object that did not exist at the start.
class KELM_EXPORT detail_create {
public:
    /// \returns the detail of the owner when it is new as well; null at top level
    virtual delta_detail* parent_detail() const = 0;
    /// \returns the details of the children that are new as well
    virtual std::vector<delta_detail*> child_details() const = 0;
    virtual ~detail_create() = default;
};

/// An object that is gone.
class KELM_EXPORT detail_delete {
public:
    /// \returns the detail of the owner when it went as well; null at top level
    virtual delta_detail* parent_detail() const = 0;
    /// \returns null when the owner is no longer in the model
    virtual object* owner() const = 0;
    /// \returns the details of the children that went as well
    virtual std::vector<delta_detail*> child_details() const = 0;
    /// \returns where it stood among the children of its type, of the first owner that it was taken from;
    ///          npos32 when the stretch does not tell
    virtual u32 position() const = 0;
    virtual ~detail_delete() = default;
};

/// An object that was there before, and differs.  One that was given another owner and then went with it is told
/// twice, as modified and as deleted.
class KELM_EXPORT detail_modified {
public:
    /// \returns the children of this object that were moved, first the one whose first move is the newest
    virtual std::vector<child_order_change> child_order_changes() const = 0;
    /// \returns the properties whose effective value differs, in the order of the type's properties
    virtual std::vector<u32> changed_properties() const = 0;
    /// Compares the bases of the start with those of the first call; later calls give the same.
    virtual std::vector<inherits_change> inherits_changes() const = 0;
    /// \returns the owner at the start when it was set since; null otherwise
    virtual object* old_owner() const = 0;
    virtual ~detail_modified() = default;
};

/// A summary.  It borrows values from messages and objects: look at it before the model changes again.  It
/// dangles once undo, redo, a rollback, a limit of the history, clear_history or reading drops messages that
/// it was made of.
class KELM_EXPORT delta {
public:
    // The top-level details of each kind, in the order of a walk from the newest change back; inheritors that
    // only see a change come behind those that were changed.  Details are owned by the delta.

    /// \returns the details of what is gone, without those that lie below another
    virtual std::vector<delta_detail*> deleted_details() const = 0;
    /// \returns the details of what is new, without those that lie below another
    virtual std::vector<delta_detail*> created_details() const = 0;
    /// \returns the details of what differs
    virtual std::vector<delta_detail*> modified_details() const = 0;
    virtual ~delta() = default;
};

/// Frees what model::make_delta() handed out.  Null is allowed.
KELM_EXPORT void delete_delta(delta* which);

} // namespace kelm
