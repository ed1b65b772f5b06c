// Counts, and draws when enough more is counted.
// Nobody looks unless somebody has asked to.
#include "progress/progress.h"

#include <filesystem>
#include <utility>

namespace schema {

namespace {

progress_display* display = nullptr;

} // namespace

void show_progress_on(progress_display* where) { display = where; }

progress::progress(std::string what, const progress_unit& unit, std::size_t total)
    : what_(std::move(what)), unit_(unit), total_(total) {}

progress::~progress() {
    if (display && drawn_) display->clear();
}

void progress::reach(std::size_t done) {
    done_ = done;
    if (!display || done_ / unit_.grain == drawn_ / unit_.grain) return;
    drawn_ = done_;
    display->show(line());
}

std::string progress::line() const {
    const std::string number = std::to_string(done_ / unit_.divisor);
    const std::string of = total_ ? " of " + std::to_string(total_ / unit_.divisor) : std::string();
    return what_ + ": " + number + of + ' ' + unit_.name;
}

progress_steps::progress_steps(const std::string& what, int total, bool is_long)
    : what_(what), total_(total), is_long_(is_long) {}

progress_steps::~progress_steps() {
    if (display && is_long_ && begun_) display->clear();
}

void progress_steps::begin_next() {
    ++begun_;
    if (display && is_long_)
        display->show(what_ + ": step " + std::to_string(begun_) + " of " + std::to_string(total_));
}

std::string short_name(const std::string& path) { return std::filesystem::path(path).filename().string(); }

} // namespace schema
