// The messages of user-defined properties: a type got one, lost one, or had an attribute of one set.
// They speak of the model's types, not of an object, so nobody is told; the history alone replays them.
#pragma once

#include "message/recorded.h"

#include <kelm/meta_model.h>
#include <kelm/structure_messages.h>

#include <memory>
#include <string>

namespace kelm {

class meta_object_base;

/// Shared by all three: the type and the property, and that observers never hear of it.
class udp_message_impl : public message_impl {
protected:
    /// \param model  the model's object side
    /// \param owner  the type, borrowed; null stands for one that a reader did not find
    udp_message_impl(u32 type, silent_edit* model, meta_object* owner, u32 udp_type)
        : message_impl(type, model), owner_meta_type_(owner), udp_type_(udp_type) {
        message_impl::set_first_run(false); // it is the source of no notification
    }

    /// What all three store first.
    template <class Self, class Archive>
    static void property_fields(Self& self, Archive& archive) {
        archive.meta_type("owner_meta_type", self.owner_meta_type_);
        archive.number("udp_type", self.udp_type_);
    }

    /// \returns the type as the message's own model has it; null when it is unknown, or another's
    meta_object_base* own_type() const;
    /// \returns the property when the message's own model has declared it, else null: those of the application belong to
    ///          all models, and a stream may name them
    meta_property* own_property() const;

    meta_object* owner_meta_type_;
    u32 udp_type_;
};

/// Shared by adding and removing: what it takes to do the one or the other.
class udp_presence_message_impl : public udp_message_impl {
public:
    const std::string& udp_name() const { return udp_name_; }

protected:
    udp_presence_message_impl(u32 type, silent_edit* model, meta_object* owner, u32 udp_type,
                              std::string name, u32 udp_class)
        : udp_message_impl(type, model, owner, udp_type), udp_name_(std::move(name)), udp_class_(udp_class) {}

    /// Nothing happens when it is there already, or the type is unknown.
    /// \param default_value  null for none
    void add_property(const abstract_property* default_value);
    void remove_property();
    /// `action`, then the name of the property and that of its type.
    std::string& describe(const char* action, std::string& out) const;

    template <class Self, class Archive>
    static void presence_fields(Self& self, Archive& archive) {
        property_fields(self, archive);
        archive.name("udp_name", self.udp_name_);
        archive.number("udp_class", self.udp_class_);
    }

    std::string udp_name_;
    u32 udp_class_;
};

/// A type got a property.
class udp_add_message_impl final : public recorded<udp_add_message_impl, udp_presence_message_impl>,
                                   public udp_add_message {
public:
    udp_add_message_impl(silent_edit* model, meta_object* owner, u32 udp_type, std::string name,
                         u32 udp_class)
        : recorded(message_type::udp_add, model, owner, udp_type, std::move(name), udp_class) {}

    meta_object* owner_meta_type() const override { return owner_meta_type_; }
    u32 udp_type() const override { return udp_type_; }
    std::string& to_string(std::string& out) const override { return describe("UDP Added : ", out); }
    bool redo() override;
    bool undo() override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        presence_fields(self, archive);
    }
};

/// A type lost a property; its default comes back with it.
class udp_remove_message_impl final : public recorded<udp_remove_message_impl, udp_presence_message_impl>,
                                      public udp_remove_message {
public:
    /// \param default_value  may be null
    udp_remove_message_impl(silent_edit* model, meta_object* owner, u32 udp_type, std::string name,
                            u32 udp_class, std::unique_ptr<abstract_property> default_value);

    meta_object* owner_meta_type() const override { return owner_meta_type_; }
    u32 udp_type() const override { return udp_type_; }
    std::string& to_string(std::string& out) const override { return describe("UDP Removed : ", out); }
    bool redo() override;
    bool undo() override;
    void release_values() override { default_value_.release(); }
    void register_values(value_position_map& positions, u32 index) const override;
    value_custody* custody(int) override { return &default_value_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        presence_fields(self, archive);
        archive.value(self.default_value_, true, {.source = self.object()});
    }

private:
    value_custody default_value_;
};

/// An attribute of a type's property was set.
class udp_set_attribute_value_message_impl final
    : public recorded<udp_set_attribute_value_message_impl, udp_message_impl>,
      public udp_set_attribute_value_message {
public:
    /// \param new_value  what was set
    /// \param old_value  null when the attribute had no value
    udp_set_attribute_value_message_impl(silent_edit* model, meta_object* owner, u32 udp_type, u32 attribute,
                                         std::unique_ptr<abstract_property> new_value,
                                         std::unique_ptr<abstract_property> old_value);

    meta_object* owner_meta_type() const override { return owner_meta_type_; }
    u32 udp_type() const override { return udp_type_; }
    u32 udp_att() const override { return udp_att_; }
    value_ptr new_value() const override;
    value_ptr old_value() const override;
    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override;
    void release_values() override;
    void register_values(value_position_map& positions, u32 index) const override;
    abstract_property* get_value(int index, int sub_index) const override;
    value_custody* custody(int index) override { return index == 0 ? &new_value_ : &old_value_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        property_fields(self, archive);
        archive.number("udp_att", self.udp_att_);
        archive.value(self.new_value_, true, {.index = 0, .source = self.object()});
        archive.inside("old_att", self.old_value_.get() != nullptr, [&](auto& inner) {
            inner.value(self.old_value_, true, {.index = 1, .source = self.object()});
        });
    }

private:
    u32 udp_att_;
    value_custody new_value_;
    value_custody old_value_;
};

} // namespace kelm
