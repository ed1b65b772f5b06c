// Helpers for what stands around and between names: quotes, delimiters, '.' in paths, separators in lists.
// Not a parser: nothing here knows escapes or nesting.
#include <kelm/string_helpers.h>

#include <boost/tokenizer.hpp>

#include <string_view>
#include <utility>

namespace kelm {

namespace {

bool has_pair(std::string_view s, char open, char close) {
    return s.size() >= 2 && s.front() == open && s.back() == close;
}

/// Removes the first and the last character; `s` has both.
void drop_ends(std::string& s) {
    s.pop_back();
    s.erase(0, 1);
}

/// What closes where the caller gave `close`: 0 stands for "the same as open".
char closing(char open, char close) { return close == '\0' ? open : close; }

} // namespace

void strip_quotes(std::string& s, bool double_only) {
    if (has_pair(s, '"', '"') || (!double_only && has_pair(s, '\'', '\''))) drop_ends(s);
}

void trim_quotes(std::string& s) {
    if (has_pair(s, '"', '"') || has_pair(s, '\'', '\'') || has_pair(s, '`', '`') || has_pair(s, '[', ']'))
        drop_ends(s);
}

void str_remove_double_quotes(std::string& s) { std::erase(s, '"'); }

std::string strip_delimiter(const std::string& s, char open, char close) {
    return has_pair(s, open, closing(open, close)) ? s.substr(1, s.size() - 2) : s;
}

bool strip_delimiter2(std::string& s, char open, char close) {
    if (!has_pair(s, open, closing(open, close))) return false;
    drop_ends(s);
    return true;
}

std::string strip_delimiting_char_from_path_names(const std::string& s, char open, char close) {
    close = closing(open, close);
    std::string joined;
    joined.reserve(s.size());
    std::string_view rest = s;
    // Kept: a '.' between delimiters parts as well, so "[a.b]" stays as it is.
    for (;;) {
        const std::size_t dot = rest.find('.');
        const std::string_view part = rest.substr(0, dot);
        joined += has_pair(part, open, close) ? part.substr(1, part.size() - 2) : part;
        if (dot == std::string_view::npos) return joined;
        joined += '.';
        rest.remove_prefix(dot + 1);
    }
}

// By value: the text may be an element of `out`, which is emptied before it is read.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
std::size_t string_to_vector(std::string s, const std::string& separators, std::vector<std::string>& out) {
    // Made before `out` is emptied: `separators` may be one of its elements.
    const boost::char_separator<char> at_separators(separators.c_str(), "", boost::drop_empty_tokens);
    out.clear();
    for (std::string token : boost::tokenizer(s, at_separators)) {
        remove_leading_whitespace(token);
        remove_trailing_whitespace(token);
        out.push_back(std::move(token));
    }
    return out.size();
}

} // namespace kelm
