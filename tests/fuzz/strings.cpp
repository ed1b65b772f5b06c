// The helpers for strings, with any bytes.
// The first byte says how the rest is cut into a string, a word and two delimiters.
#include "tests/fuzz/fuzzing.h"

#include <kelm/string_helpers.h>

#include <cstring>

using kelm::fuzzing::choices;
using kelm::fuzzing::fail;

namespace {

constexpr auto nowhere = static_cast<std::size_t>(-1);

struct told {
    std::string text;
    std::string word;
    char open;
    char close;
};

void shortens(const std::string& from, const std::string& to, const char* what) {
    if (to.size() > from.size()) fail(std::string(what) + " makes longer");
}

/// What takes something away does not need to be told twice, where it takes away all there is.
template <class Strip>
void strips_all(const std::string& from, Strip&& strip, const char* what) {
    std::string once = from;
    strip(once);
    shortens(from, once, what);
    std::string twice = once;
    strip(twice);
    if (once != twice) fail(std::string(what) + " leaves some");
}

template <class Strip>
void strips_some(const std::string& from, Strip&& strip, const char* what) {
    std::string left = from;
    strip(left);
    shortens(from, left, what);
    if (from.find(left) == nowhere && !left.empty()) fail(std::string(what) + " changes what stays");
}

void white_space(const told& input) {
    strips_all(input.text, kelm::remove_trailing_whitespace, "remove_trailing_whitespace");
    strips_all(input.text, kelm::remove_leading_whitespace, "remove_leading_whitespace");
    strips_some(
        input.text, [&](std::string& s) { kelm::remove_trailing_char(s, input.open); },
        "remove_trailing_char");
    for (std::size_t from :
         {std::size_t{0}, input.text.size() / 2, input.text.size(), input.text.size() + 1}) {
        std::size_t pos = from;
        kelm::str_skip_all_white_chars(pos, input.text);
        if (pos < from || (pos > input.text.size() && pos != from)) fail("white space leads away");
    }
    std::string lines = input.text;
    kelm::strip_carrige_return(lines);
    const std::string bare = lines;
    kelm::add_carrige_return(lines);
    if (kelm::add_carrige_return(lines)) fail("a carriage return is put in twice");
    kelm::strip_carrige_return(lines);
    if (lines != bare) fail("carriage returns do not go as they came");
}

void finding(const told& input) {
    if (!kelm::string_starts_with(input.text, "") || !kelm::string_ends_with(input.text, ""))
        fail("nothing is missing");
    for (const bool no_case : {false, true}) {
        const std::size_t at = kelm::str_contains_str(input.text, input.word, no_case);
        if (at == nowhere) continue;
        if (at + input.word.size() > input.text.size()) fail("found behind the end");
        if (!no_case && input.text.compare(at, input.word.size(), input.word) != 0)
            fail("something else is found");
    }
    const char* const from = input.text.c_str();
    const char* const rest = kelm::remove_substr_from_begining(from, input.word.c_str());
    if (rest < from || rest > from + std::strlen(from)) fail("the rest lies elsewhere");
    for (const bool quoted : {false, true}) {
        std::string left = input.text;
        const bool was_there = kelm::remove_word(left, input.word, quoted);
        if (!was_there && left != input.text) fail("something is removed that was not there");
        shortens(input.text, left, "remove_word");
    }
}

void delimiters(const told& input) {
    for (const bool double_only : {false, true})
        strips_some(
            input.text, [&](std::string& s) { kelm::strip_quotes(s, double_only); }, "strip_quotes");
    strips_some(input.text, kelm::trim_quotes, "trim_quotes");
    strips_all(input.text, kelm::str_remove_double_quotes, "str_remove_double_quotes");
    const std::string copy = kelm::strip_delimiter(input.text, input.open, input.close);
    std::string in_place = input.text;
    if (kelm::strip_delimiter2(in_place, input.open, input.close) != (in_place != input.text) ||
        in_place != copy)
        fail("a copy and the string itself are stripped differently");
    shortens(input.text, kelm::strip_delimiting_char_from_path_names(input.text, input.open, input.close),
             "a path");
    std::vector<std::string> tokens{"old"};
    if (kelm::string_to_vector(input.text, input.word, tokens) != tokens.size())
        fail("another number of tokens");
    std::size_t all = 0;
    for (const std::string& each : tokens) all += each.size();
    if (all > input.text.size()) fail("tokens have more than the string");
}

void comments_and_names(const told& input) {
    strips_all(input.text, kelm::strip_hyphen_comments, "strip_hyphen_comments");
    std::string left = input.text;
    kelm::str_strip_comments(left);
    shortens(input.text, left, "str_strip_comments");
    std::string name = input.text;
    kelm::pluralize_name(name);
    if (name.size() <= input.text.size()) fail("a plural is not longer");
    std::string cased = input.text;
    kelm::mixed_case(cased);
    kelm::lower_case(cased);
    std::string lower = input.text;
    kelm::lower_case(lower);
    if (cased != lower) fail("cases change more than the case");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    choices input{data, size};
    const auto open = static_cast<char>(input.byte());
    const auto close = static_cast<char>(input.byte());
    const std::string word = input.part().rest();
    const told what{input.rest(), word, open, close};
    white_space(what);
    finding(what);
    delimiters(what);
    comments_and_names(what);
    return 0;
}
