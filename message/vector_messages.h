// The messages of single elements of vector values.
// Elements are known by identity: what leaves the vector is what the message owns.
#pragma once

#include "message/value_messages.h"

#include <memory>

namespace kelm {

/// An element was replaced.
class property_set_vec_prop_message_impl final
    : public reversible<property_set_vec_prop_message_impl, property_change_message_impl>,
      public property_set_vec_prop_message {
public:
    static constexpr bool keeps_undone = true;
    /// \param new_value  lent: the vector holds it
    property_set_vec_prop_message_impl(silent_edit* about, std::unique_ptr<abstract_property> old_value,
                                       abstract_property* new_value, u32 id, std::size_t pos);
    /// For telling only: both elements are lent.
    property_set_vec_prop_message_impl(silent_edit* about, abstract_property* old_value,
                                       abstract_property* new_value, u32 id, std::size_t pos);

    value_ptr new_value() const override;
    value_ptr old_value() const override;
    u32 pos() const override { return pos_; }
    std::string& to_string(std::string& out) const override;
    void release_values() override;
    void register_values(value_position_map& positions, u32 index) const override;
    abstract_property* get_value(int index, int sub_index) const override;
    value_custody* custody(int index) override { return index == 0 ? &new_ : &old_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        const bool done = !self.is_undone();
        owner_fields(self, archive);
        archive.number("pos", self.pos_);
        archive.value(self.new_, archive.for_replay() || !done, self.place(0, self.pos_));
        archive.inside("old_prop", true, [&](auto& inner) { inner.value(self.old_, done, self.place(1)); });
    }

    /// \returns the former element itself, borrowed
    abstract_property* known_old_value() const { return old_.get(); }

    void forward() { swap_in(new_, old_); }
    void backward() { swap_in(old_, new_); }
    void inverse();

private:
    void swap_in(value_custody& comes, value_custody& goes);

    value_custody new_;
    value_custody old_;
    u32 pos_;
};

/// An element was inserted.
class property_insert_vec_prop_message_impl final
    : public reversible<property_insert_vec_prop_message_impl, property_change_message_impl>,
      public property_insert_vec_prop_message {
public:
    static constexpr bool keeps_undone = true;
    /// \param element  lent: the vector holds it
    property_insert_vec_prop_message_impl(silent_edit* about, abstract_property* element, u32 id,
                                          std::size_t pos);
    /// An element whose position was behind the end: the vector never held it, and the message keeps it on both
    /// sides of undo.
    property_insert_vec_prop_message_impl(silent_edit* about, std::unique_ptr<abstract_property> element,
                                          u32 id, std::size_t pos);

    value_ptr value() const override;
    u32 pos() const override { return pos_; }
    const abstract_property* raw_value() const override { return value_.get(); }
    std::string& to_string(std::string& out) const override;
    void release_values() override { value_.release(); }
    void register_values(value_position_map& positions, u32 index) const override;
    abstract_property* get_value(int index, int sub_index) const override;
    value_custody* custody(int) override { return &value_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        owner_fields(self, archive);
        archive.number("pos", self.pos_);
        u32 present = npos32;
        if constexpr (!Archive::reads)
            present = archive.present_position(self.real_owner(), self.property_type(), self.value_.get());
        archive.number("cur_pos", present);
        value_place where = self.place_in(nullptr, 0, present);
        where.is_element = true;
        archive.value(self.value_, archive.for_replay() || self.owns_value(), where);
        if constexpr (Archive::reads) self.was_put_in_ = !self.value_.holds();
    }

    void forward();
    void backward();
    void inverse();

private:
    bool owns_value() const { return is_undone() || !was_put_in_; }

    value_custody value_;
    u32 pos_;
    bool was_put_in_;
};

/// An element was taken out.
class property_delete_vec_prop_message_impl final
    : public reversible<property_delete_vec_prop_message_impl, property_change_message_impl>,
      public property_delete_vec_prop_message {
public:
    static constexpr bool keeps_undone = true;
    property_delete_vec_prop_message_impl(silent_edit* about, std::unique_ptr<abstract_property> element,
                                          u32 id, std::size_t pos);
    /// For telling only: the element is lent.
    property_delete_vec_prop_message_impl(silent_edit* about, abstract_property* element, u32 id,
                                          std::size_t pos);

    value_ptr value() const override;
    /// \returns the element itself, borrowed
    const abstract_property* raw_value() const { return value_.get(); }
    u32 pos() const override { return pos_; }
    std::string& to_string(std::string& out) const override;
    void release_values() override { value_.release(); }
    void register_values(value_position_map& positions, u32 index) const override;
    abstract_property* get_value(int, int sub_index) const override {
        return resolve_value(value_.get(), sub_index);
    }
    value_custody* custody(int) override { return &value_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        owner_fields(self, archive);
        archive.value(self.value_, !self.is_undone(), self.place(0));
        archive.number("pos", self.pos_);
    }

    void forward();
    void backward();
    void inverse();

private:
    value_custody value_;
    u32 pos_;
};

/// An element changed its place.
class element_position_vec_prop_message_impl final
    : public reversible<element_position_vec_prop_message_impl, property_change_message_impl>,
      public element_position_vec_prop_message {
public:
    static constexpr bool keeps_undone = false;
    /// \param moved  false when there was no element to move: undo and redo then only tell
    element_position_vec_prop_message_impl(silent_edit* about, u32 id, std::size_t old_pos,
                                           std::size_t new_pos, bool moved);

    u32 old_pos() const override { return old_pos_; }
    u32 new_pos() const override { return new_pos_; }
    std::string& to_string(std::string& out) const override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        owner_fields(self, archive);
        archive.number("old_pos", self.old_pos_);
        archive.number("new_pos", self.new_pos_);
        if constexpr (Archive::reads) self.set_mark(true);
    }

    void forward();
    void backward();
    void inverse();

private:
    /// A stream does not tell whether there was an element to move.  One that would come from behind the end did not.
    bool was_moved() const;

    u32 old_pos_;
    u32 new_pos_;
    bool moved_;
};

} // namespace kelm
