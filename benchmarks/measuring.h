// How a figure is taken: medians, the line of JSON a measurement, and what to do when it went wrong.
// What is measured is in the workloads.
#pragma once

#include <array>
#include <cstddef>
#include <functional>

namespace workload {

/// Of each measurement, after a warm-up.
inline constexpr std::size_t runs = 5;
using figures = std::array<double, runs>;

/// Says what is wrong on the error stream, and ends the process.
[[noreturn]] void fail(const char* what);

double seconds_of(const std::function<void()>& work);
double median(figures measured);
/// \returns the memory that the process holds
std::size_t resident_bytes();

/// \param bytes_per_object  below 0: not measured
void print(const char* name, std::size_t n, double seconds, double bytes_per_object = -1);

/// Saving to memory and loading into a fresh model: W5 as a stream, W6 as a document.
void measure_stream(std::size_t wanted);
void measure_document(std::size_t wanted);
/// A stream with the history of 100,000 transactions.
void measure_stored_history(std::size_t wanted);
/// Summing up a transaction that made all objects, and one that renamed all.
void measure_delta(std::size_t wanted);
/// Copying and pasting one tenth of the packages: W8; then all of them.
void measure_copy(std::size_t wanted);
/// The same with objects that all lie below one root, copied one by one.
void measure_siblings(std::size_t wanted);

} // namespace workload
