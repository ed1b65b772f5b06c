// The messages of whole values: set, delete, and the not-inheritable mark.
// Elements of vectors have messages of their own.
#pragma once

#include "message/reversible.h"
#include "message/value_custody.h"

#include <kelm/property_messages.h>

#include <memory>

namespace kelm {

/// Shared by the messages of a value: the property, where the value lies, and telling inheritors as well.
/// A reader looks for the value in that object, or in the message's own when it is not there any more.
class property_change_message_impl : public message_impl, public virtual property_change_message {
public:
    /// \param real_owner  where the value lies; null stands for `about`
    property_change_message_impl(u32 type, silent_edit* about, u32 id, kelm::object* real_owner = nullptr)
        : message_impl(type, about),
          property_type_(id),
          real_owner_(real_owner ? real_owner : static_cast<kelm::object*>(about)) {}

    u32 property_type() const final { return property_type_; }
    kelm::object* real_owner() const final { return real_owner_; }

protected:
    void tell() final;

    /// What all six store first.
    template <class Self, class Archive>
    static void owner_fields(Self& self, Archive& archive) {
        archive.number("property_type", self.property_type_);
        archive.object_id("real_owner_id", self.real_owner_);
    }
    /// Kept with the message rather than with its class, since a stream has the last word.
    template <class Self, class Archive>
    static void refresh_field(Self& self, Archive& archive) {
        bool refresh = self.mark();
        archive.flag("refresh", refresh);
        if constexpr (Archive::reads) self.set_mark(refresh);
    }
    value_place place(int index, u32 sub_index = npos32) const {
        return place_in(real_owner_, index, sub_index);
    }
    value_place place_in(kelm::object* source, int index, u32 sub_index = npos32) const {
        return {.index = index,
                .source = source ? source : object(),
                .property_id = property_type_,
                .sub_index = sub_index};
    }

private:
    u32 property_type_;
    kelm::object* real_owner_;
};

/// A value was stored.
class property_set_message_impl : public reversible<property_set_message_impl, property_change_message_impl>,
                                  public property_set_message {
public:
    static constexpr bool keeps_undone = true;
    /// \param old_value  owned when given as a unique_ptr; null when nothing was effective
    /// \param new_value  lent: the object holds it
    property_set_message_impl(silent_edit* about, std::unique_ptr<abstract_property> old_value,
                              abstract_property* new_value, u32 id, kelm::object* old_owner);
    /// For telling only: both values are lent.
    property_set_message_impl(silent_edit* about, abstract_property* old_value, abstract_property* new_value,
                              u32 id, kelm::object* old_owner);

    value_ptr new_value() const override;
    value_ptr old_value() const override;
    kelm::object* old_owner() const override { return old_owner_; }
    std::string& to_string(std::string& out) const override;
    void release_values() override;
    void register_values(value_position_map& positions, u32 index) const override;
    abstract_property* get_value(int index, int sub_index) const override;
    value_custody* custody(int index) override { return index == 0 ? &new_ : &old_; }
    /// \returns whether it only records that an effective value changed by other means
    bool is_refresh() const { return mark(); }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        const bool done = !self.is_undone();
        owner_fields(self, archive);
        archive.value(self.new_, archive.for_replay() || !done || self.is_refresh(), self.place(0));
        archive.object_id("old_owner", self.old_owner_);
        archive.inside("old_prop", self.old_.get() != nullptr, [&](auto& inner) {
            inner.value(self.old_, done || self.is_refresh(), self.place_in(self.old_owner_, 1));
        });
        refresh_field(self, archive);
    }

    void forward();
    void backward();
    void inverse();
    /// \returns the former effective value itself, borrowed; null when there was none
    abstract_property* known_old_value() const { return old_.get(); }

protected:
    /// Both values are owned, and no object stores them.
    property_set_message_impl(silent_edit* about, std::unique_ptr<abstract_property> old_value,
                              std::unique_ptr<abstract_property> new_value, u32 id);

    abstract_property* known_new_value() const { return new_.get(); }

private:
    bool had_own_value() const { return old_.get() && old_owner_ == object(); }

    value_custody new_;
    value_custody old_;
    kelm::object* old_owner_;
};

/// An own value was taken away.
class property_delete_message_impl
    : public reversible<property_delete_message_impl, property_change_message_impl>,
      public property_delete_message {
public:
    static constexpr bool keeps_undone = true;
    property_delete_message_impl(silent_edit* about, std::unique_ptr<abstract_property> old_value, u32 id);
    /// For telling only: the value is lent.
    property_delete_message_impl(silent_edit* about, abstract_property* old_value, u32 id,
                                 kelm::object* real_owner = nullptr);

    value_ptr old_value() const override;
    std::string& to_string(std::string& out) const override;
    void release_values() override { old_.release(); }
    void register_values(value_position_map& positions, u32 index) const override;
    abstract_property* get_value(int, int sub_index) const override {
        return resolve_value(old_.get(), sub_index);
    }
    value_custody* custody(int) override { return &old_; }
    /// \returns whether it only records that an effective value went by other means
    bool is_refresh() const { return mark(); }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        owner_fields(self, archive);
        archive.value(self.old_, !self.is_undone() || self.is_refresh(), self.place(0));
        refresh_field(self, archive);
    }

    void forward() {
        if (!old_.holds()) old_.take_back(edit().take_value(property_type()));
    }
    void backward();
    void inverse();
    /// \returns the value itself, borrowed
    abstract_property* known_old_value() const { return old_.get(); }

private:
    value_custody old_;
};

/// A property was marked as not to be inherited, or the mark was taken away.
class property_set_not_inheritable_message_impl final
    : public reversible<property_set_not_inheritable_message_impl>,
      public property_set_not_inheritable_message {
public:
    static constexpr bool keeps_undone = true;
    property_set_not_inheritable_message_impl(silent_edit* about, u32 id, bool flag)
        : reversible(message_type::property_set_not_inheritable, about), property_type_(id), flag_(flag) {}

    bool not_inheritable() const override { return flag_; }
    u32 property_type() const override { return property_type_; }
    std::string& to_string(std::string& out) const override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.number("property_type", self.property_type_);
        archive.flag("not_inh", self.flag_);
    }

    void forward() { edit().mark_not_inheritable(property_type_, flag_); }
    void backward() { edit().mark_not_inheritable(property_type_, !flag_); }
    void inverse() {
        tell_inverse<property_set_not_inheritable_message_impl>(&edit(), property_type_, !flag_);
    }

protected:
    void tell() override;

private:
    u32 property_type_;
    bool flag_;
};

} // namespace kelm
