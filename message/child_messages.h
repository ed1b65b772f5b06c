// The messages of children and owners.
// `object()` is the owner, but of owner_set_message the object whose owner changes.
#pragma once

#include "message/moved_message.h"
#include "message/reversible.h"

#include <kelm/structure_messages.h>

namespace kelm {

/// Shared by a child that came and one that went: who, and its place in the run of its type.
template <class Derived, class Face, u32 Type>
class placed_child_message : public Face, public reversible<Derived> {
public:
    static constexpr bool keeps_undone = false;
    placed_child_message(silent_edit* owner, kelm::object* child, std::size_t pos)
        : reversible<Derived>(Type, owner), pos_(static_cast<u32>(pos)), child_(child) {}

    kelm::object* child() const final { return child_; }
    u32 pos() const final { return pos_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("child_id", self.child_);
        archive.number("pos", self.pos_);
    }

protected:
    void put_in() {
        if (child_ && pos_ != npos32) this->edit().insert_child(*child_, pos_); // npos32: it stood in no list
    }
    void take_out() {
        if (child_) this->edit().take_child(*child_);
    }

private:
    u32 pos_;
    kelm::object* child_;
};

/// A child came.
class child_add_message_impl final
    : public placed_child_message<child_add_message_impl, child_add_message, message_type::child_add> {
public:
    using placed_child_message::placed_child_message;

    std::string& to_string(std::string& out) const override;
    void forward() { put_in(); }
    void backward() { take_out(); }
    void inverse();
};

/// A child went.
class child_remove_message_impl final
    : public placed_child_message<child_remove_message_impl, child_remove_message,
                                  message_type::child_remove> {
public:
    using placed_child_message::placed_child_message;

    std::string& to_string(std::string& out) const override;
    void forward() { take_out(); }
    void backward() { put_in(); }
    void inverse();
};

/// A child is about to be deleted.
class child_pre_remove_message_impl final : public child_pre_remove_message,
                                            public recorded<child_pre_remove_message_impl> {
public:
    child_pre_remove_message_impl(silent_edit* owner, kelm::object* child)
        : recorded(message_type::child_pre_remove, owner), child_(child) {}

    kelm::object* child() const override { return child_; }
    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override { return true; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("child_id", self.child_);
    }

private:
    kelm::object* child_;
};

/// A child changed its place.
class child_order_message_impl final
    : public moved_message<child_order_message_impl, child_order_message,
                           reversible<child_order_message_impl>, message_type::child_order> {
public:
    static constexpr bool keeps_undone = false;
    static constexpr const char* who_field = "child_id";
    static constexpr const char* new_pos_field = "new_pos";
    using moved_message::moved_message;

    kelm::object* child() const override { return who(); }
    std::string& to_string(std::string& out) const override;
    void move(kelm::object& child, u32 place) { edit().move_child(child, place); }
};

/// An object changed its owner; the messages of the two child lists stand before it.
class owner_set_message_impl final : public owner_set_message, public reversible<owner_set_message_impl> {
public:
    static constexpr bool keeps_undone = false;
    owner_set_message_impl(silent_edit* about, kelm::object* new_owner, kelm::object* old_owner)
        : reversible(message_type::owner_set, about), new_owner_(new_owner), old_owner_(old_owner) {}

    kelm::object* new_owner() const override { return new_owner_; }
    kelm::object* old_owner() const override { return old_owner_; }
    std::string& to_string(std::string& out) const override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("owner_id", self.new_owner_);
        archive.object_id("old_owner", self.old_owner_);
    }

    void forward() {} // the child_add_message before it has made the change
    void backward() { edit().set_owner_field(old_owner_); }
    void inverse() { tell_inverse<owner_set_message_impl>(&edit(), old_owner_, new_owner_); }

private:
    kelm::object* new_owner_;
    kelm::object* old_owner_;
};

} // namespace kelm
