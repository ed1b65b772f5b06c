// What the messages of a child and of a base that changed their place have in common.
// Whom a change of place concerns besides the observers is told by the base class.
#pragma once

#include "message/message_impl.h"

namespace kelm {

/// Who moved among those of the message's object, from where to where.  Base supplies redo() and undo() from what is
/// here.  Derived::move(who, to) makes the change; Derived::who_field and Derived::new_pos_field are names in
/// documents.
template <class Derived, class Face, class Base, u32 Type>
class moved_message : public Face, public Base {
public:
    moved_message(silent_edit* about, kelm::object* who, std::size_t new_pos, std::size_t old_pos)
        : Base(Type, about),
          new_pos_(static_cast<u32>(new_pos)),
          who_(who),
          old_pos_(static_cast<u32>(old_pos)) {}

    u32 new_pos() const final { return new_pos_; }
    u32 old_pos() const final { return old_pos_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.object_id(Derived::who_field, self.who_);
        archive.number(Derived::new_pos_field, self.new_pos_);
        archive.number("old_pos", self.old_pos_);
    }

    void forward() { move_to(new_pos_); }
    void backward() { move_to(old_pos_); }
    void inverse() {
        this->template tell_inverse<Derived>(&this->edit(), who_, std::size_t{old_pos_},
                                             std::size_t{new_pos_});
    }

protected:
    /// \returns null when a reader did not find the object
    kelm::object* who() const { return who_; }

private:
    void move_to(u32 place) {
        if (who_) static_cast<Derived&>(*this).move(*who_, place);
    }

    u32 new_pos_;
    kelm::object* who_;
    u32 old_pos_;
};

} // namespace kelm
