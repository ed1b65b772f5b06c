// A model that is written and read again.
// What a stream has in it, byte for byte, is told by the tests.
#pragma once

#include "tests/support/stored_fields.h"
#include "tests/support/world.h"

#include <sstream>
#include <string>

namespace kelm::test {

/// The version that tests write: the newest form of everything.
inline constexpr u32 newest_version = 8;

class stream_world : public world {
protected:
    stream_world() { model->meta_model()->set_version(newest_version); }
    ~stream_world() override { close(); }

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
    /// A fresh model that nothing has been read into.
    void make_copy(u32 version = newest_version) {
        close();
        copy = model_of(fw.create_object(type_id::model, nullptr));
        copy->meta_model()->set_version(version);
    }
    object* copied(const object* original) const { return copy->find_object(original->id()); }

    kelm::model* copy = nullptr;

private:
    void close() {
        if (!copy) return;
        copy->rollback_transaction_all();
        fw.delete_object(copy->as_object());
        fw.set_in_semantic(false);
        copy = nullptr;
    }
    static kelm::model* model_of(object* root_object) { return root_object->model(); }
};

} // namespace kelm::test
