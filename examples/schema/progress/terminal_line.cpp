// Carriage return, text, erase to the end of the line.
// A line that is as wide as the terminal would begin another one, which nobody could take back.
#include "progress/terminal_line.h"

#include "printing/text.h"

#include <cstdlib>
#include <iostream>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

namespace schema {

namespace {

constexpr std::size_t usual_width = 80;
constexpr std::string_view mark_of_cut = "...";

std::size_t terminal_width() {
    winsize size{};
    const bool known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > mark_of_cut.size() + 1;
    return known ? size.ws_col : usual_width;
}

} // namespace

bool terminal_line::is_possible() {
    const char* terminal = std::getenv("TERM");
    return ::isatty(STDERR_FILENO) && terminal && *terminal && std::string_view(terminal) != "dumb";
}

void terminal_line::show(const std::string& line) {
    const std::string text = shortened(printable(line), terminal_width() - 1 - mark_of_cut.size());
    std::cerr << '\r' << text << "\x1b[K" << std::flush;
}

void terminal_line::clear() { std::cerr << "\r\x1b[K" << std::flush; }

} // namespace schema
