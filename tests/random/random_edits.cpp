// Making the random steps.
// Definitions, and what hooks and observers do besides, have files of their own; transactions and laws are
// random_laws.cpp.
#include "tests/random/random_edits.h"

#include <functional>
#include <limits>

namespace kelm::test {

namespace {

bool has_targets(const abstract_property* value) { return dump_text(value).find('#') != std::string::npos; }

constexpr u32 value_ids[] = {props::definition, props::text, props::number,         props::flag,
                             props::reference,  props::list, props::not_inheritable};

} // namespace

std::string name_of(const object* what) { return what ? "o" + std::to_string(what->id()) : "nullptr"; }

std::string code_of(const abstract_property& value) {
    if (const auto* const target = dynamic_cast<const property<object*>*>(&value))
        return "reference(" + name_of(target->value) + ")";
    if (const auto* const list = dynamic_cast<const vector_property*>(&value)) {
        std::string out;
        for (const abstract_property* each : list->elements)
            out += (out.empty() ? "" : ", ") + code_of(*each);
        return "list(" + out + ")";
    }
    return "value(" + value.to_string() + ")";
}

u64 random_numbers::next() {
    u64 mixed = state_ += 0x9E3779B97F4A7C15U;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31);
}

random_run::random_run(u64 seed, history_mix mix)
    : numbers_(seed),
      mix_(mix),
      root_(started_framework().create_object(type_id::model, nullptr)),
      model_(root_->model()) {
    ears_.emplace(numbers_);
    ears_->shadow.listen_to(*root_);
    populate();
    root_->attach(&ears_->moody);
    states_.push_back(state());
    if (mix_.summed) pictures_.push_back(picture_of(*model_));
    program_hooks();
    if (mix_.replayed) {
        remember_start();
    } else if (one_in(4)) {
        const int limit = static_cast<int>(numbers_.below(4)) + 1;
        note("model->set_undo_levels(" + std::to_string(limit) + ")");
        model_->set_undo_levels(limit);
    }
}

random_run::~random_run() {
    close();
    ears_.reset();
}

void random_run::close() {
    hook_program::instance().clear();
    if (!model_) return;
    ears_->moody.be_quiet();
    model_->rollback_transaction_all();
    framework::instance().delete_object(root_);
    framework::instance().set_in_semantic(false);
    model_ = nullptr;
}

/// Makes a few objects to begin with, which no undo takes away.
void random_run::populate() {
    hook_program::instance().clear();
    model_->begin_transaction("");
    object* owner = root_;
    std::vector<object*> all;
    for (const u32 type :
         {types::thing, types::hooked, types::part, types::hooked, types::thing, types::hooked_part}) {
        object* const made = framework::instance().create_object(type, owner);
        note("fw.create_object(" + std::to_string(type) + ", " + name_of(owner) + ")");
        made->attach(&ears_->moody);
        if (std::less<observer*>{}(dynamic_cast<observer*>(made), &ears_->shadow))
            failure_ = "the shadow must hear before any object does";
        for (std::size_t earlier = 0; mix_.bases && earlier != all.size(); ++earlier) {
            if (one_in(2)) continue;
            note(name_of(made) + "->add_inherits_from(" + name_of(all[earlier]) + ")");
            made->add_inherits_from(all[earlier]);
        }
        all.push_back(made);
        if (one_in(2)) owner = made;
    }
    model_->end_transaction();
    model_->clear_history();
}

object* random_run::any() {
    for (int attempt = 0; attempt != 50; ++attempt) {
        object* const found =
            model_->find_object(static_cast<u32>(2 + numbers_.below(model_->last_object_id())));
        if (found) return found;
    }
    std::vector<u32> ids;
    model_->object_ids(ids);
    return ids.size() < 2 ? nullptr : model_->find_object(ids.back());
}

object* random_run::any_or_root() {
    object* const found = one_in(3) ? nullptr : any();
    return found ? found : root_;
}

std::unique_ptr<abstract_property> random_run::value(bool may_be_list) {
    const int number = static_cast<int>(numbers_.below(10));
    switch (numbers_.below(may_be_list ? 7 : 6)) {
    case 0: return std::make_unique<property<std::string>>(std::string(numbers_.below(40), 'x'));
    case 1: return std::make_unique<property<int>>(number);
    case 2: return std::make_unique<property<double>>(std::numeric_limits<double>::quiet_NaN());
    case 3:
    case 4: return std::make_unique<property<object*>>(one_in(6) ? nullptr : any());
    case 5: return std::make_unique<counted_value>(number);
    default: break;
    }
    auto list = std::make_unique<vector_property>();
    for (std::size_t count = numbers_.below(4); count != 0; --count)
        list->elements.push_back(value(false).release());
    return list;
}

void random_run::step() {
    if (!failure_.empty()) return;
    levels_.empty() ? step_outside() : step_inside();
    ears_->shadow.call_is_over();
}

void random_run::step_outside() {
    if (mix_.replayed) return begin();
    switch (numbers_.below(20)) {
    case 0:
    case 1:
    case 2:
    case 3: return undo();
    case 4:
    case 5: return redo();
    case 6: return roll_last_back();
    case 7: {
        const int limit = static_cast<int>(numbers_.below(5)) - 1;
        note("model->set_undo_levels(" + std::to_string(limit) + ")");
        return model_->set_undo_levels(limit);
    }
    default: return begin();
    }
}

void random_run::step_inside() {
    switch (mix_.replayed ? 3 * numbers_.below(10) : numbers_.below(30)) {
    case 0: return levels_.size() < 4 ? begin() : end();
    case 1:
        note("model->rollback_transaction()");
        model_->rollback_transaction();
        return settle();
    case 2:
        if (!one_in(3)) return edit();
        note("model->rollback_transaction_all()");
        model_->rollback_transaction_all();
        return settle();
    case 3:
    case 4:
    case 5: return end();
    default: return edit();
    }
}

void random_run::edit() {
    if (!any() || one_in(8)) {
        object* const owner = any_or_root();
        constexpr u32 kinds[] = {types::thing,         types::part,   types::other,
                                 types::special_thing, types::hooked, types::hooked_part};
        const u32 type = kinds[numbers_.below(std::size(kinds))];
        note("fw.create_object(" + std::to_string(type) + ", " + name_of(owner) + ")");
        object* const made = framework::instance().create_object(type, owner);
        if (made && one_in(4)) made->attach(&ears_->moody);
        return settle();
    }
    if (mix_.definitions && one_in(3)) {
        edit_definition();
        return settle();
    }
    switch (numbers_.below(mix_.bases ? 9 : 7)) {
    case 0:
    case 1: edit_tree(); break;
    case 2:
    case 3: edit_value(); break;
    case 4:
    case 5: edit_element(); break;
    case 6: edit_observer(); break;
    default: edit_base(); break;
    }
    settle();
}

void random_run::edit_tree() {
    object* const what = any();
    object* const owner = what->owner();
    switch (numbers_.below(6)) {
    case 0:
    case 1:
        if (mix_.shadowed && owner->state() == state::deleted) return;
        note("fw.delete_object(" + name_of(what) + ")");
        framework::instance().delete_object(what);
        return;
    case 2: {
        object* const to = any_or_root();
        if (owner->child_position(what) == npos) return;
        note(name_of(what) + "->set_owner(" + name_of(to) + ")");
        what->set_owner(to);
        return;
    }
    case 3:
        if (mix_.stored) return;
        note(name_of(owner) + "->remove_child(" + name_of(what) + ")");
        owner->remove_child(what);
        return;
    case 4:
        if (mix_.replayed && owner->state() == state::deleted) return;
        note(name_of(owner) + "->add_child(" + name_of(what) + ")");
        owner->add_child(what);
        return;
    default: {
        if (owner->child_position(what) == npos) return;
        const std::size_t position = numbers_.below(owner->child_count(what->type()));
        note(name_of(owner) + "->set_child_position(" + name_of(what) + ", " + std::to_string(position) +
             ")");
        owner->set_child_position(what, position);
    }
    }
}

u32 random_run::any_value_id() {
    if (mix_.definitions && one_in(3))
        return property_id::first_user_defined + 1 + static_cast<u32>(numbers_.below(4));
    return value_ids[numbers_.below(std::size(value_ids))];
}

void random_run::edit_value() {
    object* const what = any();
    const u32 id = any_value_id();
    if (mix_.stored && !has_declared(*what, id)) return;
    const std::string call = name_of(what) + "->";
    const std::string number = std::to_string(id);
    if (one_in(4)) {
        note(call + "delete_property(" + number + ")");
        what->delete_property(id);
    } else if (one_in(mix_.summed ? 3 : 8)) {
        const bool flag = !what->is_property_not_inheritable(id);
        note(call + "set_property_not_inheritable(" + number + ", " + (flag ? "true)" : "false)"));
        what->set_property_not_inheritable(id, flag);
    } else if (one_in(12) && !mix_.shadowed && !mix_.answered) {
        const auto now = one_in(3) ? nullptr : value(true);
        const auto then = one_in(3) ? nullptr : value(true);
        note(call + "refresh_property(" + number + ", " + (now ? code_of(*now) : "nullptr") + ", " +
             (then ? code_of(*then) : "nullptr") + ")");
        what->refresh_property(id, now.get(), then.get());
    } else {
        const auto next = value(true);
        if (mix_.stored && what->type() == type_id::user_defined_property && has_targets(next.get())) return;
        if (mix_.replayed && dynamic_cast<const vector_property*>(next.get()) && has_targets(next.get()))
            return;
        note(call + "set_property(" + number + ", " + code_of(*next) + ")");
        what->set_property(id, *next);
    }
}

void random_run::edit_element() {
    if (mix_.replayed) return;
    object* const what = any();
    if (mix_.stored && !has_declared(*what, props::list)) return;
    const auto list = what->get_own_property(props::list);
    const auto* const elements = dynamic_cast<const vector_property*>(list.get());
    if (!elements && !one_in(10)) {
        note(name_of(what) + "->set_property(" + std::to_string(props::list) + ", list())");
        what->set_property(props::list, vector_property{});
        return;
    }
    const std::size_t size = elements ? elements->elements.size() : 0;
    const auto element = value(false);
    const std::string call = name_of(what) + "->";
    const std::string id = "(" + std::to_string(props::list) + ", ";
    // One position behind the end now and then: an insertion is then recorded and does nothing, the others refuse.
    const std::size_t position = numbers_.below(size + (one_in(8) ? 2 : 0));
    const std::string at = std::to_string(position);
    switch (numbers_.below(6)) {
    case 0:
    case 1:
        note(call + "append_vector_element" + id + code_of(*element) + ")");
        what->append_vector_element(props::list, *element);
        return;
    case 2:
        note(call + "insert_vector_element" + id + code_of(*element) + ", " + at + ")");
        what->insert_vector_element(props::list, *element, position);
        return;
    case 3:
        note(call + "delete_vector_element" + id + at + ")");
        what->delete_vector_element(props::list, position);
        return;
    case 4:
        note(call + "set_vector_element" + id + code_of(*element) + ", " + at + ")");
        what->set_vector_element(props::list, *element, position);
        return;
    default: {
        const std::size_t to = numbers_.below(size);
        note(call + "move_vector_element" + id + at + ", " + std::to_string(to) + ")");
        what->move_vector_element(props::list, position, to);
    }
    }
}

void random_run::edit_base() {
    object* const what = any();
    object* base = any();
    if (base == what && !one_in(10)) base = any();
    const std::size_t size = what->inherits_from_list(0).size();
    const std::size_t position = numbers_.below(size + 1);
    const std::string call = name_of(what) + "->";
    const std::string both = "(" + name_of(base) + ", " + std::to_string(position) + ")";
    switch (numbers_.below(8)) {
    case 0:
    case 1:
    case 2:
        if ((mix_.shadowed || mix_.stored || mix_.summed) && what->inherits_from(base, false)) return;
        note(call + "add_inherits_from(" + name_of(base) + ")");
        what->add_inherits_from(base);
        return;
    case 3:
        note(call + "insert_inherits_from" + both);
        what->insert_inherits_from(base, position);
        return;
    case 4: {
        object* const gone = size ? what->inherits_from_at(numbers_.below(size)) : base;
        note(call + "cancel_inherits_from(" + name_of(gone) + ")");
        what->cancel_inherits_from(gone);
        return;
    }
    case 5:
        note(call + "cancel_all_inherits_from()");
        what->cancel_all_inherits_from();
        return;
    case 6:
        if (position == size && !one_in(10)) return;
        note(call + "replace_inherits_from_at" + both);
        what->replace_inherits_from_at(base, position);
        return;
    default: {
        if (size == 0 && !one_in(10)) return;
        object* const moved = size ? what->inherits_from_at(numbers_.below(size)) : base;
        note(call + "set_inherits_from_position(" + name_of(moved) + ", " + std::to_string(position) + ")");
        what->set_inherits_from_position(moved, position);
    }
    }
}

void random_run::edit_observer() {
    object* const what = any();
    object* const who = any();
    if (what == who) return;
    if (one_in(2)) {
        note(name_of(what) + "->attach(" + name_of(who) + ")");
        what->attach(dynamic_cast<observer*>(who));
    } else {
        note(name_of(what) + "->detach_object(" + name_of(who) + ")");
        what->detach_object(who);
    }
}

} // namespace kelm::test
