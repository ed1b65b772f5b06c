// Transactions around random steps, and holding the laws against what comes of them.
// The steps themselves are random_edits.cpp; how many histories are played is laws_test.cpp.
#include "tests/random/random_edits.h"

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

namespace kelm::test {

namespace {

/// \returns the targets of the references that a value holds
std::vector<object*> targets_of(const abstract_property* value) {
    std::vector<object*> out;
    const auto add = [&](const abstract_property* each) {
        const auto* const target = dynamic_cast<const property<object*>*>(each);
        if (target && target->value) out.push_back(target->value);
    };
    add(value);
    if (const auto* const list = dynamic_cast<const vector_property*>(value))
        std::ranges::for_each(list->elements, add);
    return out;
}

bool knows_that_it_observes(const object& who, object* what) {
    const std::vector<subject*> subjects = who.subjects();
    return std::ranges::find(subjects, dynamic_cast<subject*>(what)) != subjects.end();
}

std::string ids_of(const std::set<object*>& objects) {
    std::set<u32> ids;
    for (const object* each : objects) ids.insert(each->id());
    std::string out;
    for (const u32 id : ids) out += " " + std::to_string(id);
    return out;
}

} // namespace

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
    if (levels_.size() == 1) states_.resize(at_ + 1); // there is nothing to redo from here on
    note("model->begin_transaction(\"\")");
    model_->begin_transaction("");
    ears_->moody.refuses = one_in(3);
    ears_->moody.reacts = one_in(3);
}

void random_run::end() {
    note("model->end_transaction()");
    const std::string before = state();
    const bool is_kept = model_->end_transaction() != nullptr;
    check("the end of a transaction changes nothing", before);
    if (!is_kept) check("a transaction without a trace changes nothing", levels_.back());
    levels_.pop_back();
    if (!levels_.empty()) return;
    ears_->moody.be_quiet();
    check_present();
    if (!is_kept) return;
    states_.push_back(before);
    ++at_;
}

void random_run::undo() {
    if (!model_->can_undo()) return;
    note("model->undo()");
    model_->undo();
    check("undo leads to the state before", states_[--at_]);
    check_present();
}

void random_run::redo() {
    if (!model_->can_redo()) return;
    note("model->redo()");
    model_->redo();
    check("redo leads to the state behind", states_[++at_]);
    check_present();
}

/// Undoes the last transaction for good.
void random_run::roll_last_back() {
    if (at_ + 1 != states_.size() || model_->message_count() == 0) return;
    note("model->rollback_last_transaction()");
    model_->rollback_last_transaction();
    states_.pop_back();
    check("a rollback of the last transaction leads to the state before", states_[--at_]);
    check_present();
}

void random_run::finish() {
    while (!levels_.empty() && failure_.empty()) end();
    if (mix_.stored && failure_.empty()) check_stored();
    while (model_->can_undo() && failure_.empty()) undo();
    while (model_->can_redo() && failure_.empty()) redo();
}

/// Finds out what a step has rolled back.
void random_run::settle() {
    const std::size_t open = open_levels();
    if (open > levels_.size()) failure_ = "a level is open that nobody has begun";
    if (open >= levels_.size()) return;
    const std::string expected = levels_[open];
    levels_.resize(open);
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
    std::map<object*, std::set<object*>> referrers;
    std::map<object*, std::set<object*>> heirs;
    std::map<object*, object*> listed_in;
    std::ostringstream wrong;
    std::vector<u32> ids;
    model_->object_ids(ids);
    std::set<object*> all;
    for (const u32 id : ids) {
        object* const each = model_->find_object(id);
        if (!each || each->id() != id || each->state() == state::deleted) {
            wrong << "id " << id << " leads to no living object of that id\n";
            continue;
        }
        all.insert(each);
        value_map own;
        each->own_properties(own);
        for (const auto& [property, stored] : own)
            for (object* const target : targets_of(stored.get())) referrers[target].insert(each);
        for (object* const base : each->inherits_from_list(0)) heirs[base].insert(each);
        for (observer* const who : each->observers()) {
            const auto* const watching = dynamic_cast<object*>(who);
            if (watching && !knows_that_it_observes(*watching, each))
                wrong << watching->id() << " observes " << id << " and does not know it\n";
        }
        for (subject* const watched : each->subjects())
            if (!watched->is_attached(dynamic_cast<observer*>(each)))
                wrong << id << " believes to observe somebody\n";
        u32 type = 0;
        for (object* const child : each->children()) {
            if (child->owner() != each)
                wrong << id << " lists " << child->id() << ", which has another owner\n";
            if (!listed_in.emplace(child, each).second) wrong << child->id() << " is listed twice\n";
            if (child->type() < type)
                wrong << "children of " << id << " are not in the order of their types\n";
            type = child->type();
        }
    }
    for (object* const each : all) {
        const auto as_set = [](const std::vector<object*>& list) {
            return std::set<object*>(list.begin(), list.end());
        };
        if (const auto told = as_set(each->referencing_objects()); told != referrers[each])
            wrong << each->id() << " is referred to by" << ids_of(referrers[each]) << ", told are"
                  << ids_of(told) << "\n";
        if (const auto told = as_set(each->inheritors()); told != heirs[each])
            wrong << each->id() << " is inherited by" << ids_of(heirs[each]) << ", told are" << ids_of(told)
                  << "\n";
    }
    for (const auto* const map : {&referrers, &heirs})
        for (const auto& [target, from] : *map)
            if (!all.contains(target)) wrong << "there are links to " << target->id() << ", which is gone\n";
    for (const auto& [child, owner] : listed_in)
        if (!all.contains(child)) wrong << owner->id() << " lists " << child->id() << ", which is gone\n";
    if (!wrong.str().empty()) failure_ = "broken: links equal what is stored\n" + wrong.str();
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
