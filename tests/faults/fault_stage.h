// A model with something of everything and a past, on which a scenario runs until what it needs fails.
// What fails is told by the tests.
#pragma once

#include "tests/faults/failing_code.h"
#include "tests/support/dom_document.h"
#include "tests/support/world.h"

#include <kelm/copier.h>
#include <kelm/delta.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace kelm::test {

/// The model, its objects, and what scenarios need besides.  It has four closed transactions behind it.
///
///     root   a (p, q, r)   b   c   d   heir   linked
///
/// `b`, `c` and `heir` inherit from `a`, `d` from `c`; `b` and `c` refer to `a`, in values and in lists; `d` observes `a`,
/// and so do more other observers than a notification keeps on its stack.  One observer hears of everything.
class fault_stage {
public:
    /// \param type  of `a`, `b`, `c`, `d` and `r`, and of what scenarios make.  With types::hooked all hooks run code.
    explicit fault_stage(u32 type = types::thing);
    fault_stage(const fault_stage&) = delete;
    fault_stage& operator=(const fault_stage&) = delete;
    ~fault_stage();

    /// \returns a text of all objects, and of the user-defined properties that types have
    std::string dump() const;
    void begin(const std::string& name) { model->begin_transaction(name); }
    void end() { model->end_transaction(); }
    /// Runs a change in a transaction of its own.  \returns whether it and the end of the transaction passed
    template <class Change>
    bool change(Change&& what) {
        model->begin_transaction("change");
        if (!what() || !model->in_transaction()) return false;
        return model->end_transaction() != nullptr;
    }
    object* find(u32 id) const { return model->find_object(id); }
    /// A second model.
    object* open_other();
    /// Has scenarios read what this writes.
    void keep_bytes(bool with_history);
    /// Reads messages for the second model, plays them there when that is wanted, and frees them.
    bool read_log(std::istream& from, bool is_replay);
    /// Goes all the way back and forth again.  \returns the states on the way, the oldest first
    std::vector<std::string> past();

    framework& fw;
    const u32 type;
    object* const root;
    kelm::model* const model;
    object* a = nullptr;
    object* b = nullptr;
    object* c = nullptr;
    object* d = nullptr;
    object* p = nullptr;
    object* q = nullptr;
    object* r = nullptr;
    object* heir = nullptr;
    object* linked = nullptr;
    kelm::model* other = nullptr;           ///< see open_other()
    std::string bytes;                      ///< see keep_bytes()
    std::unique_ptr<dom_document> document; ///< to write into or read from
    shared_ptr<copier> clip;
    std::vector<code_observer> observers{9};
    code_observer everywhere;

private:
    void build();
    void change_values();
    void change_lists();
    void change_structure();
};

/// One thing to do to a stage.
struct fault_scenario {
    const char* name;
    void (*prepare)(fault_stage&); ///< null for nothing
    bool (*run)(fault_stage&);     ///< what is meant to fail.  \returns what it answered
    bool has_guard = false;        ///< has a guard of a transaction, whose end must not fail
    bool drops_messages = false;   ///< leaves it to the next transaction where that fails
};

bool undo(fault_stage& s);
bool redo(fault_stage& s);
/// What a scenario of redo prepares: a transaction, undone.
template <void (*Prepare)(fault_stage&)>
void undone(fault_stage& s) {
    Prepare(s);
    undo(s);
}

/// \returns all scenarios
std::vector<fault_scenario> fault_scenarios();
std::vector<fault_scenario> edit_scenarios();
std::vector<fault_scenario> structure_scenarios();
std::vector<fault_scenario> history_scenarios();
std::vector<fault_scenario> definition_scenarios();
std::vector<fault_scenario> stored_scenarios();
std::vector<fault_scenario> copy_scenarios();

/// What a run without a failure comes to.
struct fault_outcome {
    struct moment {
        std::string dump;
        std::size_t messages = 0;
        std::vector<std::string> past; ///< see fault_stage::past()
    };
    moment before; ///< with what is open rolled back
    moment after;
};

/// Something that fails while a scenario runs.
class fault {
public:
    fault() = default;
    fault(const fault&) = delete;
    fault& operator=(const fault&) = delete;
    virtual ~fault() = default;
    virtual void begin() = 0;
    /// \returns whether anything has failed
    virtual bool end() = 0;
};

/// \returns whether every fault is to be met, however long that takes: the environment has KELM_FAULTS_ALL
bool all_faults_wanted();

/// Runs a scenario again and again, with fault number 1, 2 and so on, until one is not met; expects that nothing leaks,
/// and all that expect_usable() tells.
/// \param in_full  the number of faults that are all met; behind it come samples
void expect_usable_whatever_fails(const fault_scenario& scenario, u32 type, long in_full,
                                  const std::function<std::unique_ptr<fault>(long)>& fault_number);

/// Runs a scenario that nothing fails.
fault_outcome expected_outcome(const fault_scenario& scenario, u32 type);

/// Expects a stage whose scenario failed, or came through all the same, to be as before or as after once what is open has
/// been rolled back; its past to be undone and redone; and a further edit to work.  What could be redone may be gone.
/// \param claims_done  whether the scenario answered that all was done
void expect_usable(const fault_scenario& scenario, fault_stage& stage, const fault_outcome& outcome,
                   bool claims_done);

} // namespace kelm::test
