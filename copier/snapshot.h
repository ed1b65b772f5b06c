// What a copier has copied: plain records that hold no pointer into the model they were taken from.
// Filling them is collector's business, their stored form that of snapshot_io.
#pragma once

#include <kelm/guid.h>
#include <kelm/property.h>
#include <kelm/types.h>

#include <iosfwd>
#include <list>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace kelm {

/// A value in which an object is told by its id: a list of such values, an id, or a box of its own.
class copy_value {
public:
    using list = std::vector<copy_value>;
    using box = std::unique_ptr<abstract_property>;

    explicit copy_value(list elements) : kind_(data_type::vector), elements_(std::move(elements)) {}
    /// \param kind  the data type code; neither that of lists nor that of references
    copy_value(u32 kind, box value) : kind_(kind), box_(std::move(value)) {}
    /// \param target  the id that the object has in its model
    static copy_value reference_to(u32 target);
    /// Copies a value.  A null reference is one to the id 0, which nobody has; of a null value nothing but a null box
    /// is left.
    static copy_value of(const abstract_property* value);

    u32 kind() const { return kind_; }
    bool is_list() const { return kind_ == data_type::vector; }
    bool is_reference() const { return kind_ == data_type::object_reference; }
    /// \throws boost::bad_get, like the two below, for a value of another kind
    const list& elements() const;
    u32 target() const;
    /// \returns borrowed
    const abstract_property* plain() const;

private:
    u32 kind_;
    u32 target_ = 0;
    list elements_{};
    box box_{};
};

/// A value and the property it is of.
struct property_copy {
    u32 id;
    copy_value value;
};
using property_copies = std::vector<property_copy>; ///< ascending by id, each id once

/// \returns whether there is a value of that id
bool holds(const property_copies& values, u32 id);
/// Puts a value in its place; one of that id that is there already stays.
void enter(property_copies& values, u32 id, copy_value value);

struct copy_node;
using node_list = std::list<copy_node>;

/// One object.  It stands in one list at a time, that of the top nodes or the children of another node, and owns what
/// is below it.
struct copy_node {
    u32 type = 0;
    u32 id = 0;       ///< of the object in its model
    u32 owner_id = 0; ///< 0 for a model
    u32 position = 0; ///< among the children of its type of that owner
    bool selected = false;
    property_copies properties; ///< the object's own
    std::vector<u32> inherits_from;
    node_list children;
    property_copies extra_properties; ///< what it only inherited, where that was asked for
    std::vector<u32> not_inheritable;

    // Where it stands; not stored.
    copy_node* parent = nullptr; ///< null for a top node, and as long as it has not been placed
    node_list* home = nullptr;
    node_list::iterator self{};
};

/// Appends an empty node to a list.
copy_node& add_node(node_list& to, copy_node* parent);

/// Frees a list of nodes with all below them; the depth costs no stack.
void destroy(node_list& nodes) noexcept;

/// What is written and read, and a look-up.
struct snapshot {
    snapshot() = default;
    snapshot(const snapshot&) = delete;
    snapshot& operator=(const snapshot&) = delete;
    ~snapshot() { clear(); }

    /// \returns null when there is none
    copy_node* find(u32 id) const;
    /// Moves a node to the end of the top nodes.
    void put_on_top(copy_node& node);
    /// Moves a node to the end of the children of another.
    /// \returns false, and moves nothing, when that other is below it: the source has changed between two copies
    static bool put_below(copy_node& parent, copy_node& child);
    /// Drops the nodes and their order; what the application keeps here stays.
    void clear() noexcept;

    GUID source_model_id;
    u32 user_value = 0;
    std::vector<u32> type_order;
    node_list top_nodes;
    std::vector<u32> user_ids;
    std::map<u32, copy_node*> nodes_by_id; ///< all nodes; of two with one id the first
};

/// Appends a snapshot: docs/snapshot_format.md tells the fields.
/// \returns false when the stream has failed, and for values that no reader could make: too deep ones, null ones, and
///          those of a kind without a code
bool write_snapshot(std::ostream& out, const snapshot& from);

/// Replaces what is in `into` by what write_snapshot() wrote; the user ids read are appended to those that are there.
/// \returns false for what ends early or tells what cannot be: then there are no nodes, and the rest is as before
/// \throws  what the stream throws; then as well
bool read_snapshot(std::istream& in, snapshot& into);

} // namespace kelm
