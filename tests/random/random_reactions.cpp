// What hooks and observers do besides in a random history: refuse, or change the model themselves.
// The steps that call upon them are drawn by the law kit.
#include "tests/random/random_histories.h"
#include "tests/support/counted_value.h"
#include "tests/support/world.h"

#include "testing/law_companions.h"
#include "testing/random_steps.h"

#include <optional>

namespace kelm::test {

namespace {

using kelm::testing::companion;
using kelm::testing::player;
using kelm::testing::random_numbers;
using kelm::testing::random_steps;
using kelm::testing::step;
using kelm::testing::vocabulary;

/// An observer that refuses now and then, or changes the model while it is told.  It lets the making and deleting of
/// objects pass: what a refusal leaves of these half-way is no state that redo could come back to.
class moody_observer final : public observer_impl {
public:
    explicit moody_observer(random_numbers& numbers) : numbers_(numbers) {}
    ~moody_observer() override {
        for (subject* each : subjects()) each->detach(this);
    }
    bool update(subject*, message* what) override {
        if (!what->is_first_run() || is_part_of_making_or_deleting(*what)) return true;
        // One that has rolled back must say so: else the rest of the change runs outside the transaction.
        if (reacts && numbers_.one_in(12) && !reaction()) return false;
        return !refuses || !numbers_.one_in(8);
    }

    void be_quiet() { refuses = reacts = false; }

    bool refuses = false;
    bool reacts = false;
    std::function<bool()> reaction;

private:
    static bool is_part_of_making_or_deleting(message& what) {
        if (what.type() < message_type::property_set) return true;
        const auto* const added = message_cast<child_add_message>(&what);
        return added && added->child()->state() != state::normal;
    }

    random_numbers& numbers_;
};

/// Who listens to a model.  The order is that of their addresses, in which they are told: the shadow hears first, of
/// what the other refuses and before what it changes meanwhile.
struct listeners {
    explicit listeners(random_numbers& numbers) : moody(numbers) {}
    kelm::testing::shadow_model shadow;
    moody_observer moody;
};

/// What is done besides depends on the seed and the number of the step alone, so that a history does the same when other
/// steps are left out.
class reactions final : public companion {
public:
    reactions(u64 seed, history_mix mix, const vocabulary& words)
        : seed_(seed), numbers_(seed), mix_(mix), words_(words) {
        ears_.emplace(numbers_);
        if (mix_.shadowed) hearing_ = kelm::testing::make_hearing_law(ears_->shadow);
    }
    ~reactions() override {
        hearing_.reset();
        ears_.reset();
    }

    void restarted(player& at) override {
        if (hearing_) hearing_->restarted(at);
        is_populated_ = player_ != nullptr;
        if (player_) return;
        player_ = &at;
        at.root().attach(&ears_->moody);
        if (std::less<observer*>{}(dynamic_cast<observer*>(&at.root()), &ears_->shadow))
            at.fail(kelm::testing::law::hearing, "the shadow must hear before any object does");
        program_hooks();
    }
    void made(player&, object& what) override {
        if (!is_populated_ || numbers_.one_in(4)) what.attach(&ears_->moody);
    }
    void before(player&, const step& what) override { numbers_.restart(seed_ * 1000003 + what.number); }
    void after(player& at, const step& what) override {
        if (hearing_) hearing_->after(at, what);
    }
    void present(player& at) override {
        if (hearing_ && !at.has_failed()) hearing_->present(at);
    }
    void begun(player&) override {
        if (mix_.is_calm() || !is_populated_) return;
        ears_->moody.refuses = numbers_.one_in(3);
        ears_->moody.reacts = numbers_.one_in(3);
    }
    void left(player& at) override {
        if (at.levels() == 0) ears_->moody.be_quiet();
    }
    void finished(player&) override { hook_program::instance().clear(); }
    void closing(player&) override {
        hook_program::instance().clear();
        ears_->moody.be_quiet();
    }

private:
    void program_hooks();
    bool ask(int kind, hook_call& call);
    bool react(const std::string& who);
    bool change_besides(object& what, const std::string& who);
    object* any() { return random_steps{numbers_, words_, *player_}.any(); }
    void note(const std::string& line) {
        if (player_->writes()) player_->note(line);
    }

    u64 seed_;
    random_numbers numbers_;
    history_mix mix_;
    const vocabulary& words_;
    player* player_ = nullptr;
    bool is_populated_ = false;
    int reacting_ = 0;
    std::unique_ptr<companion> hearing_;
    // Static storage lies below all objects, which listen as well.  One history at a time has it.
    static inline std::optional<listeners> ears_;
};

// A log for replay leaves out what hooks did: those of the twin do it again.
void program_answers(hook_program& hooks) {
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

// Hooks of reads are left alone: the laws are about what is stored.
void reactions::program_hooks() {
    ears_->moody.reaction = [this] { return react("an observer"); };
    hook_program& hooks = hook_program::instance();
    hooks.clear();
    if (mix_.answered) return program_answers(hooks);
    if (mix_.is_calm()) return;
    for (int kind = update_semantic::kind; kind <= post_set_owner_semantic::kind; ++kind) {
        if ((kind >= 4 && kind <= 6) || kind == 27 || kind == 28) continue;
        if (mix_.repeated && kind == update_semantic::kind) continue;
        hooks.on(kind, [this, kind](hook_call& call) { return ask(kind, call); });
    }
}

bool reactions::ask(int kind, hook_call& call) {
    if (!is_populated_) return true;
    // Undo and redo ask only the hooks of objects that observe; they may neither refuse nor react.
    if (call.told && !call.told->is_first_run()) return true;
    const std::string who = "a hook of kind " + std::to_string(kind);
    const std::size_t rarity = kind == update_semantic::kind ? 5 : 25; // few objects observe
    if (numbers_.one_in(rarity * 6)) {
        note("// " + who + " refuses");
        return false;
    }
    return !numbers_.one_in(rarity) || react(who);
}

/// A small change, itself hooked.  \returns what it answered
bool reactions::react(const std::string& who) {
    // The rest of a change that has been rolled back runs in the level outside, or in none.
    if (reacting_ > 1 || player_->open_levels() != player_->levels()) return true;
    object* const what = any();
    if (!what || what->state() != state::normal) return true;
    if (mix_.shadowed && !ears_->shadow.understands(*what)) return true;
    ++reacting_;
    const bool done = change_besides(*what, who);
    --reacting_;
    return done;
}

bool reactions::change_besides(object& what, const std::string& who) {
    using kelm::testing::has_declared;
    const std::string call = "// " + who + " calls " + kelm::testing::code_of(&what) + "->";
    const counted_value number{static_cast<int>(numbers_.below(100))};
    switch (numbers_.below(8)) {
    case 0: {
        const u32 id = numbers_.one_of(words_.find(types::thing)->properties).id;
        note(call + "delete_property(" + std::to_string(id) + ")");
        return what.delete_property(id);
    }
    case 1:
        if (!dynamic_cast<const vector_property*>(what.get_own_property(props::list).get())) return true;
        note(call + "append_vector_element(" + std::to_string(props::list) + ", " + number.to_string() + ")");
        return what.append_vector_element(props::list, number);
    case 2:
        note("// " + who + " calls fw.create_object(" + std::to_string(types::hooked) + ", " +
             kelm::testing::code_of(&what) + ")");
        return framework::instance().create_object(types::hooked, &what) != nullptr;
    case 3: {
        object* const base = any();
        if (!mix_.bases || base == &what || base->state() != state::normal) return true;
        note(call + "insert_inherits_from(" + kelm::testing::code_of(base) + ", 0)");
        return what.insert_inherits_from(base, 0);
    }
    case 4: {
        const auto target = reference(any());
        if (target.value->state() != state::normal) return true;
        if (mix_.stored && !has_declared(what, props::reference)) return true;
        note(call + "set_property(" + std::to_string(props::reference) + ", " +
             kelm::testing::code_of(target.value) + ")");
        return what.set_property(props::reference, target);
    }
    default:
        if (mix_.stored && !has_declared(what, props::real)) return true;
        note(call + "set_property(" + std::to_string(props::real) + ", " + number.to_string() + ")");
        return what.set_property(props::real, number);
    }
}

} // namespace

std::unique_ptr<companion> make_reactions(u64 seed, history_mix mix, const vocabulary& words) {
    return std::make_unique<reactions>(seed, mix, words);
}

} // namespace kelm::test
