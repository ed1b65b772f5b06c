// Single operations of the core, timed.
// How whole workloads behave as models grow is workloads.cpp.
#include "workload_tree.h"

#include <benchmark/benchmark.h>

namespace {

using namespace kelm;

/// A small model with one open transaction, so that nothing but the operation itself is measured.
class small_model : public benchmark::Fixture {
public:
    void SetUp(benchmark::State&) override {
        workload::start();
        built_ = workload::build(1000);
        entity_ = built_.objects[1];
        attribute_ = built_.objects[2];
        built_.model->begin_transaction("Measure");
    }
    void TearDown(benchmark::State&) override { workload::close(built_); }

protected:
    workload::tree built_;
    object* entity_ = nullptr;
    object* attribute_ = nullptr;
};

BENCHMARK_F(small_model, read_a_name)(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(attribute_->get_property(property_id::name));
}

BENCHMARK_F(small_model, set_a_name)(benchmark::State& state) {
    const property<std::string> name{"another name"};
    for (auto _ : state) benchmark::DoNotOptimize(attribute_->set_property(property_id::name, name));
}

BENCHMARK_F(small_model, make_an_object)(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(framework::instance().create_object(workload::attribute_type, entity_));
}

BENCHMARK_F(small_model, find_an_object)(benchmark::State& state) {
    const u32 id = attribute_->id();
    for (auto _ : state) benchmark::DoNotOptimize(built_.model->find_object(id));
}

} // namespace

BENCHMARK_MAIN();
