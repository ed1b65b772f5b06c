// The messages that bracket transactions, and the two that are only told.
// Levels and partners are set by the history.
#pragma once

#include "message/recorded.h"

#include <string>

namespace kelm {

class tran_end_message_impl;

/// Opens a level.  Only level 0 makes a sound.
class tran_begin_message_impl final : public tran_begin_message, public recorded<tran_begin_message_impl> {
public:
    tran_begin_message_impl(silent_edit* model, u32 id, std::string name);
    ~tran_begin_message_impl() override;

    tran_end_message* end_message() const override;
    u32 level() const override { return level_; }
    u32 id() const override { return id_; }
    std::string name() const override { return name_; }
    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override;

    void set_level(u32 level) { level_ = level; }
    void set_partner(tran_end_message_impl* end) { partner_ = end; }
    tran_end_message_impl* partner() const { return partner_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.number("level", self.level_);
        archive.attribute("id", self.id_);
        archive.name("name", self.name_);
    }

private:
    friend class tran_end_message_impl; // tells a transient begin
    tran_end_message_impl* partner_ = nullptr;
    u32 level_ = 0;
    u32 id_;
    std::string name_;
};

/// Closes a level.
class tran_end_message_impl final : public tran_end_message, public recorded<tran_end_message_impl> {
public:
    explicit tran_end_message_impl(silent_edit* model);
    ~tran_end_message_impl() override;

    tran_begin_message* begin_message() const override { return partner_; }
    u32 level() const override { return level_; }
    u32 id() const override { return partner_ ? partner_->id() : 0; }
    u32 processed_state() const override { return processed_state_; }
    void set_processed_state(u32 state) override { processed_state_ = state; }
    std::string processed_err_msg() const override { return processed_err_msg_; }
    void set_processed_err_msg(const std::string& text) override { processed_err_msg_ = text; }
    std::string& to_string(std::string& out) const override;
    bool redo() override;
    bool undo() override;

    void set_level(u32 level) { level_ = level; }
    void set_partner(tran_begin_message_impl* begin) { partner_ = begin; }
    tran_begin_message_impl* partner() const { return partner_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.number("level", self.level_);
        u32 begin_id = self.id();
        archive.number("begin_id", begin_id);
        archive.since(7, 14, [&] {
            archive.number("processed_state", self.processed_state_);
            archive.text("processed_err_msg", self.processed_err_msg_);
        });
        if constexpr (Archive::reads) self.join(archive.newest_begin(begin_id));
    }

private:
    /// Links a begin; null stands for none.  An earlier end of that begin loses it, since a begin can let go of one end
    /// only.
    void join(message* begin);

    friend class tran_begin_message_impl; // tells a transient end
    tran_begin_message_impl* partner_ = nullptr;
    u32 level_ = 0;
    u32 processed_state_ = 1;
    std::string processed_err_msg_;
};

/// Only told: a transaction was taken back.
class tran_rollback_message_impl final : public tran_rollback_message,
                                         public recorded<tran_rollback_message_impl> {
public:
    tran_rollback_message_impl(silent_edit* model, tran_begin_message_impl* begin, bool was_closed)
        : recorded(message_type::tran_rollback, model), partner_(begin), was_closed_(was_closed) {}

    tran_begin_message* begin_message() const override { return partner_; }
    u32 level() const override { return 0; }
    u32 id() const override { return partner_ ? partner_->id() : 0; }
    bool was_closed() const override { return was_closed_; }
    std::string& to_string(std::string& out) const override;
    bool redo() override { return true; }
    bool undo() override { return true; }

    // Never stored.
    template <class Self, class Archive>
    static void fields(Self&, Archive&) {}

private:
    tran_begin_message_impl* partner_;
    bool was_closed_;
};

/// Only told: the model is about to go.
class model_close_message_impl final : public model_close_message, public recorded<model_close_message_impl> {
public:
    explicit model_close_message_impl(silent_edit* model) : recorded(message_type::model_close, model) {}

    kelm::model* model() const override { return object()->model(); }
    std::string& to_string(std::string& out) const override;
    bool redo() override { return true; }
    bool undo() override { return true; }

    // Never stored.
    template <class Self, class Archive>
    static void fields(Self&, Archive&) {}
};

} // namespace kelm
