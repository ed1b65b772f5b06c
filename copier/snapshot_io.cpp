// The stored form of a snapshot, both ways.  A tree may be as deep as the source was, so neither way recurses along it.
// What a kind of value writes is its own business.
#include "copier/snapshot.h"

#include "framework/data_types.h"
#include "util/bytes.h"

#include <algorithm>
#include <istream>
#include <limits>
#include <ostream>

namespace kelm {

namespace {

void put_count(std::ostream& out, std::size_t count) {
    if (count > std::numeric_limits<u32>::max()) return out.setstate(std::ios_base::failbit);
    put_u32(out, static_cast<u32>(count));
}

void put_ids(std::ostream& out, const std::vector<u32>& ids) {
    put_count(out, ids.size());
    for (const u32 id : ids) put_u32(out, id);
}

/// \returns a code that a reader can make the value of; 0 when there is none
u32 stored_code(const copy_value& value) {
    return value.is_list() || value.is_reference() ? value.kind() : data_types::stream_code_of(value.plain());
}

void put_value(std::ostream& out, const copy_value& value) {
    const u32 code = stored_code(value);
    // What nobody could read again would make the whole unreadable.
    if (code == data_type::none) return out.setstate(std::ios_base::failbit);
    put_u32(out, code);
    if (value.is_list()) {
        const nested_level level{out};
        if (!out) return;
        put_count(out, value.elements().size());
        for (const copy_value& each : value.elements()) put_value(out, each);
    } else if (value.is_reference()) {
        put_u32(out, value.target());
    } else if (value.plain()) {
        value.plain()->write(out);
    }
}

void put_values(std::ostream& out, const property_copies& values) {
    put_count(out, values.size());
    for (const property_copy& each : values) {
        put_u32(out, each.id);
        put_value(out, each.value);
    }
}

/// Counts that a stream tells are believed one entry at a time: nothing is reserved by them.
std::vector<u32> get_ids(std::istream& in) {
    std::vector<u32> ids;
    for (u32 left = get_u32(in); left != 0 && in; --left) ids.push_back(get_u32(in));
    return ids;
}

copy_value::box get_box(std::istream& in, u32 kind) {
    copy_value::box value{in ? data_types::create_value(kind) : nullptr};
    if (!value) {
        in.setstate(std::ios_base::failbit);
        return value;
    }
    std::vector<reference_record>
        references; // a kind that refers to objects finds none: a snapshot knows of none
    value->read(in, references, nullptr);
    return value;
}

copy_value get_value(std::istream& in) {
    const u32 kind = get_u32(in);
    if (kind == data_type::object_reference) return copy_value::reference_to(get_u32(in));
    if (kind != data_type::vector) return {kind, get_box(in, kind)};
    const nested_level level{in};
    copy_value::list elements;
    for (u32 left = get_u32(in); left != 0 && in; --left) elements.push_back(get_value(in));
    return copy_value{std::move(elements)};
}

property_copies get_values(std::istream& in) {
    property_copies values;
    for (u32 left = get_u32(in); left != 0 && in; --left) {
        const u32 id = get_u32(in);
        values.push_back({id, get_value(in)});
    }
    constexpr auto id_of = &property_copy::id;
    if (!std::ranges::is_sorted(values, {}, id_of)) std::ranges::stable_sort(values, {}, id_of);
    if (std::ranges::adjacent_find(values, {}, id_of) != values.end()) in.setstate(std::ios_base::failbit);
    return values;
}

/// What comes before the children of a node, and what comes behind them.
class node_writer {
public:
    explicit node_writer(std::ostream& out) : out_(out) {}

    void write(const node_list& top_nodes) {
        begin(top_nodes, nullptr);
        while (!levels_.empty() && out_) {
            level& at = levels_.back();
            if (at.next == at.end) {
                if (at.of) put_rest(*at.of);
                levels_.pop_back();
                continue;
            }
            const copy_node& node = *at.next++;
            put_start(node);
            begin(node.children, &node);
        }
    }

private:
    struct level {
        const copy_node* of; // null for the top nodes
        node_list::const_iterator next;
        node_list::const_iterator end;
    };

    void begin(const node_list& nodes, const copy_node* of) {
        put_count(out_, nodes.size());
        levels_.push_back({of, nodes.begin(), nodes.end()});
    }
    void put_start(const copy_node& node) {
        put_u32(out_, node.type);
        put_u32(out_, node.id);
        put_u32(out_, node.owner_id);
        put_u32(out_, node.position);
        put_bool(out_, node.selected);
        put_values(out_, node.properties);
    }
    void put_rest(const copy_node& node) {
        put_ids(out_, node.inherits_from);
        put_values(out_, node.extra_properties);
        put_ids(out_, node.not_inheritable);
    }

    std::ostream& out_;
    std::vector<level> levels_;
};

class node_reader {
public:
    node_reader(std::istream& in, snapshot& into) : in_(in), into_(into) {}

    void read() {
        begin(into_.top_nodes, nullptr);
        while (!levels_.empty() && in_) {
            level& at = levels_.back();
            if (at.left == 0) {
                if (at.of) get_rest(*at.of);
                levels_.pop_back();
                continue;
            }
            --at.left;
            copy_node& node = add_node(*at.nodes, at.of);
            get_start(node);
            begin(node.children, &node);
        }
    }

private:
    struct level {
        copy_node* of; // null for the top nodes
        node_list* nodes;
        u32 left;
    };

    void begin(node_list& nodes, copy_node* of) { levels_.push_back({of, &nodes, get_u32(in_)}); }
    void get_start(copy_node& node) {
        node.type = get_u32(in_);
        node.id = get_u32(in_);
        node.owner_id = get_u32(in_);
        node.position = get_u32(in_);
        node.selected = get_bool(in_);
        node.properties = get_values(in_);
        into_.nodes_by_id.emplace(node.id, &node);
    }
    void get_rest(copy_node& node) {
        node.inherits_from = get_ids(in_);
        node.extra_properties = get_values(in_);
        node.not_inheritable = get_ids(in_);
    }

    std::istream& in_;
    snapshot& into_;
    std::vector<level> levels_;
};

bool read_all(std::istream& in, snapshot& into) {
    const GUID source = get_guid(in);
    const u32 user_value = get_u32(in);
    std::vector<u32> type_order = get_ids(in);
    node_reader{in, into}.read();
    const std::vector<u32> user_ids = get_ids(in);
    if (!in) return false;
    into.user_ids.insert(into.user_ids.end(), user_ids.begin(), user_ids.end());
    into.source_model_id = source;
    into.user_value = user_value;
    into.type_order = std::move(type_order);
    return true;
}

} // namespace

bool write_snapshot(std::ostream& out, const snapshot& from) {
    put_guid(out, from.source_model_id);
    put_u32(out, from.user_value);
    put_ids(out, from.type_order);
    node_writer{out}.write(from.top_nodes);
    put_ids(out, from.user_ids);
    return !out.fail();
}

bool read_snapshot(std::istream& in, snapshot& into) {
    into.clear();
    bool is_whole = false;
    try {
        is_whole = read_all(in, into);
    } catch (...) {
        into.clear();
        throw;
    }
    if (!is_whole) into.clear();
    return is_whole;
}

} // namespace kelm
