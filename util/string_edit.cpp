// Helpers that look for and change characters and words in a string.
// Not those for delimiters and path names (string_paths.cpp) or comments (string_comments.cpp).
#include <kelm/string_helpers.h>

#include "util/ascii.h"

#include <string_view>

namespace kelm {

namespace {

constexpr std::string_view white = "\t\n\r ";

/// Steps over one '"' at `pos`, if there is one.
void skip_quote(std::size_t& pos, const std::string& s) {
    if (pos < s.size() && s[pos] == '"') ++pos;
}

} // namespace

bool whitespace(int c) { return c == '\t' || c == '\n' || c == '\r' || c == ' '; }

void remove_trailing_whitespace(std::string& s) { s.erase(s.find_last_not_of(white) + 1); }

void remove_leading_whitespace(std::string& s) { s.erase(0, s.find_first_not_of(white)); }

void remove_trailing_char(std::string& s, char c) {
    if (s.ends_with(c)) s.pop_back();
}

void str_skip_all_white_chars(std::size_t& pos, const std::string& s) {
    while (pos < s.size() && is_space(s[pos])) ++pos;
}

bool str_is_identifier_char(char c) { return is_alnum(c) || c == '_' || c == '#' || c == '$'; }

bool strip_carrige_return(std::string& s) { return std::erase(s, '\r') != 0; }

bool add_carrige_return(std::string& s) {
    // Into a second string: an insertion in place would move the rest of the text once a line.
    std::string longer;
    longer.reserve(s.size());
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (i != 0 && s[i] == '\n' && s[i - 1] != '\r') longer += '\r';
        longer += s[i];
    }
    const bool any = longer.size() != s.size();
    s.swap(longer);
    return any;
}

bool string_starts_with(const std::string& s, const std::string& p) {
    return p.size() <= s.size() && same_bytes_no_case(std::string_view(s).substr(0, p.size()), p);
}

bool string_ends_with(const std::string& s, const std::string& p) {
    return p.size() <= s.size() && same_bytes_no_case(std::string_view(s).substr(s.size() - p.size()), p);
}

std::size_t str_contains_str(const std::string& s, const std::string& x, bool no_case) {
    const auto same = [no_case](char a, char b) { return no_case ? to_lower(a) == to_lower(b) : a == b; };
    std::size_t pos = 0;
    str_skip_all_white_chars(pos, s);
    if (pos == s.size()) return std::string::npos;
    if (x.empty()) return pos;

    std::size_t matched = 0;
    for (; pos < s.size(); ++pos) {
        // Kept: only this character may start again, none of those matched before it. A search that goes back
        // would find what this one misses, such as "aab" in "aaab", and callers count on its answers.
        if (!same(s[pos], x[matched])) matched = 0;
        if (same(s[pos], x[matched])) ++matched;
        if (matched == x.size()) return pos + 1 - matched;
    }
    return std::string::npos;
}

const char* remove_substr_from_begining(const char* s, const char* x) {
    if (!s) return "";
    // Kept: the characters are not compared; callers have found `x` at the start before they ask.
    for (; x && *x && *s; ++x) ++s;
    while (is_space(*s)) ++s;
    return s;
}

bool remove_word(std::string& s, const std::string& word, bool quoted) {
    std::size_t start = 0;
    str_skip_all_white_chars(start, s);
    if (start == s.size()) return false;

    std::size_t pos = start;
    if (quoted) skip_quote(pos, s);
    if (!same_bytes_no_case(std::string_view(s).substr(pos, word.size()), word)) return false;
    pos += word.size();
    // A quote behind the word is taken on its own: it closes nothing that had to be opened.
    if (quoted) skip_quote(pos, s);
    if (pos < s.size() && str_is_identifier_char(s[pos])) return false;
    s.erase(start, pos - start);
    return true;
}

void pluralize_name(std::string& name) {
    const char last = name.empty() ? '\0' : to_lower(name.back());
    if (last == 'x') {
        name += "es";
    } else if (last == 'y') {
        // Kept: the letter before the 'y' does not count, so "Key" becomes "Keies"; names that were made so
        // must be found again.
        name.pop_back();
        name += "ies";
    } else {
        name += 's';
    }
}

void mixed_case(std::string& s) {
    bool first = true;
    for (char& c : s) {
        c = first ? to_upper(c) : to_lower(c);
        first = whitespace(c);
    }
}

void lower_case(std::string& s) {
    for (char& c : s) c = to_lower(c);
}

} // namespace kelm
