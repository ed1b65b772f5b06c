// From a script, line by line, to the editor.
// A line is run before the next is read, so that a script may be typed.
#include "edit.h"

#include "editor.h"
#include "load.h"

#include <cerrno>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <system_error>

namespace schema {

namespace {

[[noreturn]] void refuse_script(const std::string& path) {
    const std::string reason = errno ? ": " + std::generic_category().message(errno) : std::string();
    throw std::runtime_error("cannot read script \"" + path + '"' + reason);
}

void run_line(editor& on, const std::string& line, std::size_t number) {
    try {
        on.run(line);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("line " + std::to_string(number) + ": " + error.what());
    }
}

} // namespace

void edit(const std::string& source, const std::string& script, rules& shared, std::ostream& out) {
    std::ifstream file;
    errno = 0;
    if (script != "-") file.open(script, std::ios::binary);
    if (!file) refuse_script(script);
    std::istream& lines = script == "-" ? std::cin : file;

    editor on(load_database(source), shared, out);
    std::string line;
    errno = 0;
    for (std::size_t number = 1; std::getline(lines, line); ++number) run_line(on, line, number);
    if (lines.bad()) refuse_script(script);
}

} // namespace schema
