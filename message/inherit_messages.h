// The messages of bases.
// `object()` is the object that inherits; a change of its list also changes what it inherits, which is told with it.
#pragma once

#include "message/moved_message.h"
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
        telling([&] { this->edit().tell_inherited_changes(before, with_deletes, false); });
    }
};

/// Shared by a base that came and one that went: who, and its place in the list.
template <class Derived, class Face, u32 Type>
class placed_base_message : public Face, public relinking<Derived> {
public:
    placed_base_message(silent_edit* about, kelm::object* base, std::size_t pos)
        : relinking<Derived>(Type, about), place_(static_cast<u32>(pos)), base_(base) {}

    kelm::object* inherits_from() const final { return base_; }
    u32 place() const { return place_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id("inherits_from", self.base_);
        archive.number("pos", self.place_);
    }

protected:
    void put_in() {
        if (base_) this->edit().insert_base(*base_, place_);
    }
    void take_out() {
        if (base_) this->edit().take_base(*base_, place_);
    }

private:
    u32 place_;
    kelm::object* base_;
};

/// A base came, as the last.
class inherits_add_message_impl final
    : public placed_base_message<inherits_add_message_impl, inherits_add_message,
                                 message_type::inherits_add> {
public:
    static constexpr bool loses_forward = false;
    static constexpr bool loses_backward = true;
    /// \param is_repeated  the base was in the list before: undo and redo leave it there, and tell all the same
    inherits_add_message_impl(silent_edit* about, kelm::object* base, std::size_t pos,
                              bool is_repeated = false)
        : placed_base_message(about, base, pos) {
        set_mark(is_repeated);
    }

    std::string& to_string(std::string& out) const override;
    void forward() {
        if (!is_repeated()) put_in();
    }
    void backward() {
        if (!is_repeated()) take_out();
    }
    void inverse();

private:
    bool is_repeated() const { return mark(); }
};

/// A base went.
class inherits_cancel_message_impl final
    : public placed_base_message<inherits_cancel_message_impl, inherits_cancel_message,
                                 message_type::inherits_cancel> {
public:
    static constexpr bool loses_forward = true;
    static constexpr bool loses_backward = false;
    using placed_base_message::placed_base_message;

    std::string& to_string(std::string& out) const override;
    void forward() { take_out(); }
    void backward() { put_in(); }
    void inverse();
};

/// A base came, at a place.
class inherits_insert_message_impl final
    : public placed_base_message<inherits_insert_message_impl, inherits_insert_message,
                                 message_type::inherits_insert> {
public:
    static constexpr bool loses_forward = false;
    static constexpr bool loses_backward = true;
    using placed_base_message::placed_base_message;

    u32 pos() const override { return place(); }
    std::string& to_string(std::string& out) const override;
    void forward() { put_in(); }
    void backward() { take_out(); }
    void inverse();
};

/// A base changed its place.
class inherits_from_order_message_impl final
    : public moved_message<inherits_from_order_message_impl, inherits_from_order_message,
                           relinking<inherits_from_order_message_impl>, message_type::inherits_from_order> {
public:
    static constexpr bool loses_forward = false;
    static constexpr bool loses_backward = false;
    static constexpr const char* who_field = "inherits_from";
    static constexpr const char* new_pos_field = "pos";
    using moved_message::moved_message;

    kelm::object* inherits_from() const override { return who(); }
    std::string& to_string(std::string& out) const override;
    void move(kelm::object& base, u32 place) { edit().move_base(base, place); }
};

/// A base took the place of another.
class inherits_replace_message_impl final : public inherits_replace_message,
                                            public relinking<inherits_replace_message_impl> {
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
    u32 place() const { return pos_; }
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
