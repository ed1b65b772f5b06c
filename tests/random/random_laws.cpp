// Transactions around random steps, and holding the laws against what comes of them.
// The steps themselves are random_edits.cpp; how many histories are played is laws_test.cpp.
#include "tests/random/random_edits.h"
#include "tests/support/consistency.h"

#include <algorithm>

namespace kelm::test {

/// \returns how many begins have no end
std::size_t random_run::open_levels() const {
    std::size_t begins = 0;
    std::size_t ends = 0;
    for (std::size_t i = 0; i != model_->message_count(); ++i) {
        begins += model_->message_at(i)->type() == message_type::tran_begin;
        ends += model_->message_at(i)->type() == message_type::tran_end;
    }
    return begins - ends;
}

void random_run::begin() {
    levels_.push_back(state());
    if (mix_.summed) level_pictures_.push_back(picture_of(*model_));
    if (levels_.size() == 1) { // there is nothing to redo from here on
        states_.resize(at_ + 1);
        if (mix_.summed) pictures_.resize(at_ + 1);
    }
    note("model->begin_transaction(\"\")");
    model_->begin_transaction("");
    if (is_calm()) return;
    ears_->moody.refuses = one_in(3);
    ears_->moody.reacts = one_in(3);
}

void random_run::end() {
    note("model->end_transaction()");
    const std::string before = state();
    check_open_deltas();
    const bool is_kept = model_->end_transaction() != nullptr;
    check("the end of a transaction changes nothing", before);
    if (!is_kept) check("a transaction without a trace changes nothing", levels_.back());
    levels_.pop_back();
    level_pictures_.resize(std::min(level_pictures_.size(), levels_.size()));
    if (!levels_.empty()) return;
    ears_->moody.be_quiet();
    check_present();
    if (!is_kept) return;
    states_.push_back(before);
    if (mix_.summed) pictures_.push_back(picture_of(*model_));
    ++at_;
    check_deltas();
}

void random_run::undo() {
    if (!model_->can_undo()) return;
    note("model->undo()");
    model_->undo();
    check("undo leads to the state before", states_[--at_]);
    check_present();
    check_deltas();
}

void random_run::redo() {
    if (!model_->can_redo()) return;
    note("model->redo()");
    model_->redo();
    check("redo leads to the state behind", states_[++at_]);
    check_present();
    check_deltas();
}

/// Undoes the last transaction for good.
void random_run::roll_last_back() {
    if (at_ + 1 != states_.size() || model_->message_count() == 0) return;
    note("model->rollback_last_transaction()");
    model_->rollback_last_transaction();
    states_.pop_back();
    if (mix_.summed) pictures_.pop_back();
    check("a rollback of the last transaction leads to the state before", states_[--at_]);
    check_present();
    check_deltas();
}

void random_run::finish() {
    while (!levels_.empty() && failure_.empty()) end();
    if (mix_.stored && failure_.empty()) check_stored();
    if (mix_.replayed && failure_.empty()) check_replayed();
    while (model_->can_undo() && failure_.empty()) undo();
    while (model_->can_redo() && failure_.empty()) redo();
    if (mix_.copied && failure_.empty()) check_copied();
}

/// Finds out what a step has rolled back.
void random_run::settle() {
    const std::size_t open = open_levels();
    if (open > levels_.size()) failure_ = "a level is open that nobody has begun";
    if (open >= levels_.size()) return;
    const std::string expected = levels_[open];
    levels_.resize(open);
    level_pictures_.resize(std::min(level_pictures_.size(), open));
    note("// rolled back to level " + std::to_string(open));
    check("a rollback leads to the moment before the begin", expected);
    check_present();
    if (levels_.empty()) ears_->moody.be_quiet();
}

void random_run::check(const char* what, const std::string& expected) {
    const std::string now = state();
    if (!failure_.empty() || now == expected) return;
    failure_ = std::string("broken: ") + what + "\nexpected\n" + expected + "but it is\n" + now;
}

/// The laws of every moment outside a call.
void random_run::check_present() {
    check_links();
    if (!mix_.shadowed || !failure_.empty()) return;
    if (const std::string difference = ears_->shadow.difference_from(*model_); !difference.empty())
        failure_ = "broken: what is heard equals what is there\n" + difference;
}

/// Computes back-lists, the map of ids and ownership from what is stored, and compares.
void random_run::check_links() {
    if (!failure_.empty()) return;
    if (const std::string wrong = broken_links(*model_); !wrong.empty())
        failure_ = "broken: links equal what is stored\n" + wrong;
}

std::string play(u64 seed, std::size_t steps, history_mix mix) {
    const long alive = counted_value::alive;
    std::string report;
    {
        random_run run{seed, mix};
        for (std::size_t i = 0; i != steps; ++i) run.step();
        run.finish();
        run.close();
        if (run.failure().empty() && counted_value::alive == alive) return "";
        report = "seed " + std::to_string(seed) + ", " + std::to_string(steps) + " steps\n";
        for (const std::string& each : run.steps()) report += each + (each.starts_with("//") ? "\n" : ";\n");
        report += run.failure();
    }
    if (counted_value::alive != alive)
        report +=
            "broken: every value is freed; " + std::to_string(counted_value::alive - alive) + " are left\n";
    counted_value::alive = alive;
    return report;
}

std::string cut(u64 seed, std::size_t steps, history_mix mix) {
    for (std::size_t fewer = 1; fewer < steps; ++fewer)
        if (std::string report = play(seed, fewer, mix); !report.empty()) return report;
    return play(seed, steps, mix);
}

} // namespace kelm::test
