// The messages of objects that observe objects.
// They are never told: the relation itself is no change that anybody listens for.
#pragma once

#include "message/recorded.h"

#include <kelm/structure_messages.h>

namespace kelm {

/// An object was attached as an observer.
class observer_add_message_impl final : public observer_add_message,
                                        public recorded<observer_add_message_impl> {
public:
    observer_add_message_impl(silent_edit* subject, kelm::observer* who, u32 id);

    kelm::observer* observer() const override { return observer_; }
    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.number("obsv_id", self.id_);
        if constexpr (Archive::reads) self.observer_ = archive.observer(self.id_);
    }

private:
    u32 id_;
    kelm::observer* observer_;
};

/// An object was detached.
class observer_remove_message_impl final : public observer_remove_message,
                                           public recorded<observer_remove_message_impl> {
public:
    observer_remove_message_impl(silent_edit* subject, kelm::observer* who, u32 id);

    kelm::observer* observer() const override { return observer_; }
    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.number("obsv_id", self.id_);
        if constexpr (Archive::reads) self.observer_ = archive.observer(self.id_);
    }

private:
    u32 id_;
    kelm::observer* observer_;
};

} // namespace kelm
