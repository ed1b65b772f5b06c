// What a snapshot holds, read field by field from what it is written as: what tests look at.
// The library's own reader has no part in it, so that the two can differ.
#pragma once

#include "tests/support/world.h"

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace kelm::test {

struct snapshot_node {
    u32 type = 0;
    u32 id = 0;
    u32 owner_id = 0;
    u32 position = 0;
    bool selected = false;
    std::map<u32, std::string> properties; ///< texts; a reference is "->" with the source id
    std::vector<snapshot_node> children;
    std::vector<u32> inherits_from;
    std::map<u32, std::string> extra_properties;
    std::vector<u32> not_inheritable;

    /// \returns the name in quotes that is stored with it, without them; "#id" where none is
    std::string name() const {
        const auto found = properties.find(props::name);
        return found == properties.end() ? "#" + std::to_string(id)
                                         : found->second.substr(1, found->second.size() - 2);
    }
};

struct snapshot {
    std::string identity; ///< sixteen bytes
    u32 user_value = 0;
    std::vector<u32> type_order;
    std::vector<snapshot_node> top_nodes;
    std::vector<u32> user_ids;
};

/// Reads what is known to be sound, and not deep.
class snapshot_fields {
public:
    explicit snapshot_fields(const std::string& bytes) : in_(bytes) {}

    snapshot whole() {
        snapshot out;
        out.identity.resize(16);
        in_.read(out.identity.data(), 16);
        out.user_value = word();
        out.type_order = words();
        out.top_nodes = nodes();
        out.user_ids = words();
        if (!in_ || in_.peek() != std::istringstream::traits_type::eof())
            throw std::runtime_error("no snapshot, or more than one");
        return out;
    }

private:
    u32 word() {
        u32 value = 0;
        for (unsigned shift = 0; shift != 32; shift += 8)
            value |= static_cast<u32>(in_.get() & 0xFF) << shift;
        return in_ ? value : 0;
    }
    std::vector<u32> words() {
        std::vector<u32> out;
        for (u32 left = word(); left != 0; --left) out.push_back(word());
        return out;
    }
    std::vector<snapshot_node> nodes() {
        std::vector<snapshot_node> out;
        for (u32 left = word(); left != 0; --left) out.push_back(node());
        return out;
    }
    snapshot_node node() {
        snapshot_node out;
        for (u32* each : {&out.type, &out.id, &out.owner_id, &out.position}) *each = word();
        out.selected = in_.get() != 0;
        out.properties = values();
        out.children = nodes();
        out.inherits_from = words();
        out.extra_properties = values();
        out.not_inheritable = words();
        return out;
    }
    std::map<u32, std::string> values() {
        std::map<u32, std::string> out;
        for (u32 left = word(); left != 0; --left) {
            const u32 id = word();
            out[id] = value();
        }
        return out;
    }
    std::string value() {
        const u32 kind = word();
        if (kind == data_type::object_reference) return "->" + std::to_string(word());
        if (kind == data_type::vector) {
            std::string out = "[";
            for (u32 left = word(); left != 0; --left) out += value() + "|";
            return out + "]";
        }
        const std::unique_ptr<abstract_property> made{framework::instance().create_value(kind)};
        if (!made) throw std::runtime_error("a value of no kind");
        std::vector<reference_record> none;
        made->read(in_, none, nullptr);
        return "'" + made->to_string() + "'";
    }

    std::istringstream in_;
};

inline std::string bytes_of(const copier& what) {
    std::ostringstream out;
    EXPECT_TRUE(what.write(out));
    return out.str();
}

inline snapshot contents_of(const copier& what) { return snapshot_fields{bytes_of(what)}.whole(); }

/// \returns the names of nodes in order, a star before the selected ones, and children in parentheses
inline std::string shape_of(const std::vector<snapshot_node>& nodes) {
    std::string out;
    for (const snapshot_node& each : nodes) {
        out += (out.empty() ? "" : " ") + std::string(each.selected ? "*" : "") + each.name();
        if (!each.children.empty()) out += "(" + shape_of(each.children) + ")";
    }
    return out;
}
inline std::string shape_of(const copier& what) { return shape_of(contents_of(what).top_nodes); }

/// \returns the node of a source id, wherever it is; null when there is none
inline const snapshot_node* find_node(const std::vector<snapshot_node>& nodes, u32 id) {
    for (const snapshot_node& each : nodes) {
        if (each.id == id) return &each;
        if (const snapshot_node* const below = find_node(each.children, id)) return below;
    }
    return nullptr;
}

} // namespace kelm::test
