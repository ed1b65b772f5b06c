// The messages of bases.
// `object()` is the object that inherits; a change of its list also changes what it inherits, which is told with it.
#pragma once

#include "message/recorded.h"

#include <kelm/structure_messages.h>

namespace kelm {

/// Supplies redo() and undo() from Derived's forward(), backward() and inverse(), and tells how the inherited values
/// differ behind each.  Derived::loses_forward and loses_backward say where values that are gone are told as well.
template <class Derived>
class relinking : public recorded<Derived> {
public:
    using recorded<Derived>::recorded;

    bool redo() final {
        with_values(Derived::loses_forward, [this] {
            self().forward();
            this->tell();
        });
        return true;
    }
    bool undo() final {
        with_values(Derived::loses_backward, [this] {
            self().backward();
            self().inverse();
        });
        return true;
    }

private:
    Derived& self() { return static_cast<Derived&>(*this); }

    template <class Change>
    void with_values(bool with_deletes, Change&& change) {
        if (this->is_lost()) return;
        const inherited_values before = this->edit().inherited_now();
        change();
        this->edit().tell_inherited_changes(before, with_deletes, false);
    }
};

/// A base came, as the last.
class inherits_add_message_impl final : public relinking<inherits_add_message_impl>,
                                        public inherits_add_message {
public:
    static constexpr bool loses_forward = false;
    static constexpr bool loses_backward = true;
    /// \param is_repeated  the base was in the list before: undo and redo leave it there, and tell all the same
    inherits_add_message_impl(silent_edit* about, kelm::object* base, std::size_t pos,
                              bool is_repeated = false)
        : relinking(message_type::inherits_add, about),
          pos_(static_cast<u32>(pos)),
          is_repeated_(is_repeated),
          base_(base) {}

    kelm::object* inherits_from() const override { return base_; }
    std::string& to_string(std::string& out) const override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("inherits_from", self.base_);
        archive.number("pos", self.pos_);
    }

    void forward();
    void backward();
    void inverse();

private:
    u32 pos_;
    bool is_repeated_;
    kelm::object* base_;
};

/// A base went.
class inherits_cancel_message_impl final : public relinking<inherits_cancel_message_impl>,
                                           public inherits_cancel_message {
public:
    static constexpr bool loses_forward = true;
    static constexpr bool loses_backward = false;
    inherits_cancel_message_impl(silent_edit* about, kelm::object* base, std::size_t pos)
        : relinking(message_type::inherits_cancel, about), pos_(static_cast<u32>(pos)), base_(base) {}

    kelm::object* inherits_from() const override { return base_; }
    std::string& to_string(std::string& out) const override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("inherits_from", self.base_);
        archive.number("pos", self.pos_);
    }

    void forward();
    void backward();
    void inverse();

private:
    u32 pos_;
    kelm::object* base_;
};

/// A base came, at a place.
class inherits_insert_message_impl final : public relinking<inherits_insert_message_impl>,
                                           public inherits_insert_message {
public:
    static constexpr bool loses_forward = false;
    static constexpr bool loses_backward = true;
    inherits_insert_message_impl(silent_edit* about, kelm::object* base, std::size_t pos)
        : relinking(message_type::inherits_insert, about), pos_(static_cast<u32>(pos)), base_(base) {}

    kelm::object* inherits_from() const override { return base_; }
    u32 pos() const override { return pos_; }
    std::string& to_string(std::string& out) const override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("inherits_from", self.base_);
        archive.number("pos", self.pos_);
    }

    void forward();
    void backward();
    void inverse();

private:
    u32 pos_;
    kelm::object* base_;
};

/// A base changed its place.
class inherits_from_order_message_impl final : public relinking<inherits_from_order_message_impl>,
                                               public inherits_from_order_message {
public:
    static constexpr bool loses_forward = false;
    static constexpr bool loses_backward = false;
    inherits_from_order_message_impl(silent_edit* about, kelm::object* base, std::size_t new_pos,
                                     std::size_t old_pos)
        : relinking(message_type::inherits_from_order, about),
          new_pos_(static_cast<u32>(new_pos)),
          base_(base),
          old_pos_(static_cast<u32>(old_pos)) {}

    kelm::object* inherits_from() const override { return base_; }
    u32 new_pos() const override { return new_pos_; }
    u32 old_pos() const override { return old_pos_; }
    std::string& to_string(std::string& out) const override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("inherits_from", self.base_);
        archive.number("pos", self.new_pos_);
        archive.number("old_pos", self.old_pos_);
    }

    void forward();
    void backward();
    void inverse();

private:
    u32 new_pos_;
    kelm::object* base_;
    u32 old_pos_;
};

/// A base took the place of another.
class inherits_replace_message_impl final : public relinking<inherits_replace_message_impl>,
                                            public inherits_replace_message {
public:
    // Kept: undo and redo do not tell of values that go with the former base, though the first run does.
    static constexpr bool loses_forward = false;
    static constexpr bool loses_backward = false;
    inherits_replace_message_impl(silent_edit* about, kelm::object* base, kelm::object* former,
                                  std::size_t pos)
        : relinking(message_type::inherits_replace, about),
          pos_(static_cast<u32>(pos)),
          base_(base),
          former_(former) {}

    kelm::object* inherits_from() const override { return base_; }
    kelm::object* old_inherits_from() const override { return former_; }
    std::string& to_string(std::string& out) const override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("inherits_from", self.base_);
        archive.object_id("old_inherits_from", self.former_);
        archive.number("pos", self.pos_);
    }

    void forward();
    void backward();
    void inverse();

private:
    u32 pos_;
    kelm::object* base_;
    kelm::object* former_;
};

} // namespace kelm
