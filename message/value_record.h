// The stored form of one value of a message, and where a value that several hold is written.
// Which values a message has is told by its own fields.
#pragma once

#include "framework/field_archives.h"
#include "message/format_version.h"
#include "message/message_impl.h"
#include "message/value_custody.h"

#include <kelm/io_references.h>

#include <memory>
#include <vector>

namespace kelm {

/// What the fields of messages need beside the form that they are written in.
struct write_context {
    const value_position_map& positions;
    bool for_replay;
    const kelm::object* about; ///< null for a message whose object is gone
};

/// \returns the stamp that streams of a model get
format_version version_of(kelm::model& of);

/// What the fields of messages need beside the form that they are read from.
struct read_context {
    std::vector<message*>& earlier;
    kelm::model* model;
    io_reference_manager& references;
    value_fixup_map& fixups;
    format_version version;

    /// \returns null for 0, and for an id that nobody has
    kelm::object* object(u32 id) const;
    kelm::meta_object* meta_type(u32 id) const;
};

/// \returns the newest begin of a transaction of that id among the messages read so far; null when there is none
message* find_newest_begin(u32 id, const read_context& from);

/// Where a reader finds a value that the message does not own.
struct value_place {
    int index = 0;           ///< which value of the message
    kelm::object* source;    ///< the object that may store it; null when it is gone
    u32 property_id = 0;     ///< the property of `source`
    u32 sub_index = npos32;  ///< the element of its vector; npos32 for the whole value
    bool is_element = false; ///< an element is meant: npos32 then is none, not the whole value
};

/// \returns whether a reader could make a box of the kind
bool is_storable(const abstract_property& value);
/// \returns what the object itself holds at the place; null when it holds nothing there
abstract_property* held_by_source(const value_place& where);
/// Marks the references from `first` on as those of values of messages: filling them links nothing back.
void mark_as_of_message(io_reference_manager& references, std::size_t first);

/// Writes one value: present; msg_owned; then, of an owned one, its data type and the value, else msg_index and, unless
/// that is npos32, prop_index and prop_sub_index.
/// \param value  null is not present
/// \param owned  whether the log has to hold the value itself; else it is told where the reader finds it
/// \param id     of the property that the value is of
/// A value of a kind that no reader could make fails the archive and writes nothing.
template <class Archive>
void write_message_value(const abstract_property* value, bool owned, u32 id, Archive& archive,
                         const value_position_map& positions) {
    if (value && owned && !is_storable(*value)) return archive.fail();
    archive.present("msg_owned", value != nullptr);
    if (!value) return;
    archive.flag("msg_owned", owned);
    if (owned) return archive.stored_value(value, id);
    const auto found = positions.find(value);
    if (found == positions.end()) return archive.number("msg_index", npos32);
    archive.number("msg_index", found->second.msg_index);
    archive.numbers("prop_index", found->second.prop_index, "prop_sub_index", found->second.prop_sub_index);
}

/// Reads what write_message_value() wrote.
/// \param out   keeps what it has when nothing is present, or the value cannot be found now
/// \param self  the message that is read: another message's value reaches it by way of the fixups
template <class Archive>
void read_message_value(value_custody& out, message& self, const value_place& where, Archive& archive,
                        read_context& from) {
    if (!archive.present("msg_owned")) return;
    bool owned = false;
    archive.flag("msg_owned", owned);
    if (!archive.good()) return;
    if (owned) {
        std::unique_ptr<abstract_property> value;
        const std::size_t first = from.references.references.size();
        archive.stored_value(value, where.property_id, value_sink{&from.references.references, where.source});
        mark_as_of_message(from.references, first);
        if (value) out.take_back(std::move(value));
        return;
    }
    value_position position;
    archive.number("msg_index", position.msg_index);
    if (!archive.good()) return;
    if (position.msg_index == npos32) {
        if (abstract_property* const found = held_by_source(where)) out.borrow(found);
        return;
    }
    archive.numbers("prop_index", position.prop_index, "prop_sub_index", position.prop_sub_index);
    if (archive.good()) from.fixups[{&self, where.index}] = position;
}

/// Enters a value that the message `msg_index` owns, as its value `prop_index`, and each element of a vector.
/// Does nothing for null, and for a value that is there already.
void register_value(const abstract_property* value, value_position_map& positions, u32 msg_index,
                    u32 prop_index);

/// \returns for -1 the value itself, else that element of a vector; null when there is none
abstract_property* resolve_value(abstract_property* value, int sub_index);

/// \param index  may be null: then each element is looked at
/// \returns the first element of an object's own vector that equals `value`; npos32 when there is none
u32 own_element_position(kelm::object* holder, u32 id, const abstract_property* value, element_index* index);

} // namespace kelm
