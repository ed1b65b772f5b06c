// Hooks, observers, rules and values that throw at each call of each scenario: nothing leaks, and the model is as before
// or as after.
// What a single hook that throws does to the in-semantic mark is every_hook_test.
#include "tests/faults/fault_stage.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

namespace kelm::test {
namespace {

class code_fault final : public fault {
public:
    code_fault(code_of whom, long n, bool for_good) : whom_(whom), n_(n), for_good_(for_good) {}
    void begin() override { code_.emplace(whom_, n_, for_good_); }
    bool end() override {
        const bool failed = failing_code::failures() != 0;
        code_.reset();
        return failed;
    }

private:
    code_of whom_;
    long n_;
    bool for_good_;
    std::optional<failing_code> code_;
};

struct code_row {
    fault_scenario scenario;
    code_of whom;
    bool for_good;
};
void PrintTo(const code_row& row, std::ostream* out) { *out << row.scenario.name; }

class code : public testing::TestWithParam<code_row> {};

TEST_P(code, that_throws_leaves_a_model_that_can_be_used) {
    expect_usable_whatever_fails(
        GetParam().scenario, types::hooked, GetParam().for_good ? 50 : 200,
        [](long n) { return std::make_unique<code_fault>(GetParam().whom, n, GetParam().for_good); });
}

std::vector<code_row> rows() {
    std::vector<code_row> out;
    for (const bool for_good : {false, true}) {
        for (const fault_scenario& each : fault_scenarios())
            for (const code_of whom : {code_of::hook, code_of::observer, code_of::rule, code_of::value})
                // An observer that throws again when a guard rolls back ends the process.
                if (!(each.has_guard && for_good && whom == code_of::observer))
                    out.push_back({each, whom, for_good});
    }
    return out;
}

std::string name_of(const testing::TestParamInfo<code_row>& row) {
    static const char* const whose[] = {"hook", "observer", "rule", "value"};
    return std::string{row.param.scenario.name} + "_" + whose[static_cast<int>(row.param.whom)] +
           (row.param.for_good ? "_for_good" : "_once");
}

INSTANTIATE_TEST_SUITE_P(faults, code, testing::ValuesIn(rows()), name_of);

} // namespace
} // namespace kelm::test
