// Each allocation of each scenario failed in turn: nothing leaks, and the model is as before or as after.
// Code of an application that throws, and streams that fail, have tests of their own.
#include "tests/faults/failing_memory.h"
#include "tests/faults/fault_stage.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

namespace kelm::test {
namespace {

/// How memory runs out.
enum class shortage {
    once,            ///< one allocation fails
    for_good,        ///< that one and all behind it, until the scenario has come back
    of_slabs,        ///< the free lists find no room, and none for a slab
    of_message_slabs ///< the same of those for messages
};

bool is_of_lists(shortage how) { return how == shortage::of_slabs || how == shortage::of_message_slabs; }

class memory_fault final : public fault {
public:
    memory_fault(long n, shortage how)
        : how_(how),
          plan_(is_of_lists(how) ? memory_plan{1, true, free_list::slab_size}
                                 : memory_plan{n, how == shortage::for_good, 0}),
          room_(static_cast<std::size_t>(n - 1) * free_list::coarse) {}
    void begin() override {
        if (is_of_lists(how_))
            lists_.emplace(how_ == shortage::of_slabs ? free_list::state : free_list::recorded, room_);
        memory_.emplace(plan_);
    }
    bool end() override {
        const bool failed = failing_memory::failures() != 0;
        memory_.reset();
        lists_.reset();
        return failed;
    }

private:
    shortage how_;
    memory_plan plan_;
    std::size_t room_;
    std::optional<short_lists> lists_;
    std::optional<failing_memory> memory_;
};

struct memory_row {
    fault_scenario scenario;
    shortage how;
};
void PrintTo(const memory_row& row, std::ostream* out) { *out << row.scenario.name; }

class memory : public testing::TestWithParam<memory_row> {};

TEST_P(memory, that_runs_out_leaves_a_model_that_can_be_used) {
    const shortage how = GetParam().how;
    expect_usable_whatever_fails(GetParam().scenario, types::thing, how == shortage::once ? 200 : 50,
                                 [how](long n) { return std::make_unique<memory_fault>(n, how); });
}

std::vector<memory_row> rows() {
    std::vector<memory_row> out;
    for (const fault_scenario& each : fault_scenarios()) {
        out.push_back({each, shortage::once});
        out.push_back({each, shortage::for_good});
        if (!free_list::enabled) continue;
        out.push_back({each, shortage::of_slabs});
        out.push_back({each, shortage::of_message_slabs});
    }
    return out;
}

std::string name_of(const testing::TestParamInfo<memory_row>& row) {
    static const char* const endings[] = {"once", "for_good", "of_slabs", "of_message_slabs"};
    return std::string{row.param.scenario.name} + "_" + endings[static_cast<int>(row.param.how)];
}

INSTANTIATE_TEST_SUITE_P(faults, memory, testing::ValuesIn(rows()), name_of);

} // namespace
} // namespace kelm::test
