// A model whose messages are written and read back one by one.
// What a whole log looks like is the business of persistence.
#pragma once

#include "message/message_table.h"
#include "tests/support/stored_fields.h"
#include "tests/support/world.h"

#include <kelm/message.h>

#include <memory>
#include <sstream>
#include <string>

namespace kelm::test {

class record_world : public world {
protected:
    /// Runs a change in a transaction of its own.  \returns the message `from_end` before the end of the transaction
    template <class Change>
    message_impl& after(Change&& change, std::size_t from_end = 0) {
        begin();
        EXPECT_TRUE(change());
        end();
        return stored(model->message_count() - 2 - from_end);
    }
    message_impl& stored(std::size_t index) const {
        return *dynamic_cast<message_impl*>(model->message_at(index));
    }

    std::string written(const message& what, bool for_replay = false) const {
        std::ostringstream out;
        EXPECT_TRUE(what.write(&out, positions, nullptr, for_replay));
        return out.str();
    }
    /// Fills a fresh message from bytes.
    std::unique_ptr<message_impl> read(u32 code, object* about, const std::string& bytes, int version = 8,
                                       int minor_version = 0) {
        auto made = message_row_of(code)->blank(static_cast<silent_edit*>(about));
        std::istringstream in{bytes};
        EXPECT_TRUE(made->read(&in, earlier, model, &references, &fixups, nullptr, version, minor_version));
        return made;
    }
    /// Expects that reading what a message wrote and writing it again gives the same bytes.
    void expect_same_again(const message_impl& what) {
        const std::string bytes = written(what);
        const auto again = read(stored_code(what), what.object(), bytes);
        EXPECT_EQ(hex(written(*again)), hex(bytes)) << message_row_of(stored_code(what))->name;
        EXPECT_EQ(again->type(), what.type());
    }
    void expect_bytes(const message& what, const stored_fields& expected, bool for_replay = false) const {
        EXPECT_EQ(hex(written(what, for_replay)), hex(expected.bytes()));
    }

    value_position_map positions;
    std::vector<message*> earlier;
    io_reference_manager references;
    value_fixup_map fixups;
};

} // namespace kelm::test
