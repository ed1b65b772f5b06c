// The messages of objects that come and go.
// An object that is out of its model through one of them is that message's to give up.
#pragma once

#include "message/recorded.h"

#include <kelm/structure_messages.h>

namespace kelm {

/// Shared by an object that comes and those that go: the owner, and giving up an object that is out of its model.
template <class Derived, class Face, u32 Type>
class lifetime_message : public Face, public recorded<Derived> {
public:
    lifetime_message(silent_edit* about, kelm::object* owner)
        : recorded<Derived>(Type, about), owner_(owner) {}

    kelm::object* owner() const final { return owner_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("owner_id", self.owner_);
    }

    /// The object outlives the message.
    void keep_object() { this->set_mark(true); }

protected:
    /// Frees the object.  An observer may have refused the last step: then it is still the model's.
    void give_up_object() {
        if (this->mark() || !this->object() || !is_deleted(*this->object())) return;
        this->edit().destroy();
        this->set_object(nullptr);
    }

    u32 object_type_ = 0; // of one that was made; it stands here because here it takes no room

private:
    kelm::object* owner_;
};

/// An object was made.  Undone, the message has the object, and frees it when it goes itself.
class obj_create_message_impl final
    : public lifetime_message<obj_create_message_impl, obj_create_message, message_type::obj_create> {
public:
    using lifetime_message::lifetime_message;

    u32 object_type() const override { return object_type_; }
    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override;
    void release_values() override {
        if (is_undone()) give_up_object();
    }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        lifetime_message::fields(self, archive);
        archive.since(7, 13, [&] {
            if constexpr (Archive::reads)
                archive.attribute("otype", self.object_type_);
            else
                archive.attribute("otype", self.object() ? self.object()->type() : self.object_type_);
        });
        // What a stream says of the object need not be all that its messages say.
        if constexpr (Archive::reads) self.keep_object();
    }
};

/// An object is about to be deleted.
class obj_pre_delete_message_impl final
    : public lifetime_message<obj_pre_delete_message_impl, obj_pre_delete_message,
                              message_type::obj_pre_delete> {
public:
    using lifetime_message::lifetime_message;

    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override { return true; }
};

/// An object was deleted.  Done, the message has the object, and frees it when it goes itself.
class obj_delete_message_impl final
    : public lifetime_message<obj_delete_message_impl, obj_delete_message, message_type::obj_delete> {
public:
    using lifetime_message::lifetime_message;

    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override;
    void release_values() override {
        if (!is_undone()) give_up_object();
    }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        lifetime_message::fields(self, archive);
        // Two messages of a stream may claim one object, or later ones name it: it stays as long as its model.
        if constexpr (Archive::reads) self.keep_object();
    }
};

} // namespace kelm
