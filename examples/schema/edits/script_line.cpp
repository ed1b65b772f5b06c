// Cuts a line of a script into words, up to its comment.
// Only double quotes quote; a doubled one stands for itself.
#include "edits/script_line.h"

#include "printing/text.h"
#include "schema/characters.h"
#include "schema/identifiers.h"

#include <algorithm>

namespace schema {

namespace {

constexpr std::string_view signs = ".,()+-";

std::size_t quoted_length(std::string_view text) {
    for (std::size_t at = text.find('"', 1); at != std::string_view::npos; at = text.find('"', at + 2))
        if (text.substr(at, 2) != "\"\"") return at + 1;
    throw script_error("a quoted name does not end");
}

/// \param text  not empty
std::size_t word_length(std::string_view text) {
    if (text.front() == '"') return quoted_length(text);
    if (signs.find(text.front()) != std::string_view::npos) return 1;
    const auto end = std::find_if_not(text.begin(), text.end(), is_word);
    if (end == text.begin()) throw script_error(std::string("unexpected character ") + text.front());
    return static_cast<std::size_t>(end - text.begin());
}

} // namespace

script_line split(std::string_view line) {
    if (valid_utf8(line) != line) throw script_error("the line is not UTF-8");
    if (line.find('\0') != std::string_view::npos) throw script_error("the line holds a zero byte");
    script_line found;
    for (;;) {
        const auto begin = std::find_if_not(line.begin(), line.end(), is_space);
        const bool spaced = begin != line.begin() && !found.words.empty();
        line.remove_prefix(static_cast<std::size_t>(begin - line.begin()));
        if (line.empty() || line.front() == '#') return found;
        const std::string_view raw = line.substr(0, word_length(line));
        found.words.push_back({unquoted(raw), raw.front() == '"', spaced});
        if (spaced) found.text += ' ';
        found.text += raw;
        line.remove_prefix(raw.size());
    }
}

} // namespace schema
