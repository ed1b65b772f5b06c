// What hooks and observers do besides in a random history: refuse, or change the model themselves.
// The steps that call upon them are random_edits.cpp.
#include "tests/random/random_edits.h"

namespace kelm::test {

moody_observer::~moody_observer() {
    for (subject* each : subjects()) each->detach(this);
}

namespace {

bool is_part_of_making_or_deleting(message& what) {
    if (what.type() < message_type::property_set) return true;
    const auto* const added = message_cast<child_add_message>(&what);
    return added && added->child()->state() != state::normal;
}

} // namespace

bool moody_observer::update(subject*, message* what) {
    if (!what->is_first_run() || is_part_of_making_or_deleting(*what)) return true;
    // One that has rolled back must say so: else the rest of the change runs outside the transaction.
    if (reacts && numbers_.one_in(12) && !reaction()) return false;
    return !refuses || !numbers_.one_in(8);
}

// Hooks of reads are left alone: the laws are about what is stored.
void random_run::program_hooks() {
    ears_->moody.reaction = [this] { return react("an observer"); };
    hook_program& hooks = hook_program::instance();
    hooks.clear();
    if (mix_.answered) return program_answers();
    if (is_calm()) return;
    for (int kind = update_semantic::kind; kind <= post_set_owner_semantic::kind; ++kind) {
        if ((kind >= 4 && kind <= 6) || kind == 27 || kind == 28) continue;
        if (mix_.repeated && kind == update_semantic::kind) continue;
        hooks.on(kind, [this, kind](hook_call& call) {
            // Undo and redo ask only the hooks of objects that observe; they may neither refuse nor react.
            if (call.told && !call.told->is_first_run()) return true;
            const std::string who = "a hook of kind " + std::to_string(kind);
            const std::size_t rarity = kind == update_semantic::kind ? 5 : 25; // few objects observe
            if (one_in(rarity * 6)) {
                note("// " + who + " refuses");
                return false;
            }
            return !one_in(rarity) || react(who);
        });
    }
}

// A log for replay leaves out what hooks did: those of the twin do it again.
void random_run::program_answers() {
    hook_program& hooks = hook_program::instance();
    hooks.on<obj_create_semantic>(
        [](hook_call& call) { return call.at->set_property(props::definition, text("made")); });
    hooks.on<pre_prop_set_semantic>(
        [](hook_call& call) { return call.numbers[0] != props::text || call.values[0].size() % 5 != 4; });
    hooks.on<post_prop_set_semantic>([](hook_call& call) {
        if (call.numbers[0] != props::text) return true;
        const auto length = static_cast<int>(call.values[0].size());
        return length % 3 == 0 ? call.at->delete_property(props::flag)
                               : call.at->set_property(props::number, counted_value{length});
    });
    hooks.on<post_add_child_semantic>([](hook_call& call) {
        if (call.at->state() != state::normal) return true;
        return call.at->set_property(props::real,
                                     property<double>{static_cast<double>(call.at->child_count(nullptr))});
    });
    hooks.on<post_set_child_order_semantic>(
        [](hook_call& call) { return call.others[0]->set_property(props::definition, text("moved")); });
}

/// A small change, itself hooked.  \returns what it answered
bool random_run::react(const std::string& who) {
    // The rest of a change that has been rolled back runs in the level outside, or in none.
    if (reacting_ > 1 || open_levels() != levels_.size()) return true;
    object* const what = any();
    if (!what || what->state() != state::normal) return true;
    if (mix_.shadowed && !ears_->shadow.understands(*what)) return true;
    ++reacting_;
    const bool done = change_besides(*what, who);
    --reacting_;
    return done;
}

bool random_run::change_besides(object& what, const std::string& who) {
    const std::string call = "// " + who + " calls " + name_of(&what) + "->";
    const counted_value number{static_cast<int>(numbers_.below(100))};
    switch (numbers_.below(8)) {
    case 0: {
        const u32 id = any_value_id();
        note(call + "delete_property(" + std::to_string(id) + ")");
        return what.delete_property(id);
    }
    case 1:
        if (!dynamic_cast<const vector_property*>(what.get_own_property(props::list).get())) return true;
        note(call + "append_vector_element(" + std::to_string(props::list) + ", " + code_of(number) + ")");
        return what.append_vector_element(props::list, number);
    case 2:
        note("// " + who + " calls fw.create_object(" + std::to_string(types::hooked) + ", " +
             name_of(&what) + ")");
        return framework::instance().create_object(types::hooked, &what) != nullptr;
    case 3: {
        object* const base = any();
        if (!mix_.bases || base == &what || base->state() != state::normal) return true;
        note(call + "insert_inherits_from(" + name_of(base) + ", 0)");
        return what.insert_inherits_from(base, 0);
    }
    case 4: {
        const auto reference = property<object*>{any()};
        if (reference.value->state() != state::normal) return true;
        if (mix_.stored && !has_declared(what, props::reference)) return true;
        note(call + "set_property(" + std::to_string(props::reference) + ", " + code_of(reference) + ")");
        return what.set_property(props::reference, reference);
    }
    default:
        if (mix_.stored && !has_declared(what, props::real)) return true;
        note(call + "set_property(" + std::to_string(props::real) + ", " + code_of(number) + ")");
        return what.set_property(props::real, number);
    }
}

} // namespace kelm::test
