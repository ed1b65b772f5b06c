// Changes that inheritors see, timed as their number grows: side by side, and one behind another.
// Operations that nobody inherits are operations.cpp.
#include "workload_tree.h"

#include <kelm/subject.h>

#include <benchmark/benchmark.h>

namespace {

using namespace kelm;

/// Counts what it hears, so that a change which somebody did not see is no result.
class counter final : public observer_impl {
public:
    bool update(subject*, message*) override {
        ++heard;
        return true;
    }
    benchmark::IterationCount heard = 0;
};

enum class shape { side_by_side, behind_one_another };

/// A base and objects that inherit from it, each observed; one transaction is open.
class inheriting_model {
public:
    inheriting_model(shape what, benchmark::IterationCount count) {
        workload::start();
        built_ = workload::build(1);
        built_.model->begin_transaction("Inherit");
        base = make();
        second_base = make();
        second_base->set_property(workload::length_property, property<int>{2});
        last = base;
        for (benchmark::IterationCount i = 0; i != count; ++i) {
            object* const each = make();
            each->add_inherits_from(what == shape::side_by_side ? base : last);
            each->attach(&ears);
            last = each;
        }
        built_.model->end_transaction();
        built_.model->clear_history();
        built_.model->begin_transaction("Measure");
    }
    inheriting_model(const inheriting_model&) = delete;
    inheriting_model& operator=(const inheriting_model&) = delete;
    ~inheriting_model() { workload::close(built_); }

    object* base = nullptr;
    object* second_base = nullptr;
    object* last = nullptr;
    counter ears;

private:
    object* make() {
        return framework::instance().create_object(workload::attribute_type, built_.objects[1]);
    }

    workload::tree built_;
};

/// \param told  messages that each inheritor hears of one change
template <class Change>
void measure(benchmark::State& state, shape what, benchmark::IterationCount told, Change&& change) {
    inheriting_model in{what, state.range(0)};
    int value = 0;
    for (auto _ : state) benchmark::DoNotOptimize(change(in, ++value));
    if (in.ears.heard != state.iterations() * state.range(0) * told)
        state.SkipWithError("not every inheritor has heard of every change");
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

bool set_length(object* of, int value) {
    return of->set_property(workload::length_property, property<int>{value});
}

void set_a_value_seen_side_by_side(benchmark::State& state) {
    measure(state, shape::side_by_side, 1,
            [](inheriting_model& in, int value) { return set_length(in.base, value); });
}

void set_a_value_seen_down_a_chain(benchmark::State& state) {
    measure(state, shape::behind_one_another, 1,
            [](inheriting_model& in, int value) { return set_length(in.base, value); });
}

/// The base itself gets a base, or loses it: its inheritors gain or lose a value that nobody has set.
void change_a_list_seen_side_by_side(benchmark::State& state) {
    measure(state, shape::side_by_side, 1, [](inheriting_model& in, int value) {
        return value % 2 == 1 ? in.base->add_inherits_from(in.second_base)
                              : in.base->cancel_inherits_from(in.second_base);
    });
}

void read_a_value_up_a_chain(benchmark::State& state) {
    inheriting_model in{shape::behind_one_another, state.range(0)};
    set_length(in.base, 1);
    for (auto _ : state) {
        const value_ptr found = in.last->get_property(workload::length_property);
        if (!found) state.SkipWithError("the value has not been found");
        benchmark::DoNotOptimize(found);
    }
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void each_size(benchmark::internal::Benchmark* of) {
    of->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond)->Complexity(benchmark::oN);
}

BENCHMARK(set_a_value_seen_side_by_side)->Apply(each_size);
BENCHMARK(set_a_value_seen_down_a_chain)->Apply(each_size);
BENCHMARK(change_a_list_seen_side_by_side)->Apply(each_size);
BENCHMARK(read_a_value_up_a_chain)->Apply(each_size);

} // namespace
