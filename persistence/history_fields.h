// The small records of a log: its counts, and what stands before each deleted object and each message.
// The fields of a message are its own, those of an object are object_record.
#pragma once

#include <kelm/types.h>

namespace kelm {

/// In front of a log.
struct history_counts {
    u32 last_transaction = 0;
    u32 executed = 0;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.attribute("last_tran_id", self.last_transaction);
        archive.attribute("trans_executed", self.executed);
    }
};

/// In front of the record of a deleted object.
struct deleted_frame {
    u32 owner = 0;
    u32 type = 0;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.number("parent_id", self.owner);
        archive.attribute("type", self.type);
    }
};

/// In front of a message.
struct message_frame {
    u32 code = 0;
    u32 object_id = 0;
    bool user_created = false;

    /// \param tells_user  whether a stream has the last field; a document may have it always
    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive, bool tells_user) {
        archive.number("type", self.code);
        archive.number("obj_id", self.object_id);
        if (Archive::is_document || tells_user) archive.flag("user_created", self.user_created);
    }
};

} // namespace kelm
