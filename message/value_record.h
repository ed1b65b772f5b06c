// The stored form of one value of a message, and where a value that several hold is written.
// Which values a message has is told by its own fields.
#pragma once

#include "message/format_version.h"
#include "message/message_impl.h"
#include "message/value_custody.h"

#include <kelm/io_references.h>

#include <iosfwd>
#include <vector>

namespace kelm {

/// What the fields of messages are written to.
struct write_context {
    std::ostream& out;
    const value_position_map& positions;
    bool for_replay;
    const kelm::object* about; ///< null for a message whose object is gone
};

/// \returns the stamp that streams of a model get
format_version version_of(kelm::model& of);

/// What the fields of messages are read from, and what they are looked up in.
struct read_context {
    std::istream& in;
    std::vector<message*>& earlier;
    kelm::model* model;
    io_reference_manager& references;
    value_fixup_map& fixups;
    format_version version;
};

/// Where a reader finds a value that the message does not own.
struct value_place {
    int index = 0;           ///< which value of the message
    kelm::object* source;    ///< the object that may store it; null when it is gone
    u32 property_id = 0;     ///< the property of `source`
    u32 sub_index = npos32;  ///< the element of its vector; npos32 for the whole value
    bool is_element = false; ///< an element is meant: npos32 then is none, not the whole value
};

/// Writes one value: u8 present; u8 owned; then, of an owned one, u32 data type and the value, else u32 msg_index and,
/// unless that is npos32, u32 prop_index and u32 prop_sub_index.
/// \param value  null writes the single byte 0
/// \param owned  whether the log has to hold the value itself; else it is told where the reader finds it
/// A value of a kind that no reader could make sets failbit and writes nothing.
void write_message_value(const abstract_property* value, bool owned, write_context& to);

/// Reads what write_message_value() wrote.
/// \param out   keeps what it has when nothing is present, or the value cannot be found now
/// \param self  the message that is read: another message's value reaches it by way of the fixups
void read_message_value(value_custody& out, message& self, const value_place& where, read_context& from);

/// Enters a value that the message `msg_index` owns, as its value `prop_index`, and each element of a vector.
/// Does nothing for null, and for a value that is there already.
void register_value(const abstract_property* value, value_position_map& positions, u32 msg_index,
                    u32 prop_index);

/// \returns for -1 the value itself, else that element of a vector; null when there is none
abstract_property* resolve_value(abstract_property* value, int sub_index);

/// \returns the first element of an object's own vector that equals `value`; npos32 when there is none
u32 own_element_position(kelm::object* holder, u32 id, const abstract_property* value);

} // namespace kelm
