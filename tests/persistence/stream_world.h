// A model that is written and read again.
// What a stream has in it, byte for byte, is told by the tests.
#pragma once

#include "tests/persistence/copy_world.h"
#include "tests/support/stored_fields.h"

#include <sstream>
#include <string>

namespace kelm::test {

class stream_world : public copy_world {
protected:
    std::string saved(kelm::model& which, bool with_history = false, u32 transactions = 0) const {
        std::ostringstream out;
        EXPECT_TRUE(which.write(&out, with_history, transactions, false, nullptr));
        return out.str();
    }
    std::string saved(bool with_history = false, u32 transactions = 0) const {
        return saved(*model, with_history, transactions);
    }
    /// Reads into a fresh model, which takes the place of the one read before.  \returns what read() answered
    bool load(const std::string& bytes, u32 version = newest_version) {
        make_copy(version);
        std::istringstream in{bytes};
        return copy->read(&in, nullptr);
    }
};

} // namespace kelm::test
