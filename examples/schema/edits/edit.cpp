// From a script, line by line, to the editor.
// A line is run before the next is read, so that a script may be typed.
#include "edits/edit.h"

#include "edits/editor.h"
#include "files/file_error.h"
#include "files/file_kind.h"
#include "files/model_file.h"
#include "log/signer.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string_view>

namespace schema {

namespace {

[[noreturn]] void refuse_script(const std::string& path) {
    throw file_error("cannot read script " + quoted(path) + system_reason());
}

void run_line(editor& on, const std::string& line, std::size_t number) {
    try {
        on.run(line);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("line " + std::to_string(number) + ": " + error.what());
    }
}

/// Some editors put a mark before the first letter of what is UTF-8.
std::string without_mark(const std::string& line) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return line.starts_with(mark) ? line.substr(mark.size()) : line;
}

/// Standard input tells the C library alone that a read has failed.
bool has_failed(const std::istream& lines) {
    return lines.bad() || (&lines == &std::cin && std::ferror(stdin));
}

void run_script(editor& on, const std::string& script) {
    std::ifstream file;
    errno = 0;
    if (script != "-") file.open(script, std::ios::binary);
    if (!file) refuse_script(script);
    std::istream& lines = script == "-" ? std::cin : file;
    std::string line;
    errno = 0;
    for (std::size_t number = 1; std::getline(lines, line); ++number)
        run_line(on, number == 1 ? without_mark(line) : line, number);
    if (has_failed(lines)) refuse_script(script);
}

/// \returns empty when nothing is to be saved
std::string target_of(const edit_request& wanted) {
    if (!wanted.target.empty()) return wanted.target;
    return kind_of_file(wanted.source) == file_kind::database ? std::string() : wanted.source;
}

} // namespace

void edit(const edit_request& wanted, rules& shared, std::ostream& out) {
    const std::string target = target_of(wanted);
    if (!target.empty()) require_no_database(target); // before the script has been run in vain
    kelm::model& model = load_schema(wanted.source, shared);
    {
        const signer signing(model, wanted.by);
        editor on(model, shared, out);
        run_script(on, wanted.script);
    }
    if (!target.empty()) save_schema(model, target, shared);
}

} // namespace schema
