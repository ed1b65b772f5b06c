// The messages that bracket transactions, and the two that are only told.
// Levels and partners are set by the history.
#pragma once

#include "message/recorded.h"

#include <string>

namespace kelm {

class tran_end_message_impl;

/// Shared by the two brackets of a level: which level it is, and the other bracket.
/// A stream may name as partners what does not go together, so one lets go of the other only where that holds it.
template <class Derived, class Face, class Partner, u32 Type>
class bracket_message : public Face, public recorded<Derived> {
public:
    explicit bracket_message(silent_edit* model) : recorded<Derived>(Type, model) {}
    ~bracket_message() override { let_go(); }

    u32 level() const final { return level_; }
    bool redo() final {
        if (is_heard()) this->tell();
        return true;
    }

    void set_level(u32 level) { level_ = level; }
    /// Those that the two were joined with before let go: who changes a history while it is walked can end a transaction
    /// twice.
    void join(Partner& other) {
        let_go();
        other.let_go();
        set_partner(&other);
        other.set_partner(static_cast<Derived*>(this));
    }
    void let_go() {
        if (partner_ && partner_->partner() == this) partner_->set_partner(nullptr);
        partner_ = nullptr;
    }
    void set_partner(Partner* other) { partner_ = other; }
    Partner* partner() const { return partner_; }

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.number("level", self.level_);
    }

protected:
    /// Only level 0 makes a sound.
    bool is_heard() const { return level_ == 0 && !this->is_lost(); }

private:
    u32 level_ = 0;
    Partner* partner_ = nullptr;
};

/// Opens a level.
class tran_begin_message_impl final
    : public bracket_message<tran_begin_message_impl, tran_begin_message, tran_end_message_impl,
                             message_type::tran_begin> {
public:
    tran_begin_message_impl(silent_edit* model, u32 id, std::string name);
    ~tran_begin_message_impl() override;

    tran_end_message* end_message() const override;
    u32 id() const override { return id_; }
    std::string name() const override { return name_; }
    std::string& to_string(std::string& out) const override;
    bool undo() override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        bracket_message::fields(self, archive);
        archive.attribute("id", self.id_);
        archive.name("name", self.name_);
    }

private:
    u32 id_;
    std::string name_;
};

/// Closes a level.
class tran_end_message_impl final : public bracket_message<tran_end_message_impl, tran_end_message,
                                                           tran_begin_message_impl, message_type::tran_end> {
public:
    using bracket_message::bracket_message;

    tran_begin_message* begin_message() const override { return partner(); }
    u32 id() const override { return partner() ? partner()->id() : 0; }
    u32 processed_state() const override { return processed_state_; }
    void set_processed_state(u32 state) override { processed_state_ = state; }
    std::string processed_err_msg() const override { return processed_err_msg_; }
    void set_processed_err_msg(const std::string& text) override { processed_err_msg_ = text; }
    std::string& to_string(std::string& out) const override;
    bool undo() override;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        bracket_message::fields(self, archive);
        u32 begin_id = self.id();
        archive.number("begin_id", begin_id);
        archive.since(7, 14, [&] {
            archive.number("processed_state", self.processed_state_);
            archive.text("processed_err_msg", self.processed_err_msg_);
        });
        if constexpr (Archive::reads)
            if (message* const begin = archive.newest_begin(begin_id))
                self.join(*message_cast<tran_begin_message_impl>(begin));
    }

private:
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
