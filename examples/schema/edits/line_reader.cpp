// The forms of names, lists, numbers and types.
// A quoted word is always a name: never a keyword, a sign or a number.
#include "edits/line_reader.h"

#include "printing/text.h"
#include "schema/characters.h"
#include "schema/identifiers.h"

#include <sqlite3.h>

#include <algorithm>
#include <charconv>
#include <system_error>

namespace schema {

namespace {

bool is_name(const word& w) {
    return w.quoted || (is_word(w.text.front()) && !is_digit(w.text.front()) && w.text.front() != '$');
}

bool is_number(const word& w) { return !w.quoted && std::all_of(w.text.begin(), w.text.end(), is_digit); }

bool is_keyword(const word& w) {
    return !w.quoted && sqlite3_keyword_check(w.text.data(), static_cast<int>(w.text.size())) != 0;
}

/// A sign that ends the entry of a list.
bool is_list_sign(const word& w) { return !w.quoted && (w.text == "," || w.text == "(" || w.text == ")"); }

} // namespace

bool line_reader::is(std::string_view wanted, std::size_t ahead) const {
    if (next_ + ahead >= words_.size()) return false;
    const word& candidate = words_[next_ + ahead];
    return !candidate.quoted && same_name(candidate.text, std::string(wanted));
}

bool line_reader::take(std::string_view wanted) {
    const bool found = is(wanted);
    if (found) ++next_;
    return found;
}

void line_reader::expect(const char* wanted) {
    if (!is(wanted)) refuse_next(wanted);
    ++next_;
}

void line_reader::expect_end() const {
    if (!at_end()) refuse_next("the end of the line");
}

std::string line_reader::name(const std::string& what) {
    if (at_end() || !is_name(words_[next_])) refuse_next(what);
    return take_word().text;
}

column_name line_reader::column() {
    std::string table = name("the name of a table");
    expect(".");
    return {std::move(table), name("the name of a column")};
}

std::vector<std::string> line_reader::column_list() {
    expect("(");
    std::vector<std::string> names{name("the name of a column")};
    for (; !is(")"); names.push_back(name("the name of a column"))) expect(",");
    skip(1);
    return names;
}

std::size_t line_reader::number(const std::string& what) {
    if (at_end() || !is_number(words_[next_])) refuse_next(what);
    const std::string& digits = take_word().text;
    std::size_t value = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), value).ec != std::errc())
        throw script_error(digits + " is too large");
    return value;
}

std::string line_reader::type() {
    std::string type;
    while (is_type_word()) take_type_word(type);
    if (type.empty()) refuse_next("a type");
    if (!is("(")) return type;
    take_type_word(type);
    take_type_number(type);
    if (is(",")) {
        take_type_word(type);
        take_type_number(type);
    }
    if (!is(")")) refuse_next(")");
    take_type_word(type);
    return type;
}

std::string line_reader::text(const std::string& what) {
    if (at_end() || is_list_sign(words_[next_])) refuse_next(what);
    std::string text = words_[next_].text;
    const bool was_quoted = take_word().quoted;
    while (!was_quoted && !at_end() && !words_[next_].spaced && !words_[next_].quoted &&
           !is_list_sign(words_[next_]))
        text += take_word().text;
    return text;
}

bool line_reader::is_type_word() const {
    return !at_end() && is_name(words_[next_]) && !is_keyword(words_[next_]) && !words_[next_].text.empty();
}

void line_reader::take_type_word(std::string& type) {
    const word& taken = take_word();
    if (taken.spaced && !type.empty()) type += ' ';
    type += taken.text;
}

void line_reader::take_type_number(std::string& type) {
    if (is("+") || is("-")) take_type_word(type);
    if (at_end() || !is_number(words_[next_])) refuse_next("a number");
    take_type_word(type);
}

void line_reader::refuse_next(const std::string& wanted) const {
    if (at_end()) throw script_error("expected " + wanted + " at the end of the line");
    constexpr std::size_t longest = 60; // of what stands in a sentence
    const word& found = words_[next_];
    const std::string text = shortened(found.text, longest);
    const std::string shown = found.quoted ? "the name " + identifier(text) : '"' + text + '"';
    throw script_error("expected " + wanted + ", not " + shown);
}

} // namespace schema
