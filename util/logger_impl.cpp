// The trace file of developers: stamps, formats, lines.
// Formats know %s and %% alone: every argument is a text, and ends at its first null like the format.
#include "util/logger_impl.h"

#include "util/complaint.h"
#include "util/process_state.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <initializer_list>

namespace kelm {

namespace {

constexpr const char* file_name = "kelm_logger.log";
constexpr std::size_t longest_formatted = 19999;

/// Puts the arguments in for each %s in turn; a missing one is empty, and what grows too long is cut.
std::string formatted(const std::string& format, std::initializer_list<const std::string*> arguments) {
    std::string out;
    const auto* next = arguments.begin();
    for (std::size_t i = 0; i < format.size() && format[i] != '\0'; ++i) {
        const char following = format[i] == '%' && i + 1 < format.size() ? format[i + 1] : '\0';
        if (following == 's') {
            if (next != arguments.end()) out += (*next++)->c_str();
            ++i;
        } else {
            out += format[i];
            if (following == '%') ++i;
        }
    }
    if (out.size() > longest_formatted) out.resize(longest_formatted);
    return out;
}

/// Date, time, and the seconds since the line before.
std::string stamp() {
    const std::time_t now = std::time(nullptr);
    const std::time_t interval = now - process().last_log_time;
    process().last_log_time = now;
    std::tm parts{};
    localtime_r(&now, &parts);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%m/%d/%y %H:%M:%S ", &parts);
    return text.data() + std::to_string(interval);
}

} // namespace

kelm_logger_impl::kelm_logger_impl() : stream_(file_name, std::ios::trunc) {
    if (!stream_) complain(std::string{"unable to open log file "} + file_name);
}

bool kelm_logger_impl::log(const std::string& text) {
    if (!stream_) return false;
    stream_ << stamp() << " :" << text << std::endl;
    return true;
}

bool kelm_logger_impl::log(const std::string& format, const std::string& a) {
    return log(formatted(format, {&a}));
}

bool kelm_logger_impl::log(const std::string& format, const std::string& a, const std::string& b) {
    return log(formatted(format, {&a, &b}));
}

bool kelm_logger_impl::log(const std::string& format, const std::string& a, const std::string& b,
                           const std::string& c) {
    return log(formatted(format, {&a, &b, &c}));
}

bool kelm_logger_impl::log(const std::string& format, const std::string& a, const std::string& b,
                           const std::string& c, const std::string& d) {
    return log(formatted(format, {&a, &b, &c, &d}));
}

bool kelm_logger_impl::log(const std::string& format, const std::string& a, const std::string& b,
                           const std::string& c, const std::string& d, const std::string& e) {
    return log(formatted(format, {&a, &b, &c, &d, &e}));
}

} // namespace kelm
