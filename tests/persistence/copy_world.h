// A model and a copy of it that is read back.
// In which form it is written and read is told by stream_world and document_world.
#pragma once

#include "tests/support/world.h"

namespace kelm::test {

/// The version that tests write: the newest form of everything.
inline constexpr u32 newest_version = 8;

class copy_world : public world {
protected:
    copy_world() { model->meta_model()->set_version(newest_version); }
    ~copy_world() override { close(); }

    /// A fresh model that nothing has been read into; it takes the place of the one read before.
    void make_copy(u32 version = newest_version, u32 minor_version = 0) {
        close();
        copy = fw.create_object(type_id::model, nullptr)->model();
        copy->meta_model()->set_version(version);
        copy->meta_model()->set_minor_version(minor_version);
    }
    object* copied(const object* original) const { return copied(original->id()); }
    object* copied(u32 id) const { return copy->find_object(id); }

    kelm::model* copy = nullptr;

private:
    void close() {
        if (!copy) return;
        copy->rollback_transaction_all();
        fw.delete_object(copy->as_object());
        fw.set_in_semantic(false);
        copy = nullptr;
    }
};

} // namespace kelm::test
