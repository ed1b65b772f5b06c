// Helpers that remove comments from text.
// Not a scanner: quotes are not looked at, so a comment mark within quotes counts.
#include <kelm/string_helpers.h>

#include <string_view>

namespace kelm {

namespace {

/// The position behind the first line end at or after `from`; npos when there is none.
std::size_t behind_line_end(std::string_view s, std::size_t from) {
    const std::size_t end = s.find_first_of("\r\n", from);
    if (end == std::string_view::npos) return end;
    return s.substr(end).starts_with("\r\n") ? end + 2 : end + 1;
}

} // namespace

void strip_hyphen_comments(std::string& s) {
    std::string kept;
    kept.reserve(s.size());
    std::size_t from = 0;
    for (;;) {
        const std::size_t comment = s.find("--", from);
        const std::size_t behind =
            comment == std::string::npos ? std::string::npos : behind_line_end(s, comment + 2);
        // Kept: a comment that the string ends in stays, since it has no line end to be removed with.
        if (behind == std::string::npos) break;
        kept.append(s, from, comment - from);
        from = behind;
    }
    kept.append(s, from);
    s.swap(kept);
}

void str_strip_comments(std::string& s) {
    // Kept: both marks are looked for from the start of what is left, not the closing one behind the opening
    // one. So a "*/" ahead ends the work, and "/*/" is a whole comment.
    //
    // `kept` holds text known to be free of marks. Its last character goes back before the rest after each
    // comment, since a mark may come together from both sides; so each character is looked at a few times
    // in all, however many comments there are.
    std::string kept;
    std::size_t from = 0;
    for (;;) {
        const std::size_t open = s.find("/*", from);
        const std::size_t close = s.find("*/", from);
        if (open == std::string::npos || close == std::string::npos || close < open) break;
        kept.append(s, from, open - from);
        from = close + 2;
        if (!kept.empty()) {
            s[--from] = kept.back();
            kept.pop_back();
        }
    }
    kept.append(s, from);
    s.swap(kept);
    strip_hyphen_comments(s);
}

} // namespace kelm
