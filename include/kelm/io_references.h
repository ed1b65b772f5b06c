// What a reader or writer of streams cannot settle before everything has been read or entered.
// Plain records: resolving them is the business of whoever reads a whole model.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <map>
#include <utility>
#include <vector>

namespace kelm {

template <class T>
class property;

/// One object reference that waits for its target.
struct reference_record {
    property<object*>* value = nullptr; ///< borrowed: the box to fill
    u32 target_id = npos32;             ///< npos32 stands for a null reference
    object* holder = nullptr;           ///< the object that the value belongs to; may be null
    bool from_message = false;          ///< true for values of messages: filling them links nothing back
};

/// Everything that waits while a stream is being read.  It owns the lists of its two maps.
struct KELM_EXPORT io_reference_manager {
    io_reference_manager() = default;
    io_reference_manager(const io_reference_manager&) = delete;
    io_reference_manager& operator=(const io_reference_manager&) = delete;
    ~io_reference_manager() { clear(); }

    /// Forgets everything.
    void clear() {
        for (auto* const lists : {&inherits, &observers}) {
            for (const auto& [id, list] : *lists) delete list;
            lists->clear();
        }
        references.clear();
    }

    std::map<u32, std::vector<u32>*>
        inherits; ///< object id to the ids of its bases, in order; lists are owned
    std::map<u32, std::vector<u32>*> observers; ///< object id to the ids of its observers; lists are owned
    std::vector<reference_record> references;   ///< in the order of reading
    /// The newest begin of a transaction of each id, as far as the log has been read; borrowed.  Whoever
    /// reads a whole log may supply it; with null, each end searches the messages read before it.
    const std::map<u32, message*>* newest_begins = nullptr;
};

/// Fills the references that have a target in `in`, and links those of objects; links bases and observers.
/// What has no counterpart stays null, or is left out.  The records stay.
/// \returns true
KELM_EXPORT bool resolve_refs_post_read(model* in, io_reference_manager& references);

/// Where the log of a stream keeps a value that several messages share.
struct value_position {
    u32 msg_index = npos32;      ///< among the messages written; npos32: no message has it, the object does
    u32 prop_index = npos32;     ///< which of that message's values
    u32 prop_sub_index = npos32; ///< element of a vector; npos32 for the whole value

    bool operator==(const value_position&) const = default;
};

class element_index;

/// The writer's side: values that messages own, by identity.  The boxes are borrowed, and only compared.
struct value_position_map : std::map<const abstract_property*, value_position> {
    using map::map;

    // What a writer of a whole log knows beside them; both are borrowed, and may be null.
    kelm::model* model = nullptr; ///< whose log it is: its version says which fields are written; null: all
    element_index* elements = nullptr; ///< finds elements of lists; null: each message searches for its own
};

/// The reader's side: (message, value index) of a value that another message will supply.
using value_fixup_map = std::map<std::pair<message*, int>, value_position>;

} // namespace kelm
