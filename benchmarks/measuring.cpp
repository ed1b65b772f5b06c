// Clocks, memory and the form of the figures.
// What is measured is in the workloads.
#include "measuring.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace workload {

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "workloads: %s\n", what);
    std::_Exit(1);
}

double seconds_of(const std::function<void()>& work) {
    const auto from = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - from).count();
}

double median(figures measured) {
    std::ranges::sort(measured);
    return measured[runs / 2];
}

std::size_t resident_bytes() {
    std::ifstream in("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    in >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

void print(const char* name, std::size_t n, double seconds, double bytes_per_object) {
    std::printf(R"({"workload":"%s","n":%zu,"seconds":%.6f)", name, n, seconds);
    if (bytes_per_object >= 0)
        std::printf(R"(,"bytes_per_object":%.0f})", bytes_per_object);
    else
        std::printf(R"(,"bytes_per_object":null})");
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace workload
