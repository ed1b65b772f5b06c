// The messages of objects that come and go.
// An object that is out of its model through one of them is that message's to give up.
#pragma once

#include "message/recorded.h"

#include <kelm/structure_messages.h>

namespace kelm {

/// An object was made.  Undone, the message has the object, and frees it when it goes itself.
class obj_create_message_impl final : public obj_create_message, public recorded<obj_create_message_impl> {
public:
    obj_create_message_impl(silent_edit* about, kelm::object* owner)
        : recorded(message_type::obj_create, about), owner_(owner) {}

    kelm::object* owner() const override { return owner_; }
    u32 object_type() const override { return object_type_; }
    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override;
    void release_values() override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("owner_id", self.owner_);
        archive.since(7, 13, [&] {
            if constexpr (Archive::reads)
                archive.attribute("otype", self.object_type_);
            else
                archive.attribute("otype", self.object() ? self.object()->type() : self.object_type_);
        });
        if constexpr (Archive::reads) self.keep_object();
    }

    /// The object outlives the message: code that is rolling back may still hold it, and what a stream says of it
    /// need not be all that its messages say.
    void keep_object() { set_mark(true); }

private:
    u32 object_type_ = 0;
    kelm::object* owner_;
};

/// An object is about to be deleted.
class obj_pre_delete_message_impl final : public obj_pre_delete_message,
                                          public recorded<obj_pre_delete_message_impl> {
public:
    obj_pre_delete_message_impl(silent_edit* about, kelm::object* owner)
        : recorded(message_type::obj_pre_delete, about), owner_(owner) {}

    kelm::object* owner() const override { return owner_; }
    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override { return true; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("owner_id", self.owner_);
    }

private:
    kelm::object* owner_;
};

/// An object was deleted.  Done, the message has the object, and frees it when it goes itself.
class obj_delete_message_impl final : public obj_delete_message, public recorded<obj_delete_message_impl> {
public:
    obj_delete_message_impl(silent_edit* about, kelm::object* owner)
        : recorded(message_type::obj_delete, about), owner_(owner) {}

    kelm::object* owner() const override { return owner_; }
    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override;
    void release_values() override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("owner_id", self.owner_);
        // Two messages of a stream may claim one object, or later ones name it: it stays as long as its model.
        if constexpr (Archive::reads) self.set_mark(true);
    }

private:
    kelm::object* owner_;
};

} // namespace kelm
