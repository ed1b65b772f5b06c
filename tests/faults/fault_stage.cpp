// Building the stage, and what must hold behind a failure.
// What is done to it is told by the scenarios.
#include "tests/faults/fault_stage.h"

#include "tests/faults/failing_memory.h"
#include "tests/support/consistency.h"
#include "tests/support/linked_type.h"

#include <kelm/io_references.h>
#include <kelm/message.h>
#include <kelm/message_history.h>

#include <cstdlib>
#include <new>

namespace kelm::test {

namespace {

/// Frees the messages, also where reading throws.
struct owned_messages : std::vector<message*> {
    owned_messages() = default;
    owned_messages(const owned_messages&) = delete;
    owned_messages& operator=(const owned_messages&) = delete;
    ~owned_messages() {
        for (const message* each : *this) delete each;
    }
};

/// The framework, with code of an application wherever there can be any.
framework& started_with_code() {
    framework& out = started_framework();
    static const bool once = [&] {
        code_value::enter();
        add_programmable_hooks(*out.application_meta_model()->find_meta_object(type_id::model));
        return true;
    }();
    hook_program::instance().clear();
    for (int kind = 0; once && kind != all_semantics::size; ++kind)
        hook_program::instance().on(kind, [](hook_call&) {
            run_code(code_of::hook);
            return true;
        });
    return out;
}

} // namespace

fault_stage::fault_stage(u32 type_of_most)
    : fw(started_with_code()),
      type(type_of_most),
      root(fw.create_object(type_id::model, nullptr)),
      model(root->model()) {
    model->meta_model()->set_version(8);
    build();
    change_values();
    change_lists();
    change_structure();
}

fault_stage::~fault_stage() {
    clip.reset();
    if (other) {
        other->rollback_transaction_all();
        fw.delete_object(other->as_object());
    }
    model->rollback_transaction_all();
    EXPECT_TRUE(fw.delete_object(root));
    fw.set_in_semantic(false);
    hook_program::instance().clear();
}

void fault_stage::build() {
    begin("build");
    const auto make = [&](u32 of_type, const char* name, object* owner) {
        object* const made = fw.create_object(of_type, owner);
        made->set_property(props::name, text(name));
        return made;
    };
    a = make(type, "a", root);
    p = make(types::part, "p", a);
    q = make(types::part, "q", a);
    r = make(type, "r", a);
    b = make(type, "b", root);
    c = make(type, "c", root);
    d = make(type, "d", root);
    heir = make(types::hooked, "heir", root);
    linked = make(types::linked, "linked", root);
    end();
}

void fault_stage::change_values() {
    begin("values");
    a->set_property(props::text, text("a text that is too long for a string to keep inside"));
    a->set_property(props::number, number(1));
    a->set_property(props::definition, code_value{1});
    b->set_property(props::definition, code_value{2});
    b->set_property(props::reference, reference(a));
    c->set_property(props::reference, reference(p));
    linked->set_property(props::pulled, reference(a));
    a->set_property_not_inheritable(props::real, true);
    end();
}

void fault_stage::change_lists() {
    begin("lists");
    for (const char* each : {"one", "two", "three"}) a->append_vector_element(props::list, text(each));
    a->append_vector_element(props::list, code_value{3});
    b->append_vector_element(props::list, reference(a));
    b->append_vector_element(props::list, reference(c));
    b->append_vector_element(props::list, reference(a));
    end();
}

void fault_stage::change_structure() {
    begin("structure");
    b->add_inherits_from(a);
    c->add_inherits_from(a);
    d->add_inherits_from(c);
    heir->add_inherits_from(a);
    a->set_child_position(p, 1);
    a->attach(dynamic_cast<observer*>(d));
    end();
    for (code_observer& each : observers) a->attach(&each);
    for (object* each : {root, a, b, c, d, p, q, r, heir, linked}) each->attach(&everywhere);
    model->history()->attach(&everywhere);
}

// What a definition, its choices and its mark were does not come back with a property, and is left out.
std::string fault_stage::dump() const {
    std::string out = dump_of(*model);
    for (const meta_object* each : model->meta_model()->meta_objects())
        for (const meta_property* of_user : each->properties()) {
            if (of_user->id() < property_id::first_user_defined) continue;
            const value_ptr by_default = of_user->attribute_value(attribute_id::default_value);
            out += each->name() + " has " + std::to_string(of_user->id()) + ' ' + of_user->name() +
                   " class " + std::to_string(of_user->property_class()) + " = " +
                   dump_text(by_default.get()) + '\n';
        }
    return out;
}

object* fault_stage::open_other() {
    object* const made = fw.create_object(type_id::model, nullptr);
    other = made->model();
    other->meta_model()->set_version(8);
    return made;
}

void fault_stage::keep_bytes(bool with_history) {
    std::ostringstream out;
    EXPECT_TRUE(model->write(&out, with_history, 0, false, nullptr));
    bytes = out.str();
}

bool fault_stage::read_log(std::istream& from, bool is_replay) {
    owned_messages messages;
    io_reference_manager references;
    std::vector<object*> deleted;
    return message_history::read_transactions(nullptr, from, messages, references, other, 8, 0, deleted,
                                              is_replay);
}

std::vector<std::string> fault_stage::past() {
    const std::string now = dump();
    std::size_t undone = 0;
    while (model->can_undo() && undone != 100) model->undo(), ++undone;
    std::vector<std::string> states{dump()};
    for (; undone != 0; --undone) {
        EXPECT_TRUE(model->can_redo());
        model->redo();
        states.push_back(dump());
    }
    EXPECT_EQ(dump(), now) << "all redone";
    return states;
}

bool undo(fault_stage& s) {
    s.model->undo();
    return true;
}

bool redo(fault_stage& s) {
    s.model->redo();
    return true;
}

std::vector<fault_scenario> fault_scenarios() {
    std::vector<fault_scenario> all;
    for (const auto& some : {edit_scenarios(), structure_scenarios(), history_scenarios(),
                             definition_scenarios(), stored_scenarios(), copy_scenarios()})
        all.insert(all.end(), some.begin(), some.end());
    return all;
}

namespace {

fault_outcome::moment moment_of(fault_stage& stage) {
    stage.model->rollback_transaction_all();
    EXPECT_FALSE(stage.model->in_transaction());
    EXPECT_EQ(broken_links(*stage.model), "");
    return {stage.dump(), stage.model->message_count(), stage.past()};
}

void expect_further_edit(fault_stage& stage) {
    const std::string before = stage.dump();
    EXPECT_TRUE(stage.change([&] {
        object* const first = stage.fw.create_object(stage.type, stage.root);
        object* const second = stage.fw.create_object(stage.type, stage.root);
        return first && second && first->set_property(props::text, text("further")) &&
               second->add_inherits_from(first) && second->set_property(props::reference, reference(first));
    }));
    const std::string after = stage.dump();
    EXPECT_NE(after, before);
    EXPECT_EQ(broken_links(*stage.model), "");
    stage.model->undo();
    EXPECT_EQ(stage.dump(), before);
    stage.model->redo();
    EXPECT_EQ(stage.dump(), after);
    stage.model->undo();
}

} // namespace

fault_outcome expected_outcome(const fault_scenario& scenario, u32 type) {
    fault_outcome out;
    {
        fault_stage stage{type};
        if (scenario.prepare) scenario.prepare(stage);
        out.before = moment_of(stage);
    }
    fault_stage stage{type};
    if (scenario.prepare) scenario.prepare(stage);
    EXPECT_TRUE(scenario.run(stage)) << "nothing has failed";
    EXPECT_FALSE(stage.model->in_transaction());
    out.after = moment_of(stage);
    return out;
}

void expect_usable(const fault_scenario& scenario, fault_stage& stage, const fault_outcome& outcome,
                   bool claims_done) {
    const fault_outcome::moment now = moment_of(stage);
    const bool has_messages_left = scenario.drops_messages && now.messages > outcome.after.messages;
    const bool is_after =
        now.dump == outcome.after.dump && (now.messages == outcome.after.messages || has_messages_left);
    const fault_outcome::moment& expected = is_after ? outcome.after : outcome.before;
    EXPECT_TRUE(is_after || !claims_done);
    EXPECT_EQ(now.dump, expected.dump);
    if (!is_after || !has_messages_left) {
        EXPECT_EQ(now.messages, expected.messages);
        EXPECT_EQ(now.past, expected.past);
    }
    expect_further_edit(stage);
}

namespace {

/// \returns whether anything failed
bool run_with(fault& what, const fault_scenario& scenario, u32 type, const fault_outcome& outcome) {
    fault_stage stage{type};
    if (scenario.prepare) scenario.prepare(stage);
    bool done = false;
    what.begin();
    try {
        done = scenario.run(stage);
    } catch (const std::bad_alloc&) {
    } catch (const thrown_by_code&) {}
    const bool failed = what.end();
    expect_usable(scenario, stage, outcome, done);
    return failed;
}

/// Long scenarios are sampled: the first faults all, then one in so many.
long next(long n, long in_full) { return n < in_full || all_faults_wanted() ? n + 1 : n + 1 + n / 10; }

class no_fault final : public fault {
    void begin() override {}
    bool end() override { return false; }
};

} // namespace

bool all_faults_wanted() {
    static const bool wanted = std::getenv("KELM_FAULTS_ALL") != nullptr;
    return wanted;
}

void expect_usable_whatever_fails(const fault_scenario& scenario, u32 type, long in_full,
                                  const std::function<std::unique_ptr<fault>(long)>& fault_number) {
    const fault_outcome outcome = expected_outcome(scenario, type);
    no_fault none;
    run_with(none, scenario, type, outcome); // what is made once a process is made now
    for (long n = 1; !testing::Test::HasFailure(); n = next(n, in_full)) {
        SCOPED_TRACE(n);
        const std::unique_ptr<fault> what = fault_number(n);
        const long before = live_blocks();
        const bool failed = run_with(*what, scenario, type, outcome);
        EXPECT_EQ(live_blocks(), before) << "blocks are left";
        if (!failed) break;
    }
}

} // namespace kelm::test
