// Transactions around steps, and holding the laws of undo, redo and rollback against what comes of them.
// What an edit calls is step_calls.cpp.
#include "testing/player.h"
#include "testing/read_model.h"

#include <kelm/framework.h>
#include <kelm/message.h>
#include <kelm/meta_model.h>

#include <exception>

namespace kelm::testing {

player::player(const history_mix& mix, const companions& with, bool writes)
    : mix_(mix),
      with_(with),
      root_(framework::instance().create_object(type_id::model, nullptr)),
      model_(root_->model()),
      names_(*model_),
      writes_(writes) {
    restart();
}

player::~player() { close(); }

void player::close() {
    if (!model_) return;
    tell([&](companion& each) { each.closing(*this); });
    close_model(*model_);
    model_ = nullptr;
}

std::string player::state_of(kelm::model& of) const {
    std::string out = text_of(of);
    for (const auto& each : with_) each->add_state(of, out);
    return out;
}

std::size_t player::open_levels() const {
    std::size_t open = 0;
    for (std::size_t i = model_->message_count(); i-- != 0;) {
        message* const at = model_->message_at(i);
        if (at->type() != message_type::tran_begin && at->type() != message_type::tran_end) continue;
        const auto* const begin = message_cast<tran_begin_message>(at);
        if (!begin) {
            if (open == 0 && message_cast<tran_end_message>(at)->level() == 0) break;
            continue;
        }
        if (!begin->end_message()) ++open;
        if (begin->level() == 0) break;
    }
    return open;
}

void player::fail(law which, const std::string& what, const std::string& difference) {
    if (!has_failed()) failure_ = {which, what, difference, npos};
}

void player::check(law which, const char* what, const moment_text& expected) {
    if (has_failed()) return;
    const std::string is = state();
    if (is != expected.text) failure_ = {which, what, difference_of(expected.text, is), expected.line};
}

/// What a hook throws passes through the library; an application then takes back what is open.
template <class Call>
void player::guarded(Call call) {
    try {
        call();
    } catch (const std::exception& thrown) {
        threw(thrown.what());
    } catch (...) {
        threw("something that is no std::exception");
    }
}

void player::threw(const std::string& what) {
    if (writes_ && !lines_.empty() && !levels_.empty())
        lines_.back() =
            "try { " + lines_.back() + "; } catch (...) { model.rollback_transaction_all(); } // " + what;
    if (levels_.empty())
        return fail(law::undo_and_redo, "undo, redo and rollback throw nothing", what + "\n");
    try {
        model_->rollback_transaction_all();
    } catch (const std::exception& again) {
        fail(law::rollback, "a rollback throws nothing", again.what() + std::string("\n"));
    }
}

void player::tell_present() {
    if (!has_failed()) tell([&](companion& each) { each.present(*this); });
}

bool player::may_play(const step& what) {
    if (has_failed()) return false;
    const bool inside = !levels_.empty();
    switch (what.what) {
    case action::begin: return levels_.size() < 4;
    case action::end:
    case action::rollback:
    case action::rollback_all: return inside;
    case action::undo: return !inside && model_->can_undo();
    case action::redo: return !inside && model_->can_redo();
    case action::rollback_last:
        return !inside && at_ + 1 == moments_.size() && at_ != 0 && model_->message_count() != 0;
    case action::set_undo_levels: return !inside && mix_.limited;
    case action::clear_history: return !inside;
    default: return inside;
    }
}

bool player::play(const step& what) {
    if (!may_play(what)) return false;
    std::optional<edit_call> edit;
    if (is_edit(what.what)) {
        edit = prepare(what, mix_, names_);
        if (!edit) return false;
    }
    for (const auto& each : with_)
        if (each->leaves_out(*this, what)) return false;
    tell([&](companion& each) { each.before(*this, what); });
    ++operations_;
    const u32 last_id = model_->last_object_id();
    if (edit)
        play_edit(what, std::move(*edit));
    else
        call(what);
    names_.enter_made(what.number, last_id);
    tell([&](companion& each) { each.after(*this, what); });
    return true;
}

void player::play_edit(const step& what, edit_call edit) {
    if (writes_) note(code_of(what, edit, names_));
    guarded([&] {
        if (object* const made = perform(what, edit)) tell([&](companion& each) { each.made(*this, *made); });
    });
    settle();
}

void player::call(const step& what) {
    if (writes_ && what.what != action::begin) note(code_of(what));
    switch (what.what) {
    case action::begin: return begin();
    case action::end: return end();
    case action::rollback: return roll_back(false);
    case action::rollback_all: return roll_back(true);
    case action::rollback_last: return roll_last_back();
    case action::undo: return undo();
    case action::redo: return redo();
    case action::clear_history: model_->clear_history(); return restart();
    default: model_->set_undo_levels(what.position == npos ? -1 : static_cast<int>(what.position)); return;
    }
}

void player::restart() {
    at_ = 0;
    moments_.assign(1, now());
    tell([&](companion& each) { each.restarted(*this); });
}

void player::begin() {
    levels_.push_back(now());
    if (levels_.size() == 1) moments_.resize(at_ + 1); // there is nothing to redo from here on
    tell([&](companion& each) { each.beginning(*this); });
    if (writes_) note(code_of(step{}));
    guarded([&] { model_->begin_transaction(""); });
    if (!levels_.empty()) tell([&](companion& each) { each.begun(*this); });
}

/// Whether the newest message is the end of the transaction of that number.
bool player::has_ended(u32 number) const {
    const std::size_t size = model_->message_count();
    const auto* const end =
        size != 0 ? message_cast<tran_end_message>(model_->message_at(size - 1)) : nullptr;
    return end && end->begin_message() && end->id() == number;
}

void player::end() {
    moment_text before = now();
    const tran_begin_message* const open = model_->current_transaction();
    const u32 number = levels_.size() == 1 && open ? open->id() : 0;
    tell([&](companion& each) { each.ending(*this); });
    bool is_kept = false;
    bool has_thrown = true;
    guarded([&] {
        is_kept = model_->end_transaction() != nullptr;
        has_thrown = false;
    });
    if (has_thrown) { // behind the end, or before
        if (open_levels() + 1 != levels_.size() || model_->message_count() == 0) return settle();
        is_kept = true;
    }
    if (!is_kept && number != 0 && has_ended(number)) { // a hook has refused it
        is_kept = true;
        if (model_->can_undo()) fail(law::undo_and_redo, "a refused transaction is undone where it can be");
    }
    const moment_text begun = std::move(levels_.back());
    levels_.pop_back();
    if (is_kept)
        check(law::undo_and_redo, "the end of a transaction changes nothing", before);
    else // it is empty, or has been undone
        check(law::undo_and_redo, "a transaction that is not kept changes nothing", begun);
    tell([&](companion& each) { each.left(*this); });
    if (!levels_.empty() || has_failed()) return;
    tell_present();
    before.line = lines_.size();
    if (is_kept || model_->can_redo()) moments_.push_back(std::move(before)); // refused is undone
    if (!is_kept) return;
    ++at_;
    tell([&](companion& each) { each.kept(*this); });
}

void player::undo() {
    if (at_ == 0) return fail(law::undo_and_redo, "there is no more to undo than was done");
    guarded([&] { model_->undo(); });
    check(law::undo_and_redo, "undo leads to the state before", moments_.at(--at_));
    tell_present();
}

void player::redo() {
    if (at_ + 1 == moments_.size())
        return fail(law::undo_and_redo, "there is no more to redo than was undone");
    guarded([&] { model_->redo(); });
    check(law::undo_and_redo, "redo leads to the state behind", moments_.at(++at_));
    tell_present();
}

void player::roll_back(bool all) {
    guarded([&] { all ? model_->rollback_transaction_all() : model_->rollback_transaction(); });
    settle();
}

/// Undoes the last transaction for good.
void player::roll_last_back() {
    guarded([&] { model_->rollback_last_transaction(); });
    moments_.pop_back();
    check(law::rollback, "a rollback of the last transaction leads to the state before", moments_.at(--at_));
    tell_present();
}

/// Finds out what a step has rolled back.
void player::settle() {
    const std::size_t open = open_levels();
    if (open > levels_.size()) return fail(law::rollback, "a level is open that nobody has begun");
    if (open == levels_.size()) return;
    const moment_text expected = std::move(levels_[open]);
    levels_.resize(open);
    if (writes_) note("// rolled back to level " + std::to_string(open));
    check(law::rollback, "a rollback leads to the moment before the begin", expected);
    tell([&](companion& each) { each.left(*this); });
    tell_present();
}

void player::end_all() {
    while (!levels_.empty() && !has_failed()) call({0, action::end, {}, {}, 0, 0, 0, {}, {}});
}

void player::finish() {
    const auto walk = [&](action what, auto possible) {
        while (!has_failed() && possible()) {
            step next;
            next.what = what;
            tell([&](companion& each) { each.before(*this, next); });
            ++operations_;
            call(next);
            tell([&](companion& each) { each.after(*this, next); });
        }
    };
    end_all();
    if (!has_failed()) tell([&](companion& each) { each.finishing(*this); });
    walk(action::undo, [&] { return model_->can_undo(); });
    walk(action::redo, [&] { return model_->can_redo(); });
    if (!has_failed()) tell([&](companion& each) { each.finished(*this); });
}

} // namespace kelm::testing
