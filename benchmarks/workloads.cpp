// The common workloads at several sizes: a line of JSON a measurement.
// Each figure is the median of five runs after a warm-up, in a process of its own, and verified.
#include "workload_tree.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace workload;

constexpr std::size_t runs = 5;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "workloads: %s\n", what);
    std::_Exit(1);
}

double seconds_of(const std::function<void()>& work) {
    const auto from = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - from).count();
}

double median(std::array<double, runs> figures) {
    std::ranges::sort(figures);
    return figures[runs / 2];
}

std::size_t resident_bytes() {
    std::ifstream in("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    in >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

void print(const char* name, std::size_t n, double seconds, double bytes_per_object = -1) {
    std::printf(R"({"workload":"%s","n":%zu,"seconds":%.6f)", name, n, seconds);
    if (bytes_per_object >= 0) std::printf(R"(,"bytes_per_object":%.0f)", bytes_per_object);
    std::printf("}\n");
    std::fflush(stdout);
}

void verify_tree(const tree& built) {
    std::vector<kelm::u32> ids;
    if (built.model->object_ids(ids) != built.objects.size() + 1)
        fail("the tree has not the objects it should");
    if (!built.model->can_undo()) fail("the tree was not recorded");
    if (kelm::object_name(built.objects.front()) != "pkg_0") fail("a name is wrong");
}

/// Builds the whole tree in one transaction.
void measure_build(std::size_t wanted) {
    const std::size_t before = resident_bytes();
    tree built = build(wanted); // the warm-up, and the one that finds fresh memory
    const std::size_t n = built.objects.size();
    const double bytes =
        static_cast<double>(resident_bytes() - before - n * sizeof(void*)) / static_cast<double>(n);
    verify_tree(built);
    close(built);
    std::array<double, runs> figures{};
    for (double& figure : figures) {
        figure = seconds_of([&] { built = build(wanted); });
        verify_tree(built);
        close(built);
    }
    print("W1", n, median(figures), bytes);
}

/// Reads every name ten times, an owned copy each.
void measure_reads(std::size_t wanted) {
    tree built = build(wanted);
    const auto read_all = [&] {
        std::size_t characters = 0;
        for (int round = 0; round != 10; ++round)
            for (const kelm::object* each : built.objects) {
                const kelm::value_ptr name = each->get_property(kelm::property_id::name);
                characters += static_cast<const kelm::property<std::string>&>(*name).value.size();
            }
        return characters;
    };
    const std::size_t expected = read_all();
    std::array<double, runs> figures{};
    for (double& figure : figures)
        figure = seconds_of([&] {
            if (read_all() != expected) fail("a name was read differently");
        });
    print("W4", built.objects.size(), median(figures));
    close(built);
}

/// A process of its own finds memory as a fresh application does.
void in_own_process(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        start();
        work();
        std::_Exit(0);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) < 0 || status != 0) fail("a measurement failed");
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::size_t> sizes;
    for (int i = 1; i < argc; ++i)
        sizes.push_back(static_cast<std::size_t>(std::strtoull(argv[i], nullptr, 10)));
    if (sizes.empty()) sizes = {10'000, 100'000, 1'000'000};
    for (const std::size_t n : sizes) {
        in_own_process([&] { measure_build(n); });
        in_own_process([&] { measure_reads(n); });
    }
}
