// Cuts SQL text into tokens, and puts the wanted ones together again.
// SQLite keeps the text as the user wrote it, but begins it with its own CREATE and the bare name.
#include "schema/sql_text.h"

#include "schema/characters.h"
#include "schema/identifiers.h"

#include <sqlite3.h>

#include <algorithm>

namespace schema {

namespace {

struct token {
    std::string_view text;
    bool spaced = false; ///< white space or a comment stands before it

    bool is(std::string_view word) const {
        return text.size() == word.size() &&
               sqlite3_strnicmp(text.data(), word.data(), static_cast<int>(word.size())) == 0;
    }
};

std::size_t behind(std::string_view text, std::string_view end, std::size_t from) {
    const std::size_t at = text.find(end, from);
    return at == std::string_view::npos ? text.size() : at + end.size();
}

std::size_t skip_blank(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size()) {
        if (is_space(text[at]))
            ++at;
        else if (text.substr(at, 2) == "--")
            at = behind(text, "\n", at);
        else if (text.substr(at, 2) == "/*")
            at = behind(text, "*/", at + 2);
        else
            break;
    }
    return at;
}

/// A doubled quote inside ends one piece and begins the next.
std::size_t quoted_length(std::string_view text) {
    const char quote = text.front();
    std::size_t at = behind(text, std::string_view(&quote, 1), 1);
    while (at < text.size() && text[at] == quote) at = behind(text, std::string_view(&quote, 1), at + 1);
    return at;
}

std::size_t token_length(std::string_view text) {
    const char first = text.front();
    if (first == '\'' || first == '"' || first == '`') return quoted_length(text);
    if (first == '[') return behind(text, "]", 1);
    const auto end = std::find_if_not(text.begin(), text.end(), is_word);
    return std::max<std::size_t>(1, static_cast<std::size_t>(end - text.begin()));
}

std::vector<token> tokens_of(std::string_view text) {
    std::vector<token> tokens;
    for (;;) {
        const std::size_t blank = skip_blank(text);
        text.remove_prefix(blank);
        if (text.empty()) return tokens;
        const std::size_t length = token_length(text);
        tokens.push_back({text.substr(0, length), blank > 0});
        text.remove_prefix(length);
    }
}

using token_position = std::vector<token>::const_iterator;

std::string joined(token_position from, token_position to) {
    std::string text;
    for (auto at = from; at != to; ++at) {
        if (at != from && at->spaced) text += ' ';
        text += at->text;
    }
    return text;
}

/// Behind `CREATE ... TABLE name` and the like.
token_position behind_name(const std::vector<token>& tokens) {
    const auto what = std::find_if(tokens.begin(), tokens.end(), [](const token& t) {
        return t.is("table") || t.is("view") || t.is("index") || t.is("trigger");
    });
    return tokens.end() - what > 1 ? what + 2 : tokens.end();
}

std::string term(token_position from, token_position to) {
    if (to - from > 1 && ((to - 1)->is("asc") || (to - 1)->is("desc"))) --to;
    return joined(from, to);
}

/// A text in single quotes names nothing.
bool is_named(const token& t, const std::string& name) {
    return t.text.front() != '\'' && same_name(unquoted(t.text), name);
}

} // namespace

std::string one_line(std::string_view sql) {
    const std::vector<token> tokens = tokens_of(sql);
    return joined(tokens.begin(), tokens.end());
}

std::string after_name(std::string_view create) {
    const std::vector<token> tokens = tokens_of(create);
    return joined(behind_name(tokens), tokens.end());
}

bool mentions(std::string_view sql, const std::string& name) {
    const std::vector<token> tokens = tokens_of(sql);
    return std::any_of(tokens.begin(), tokens.end(), [&](const token& t) { return is_named(t, name); });
}

index_text read_index(std::string_view create) {
    index_text found;
    const std::vector<token> tokens = tokens_of(create);
    auto at = behind_name(tokens);
    if (tokens.end() - at < 3) return found; // ON table (
    at += 3;
    auto begin = at;
    for (int depth = 0; at != tokens.end(); ++at) {
        if (at->is("(")) ++depth;
        if (depth == 0 && (at->is(",") || at->is(")"))) {
            found.terms.push_back(term(begin, at));
            begin = at + 1;
        }
        if (at->is(")") && --depth < 0) break;
    }
    if (tokens.end() - at > 2 && (at + 1)->is("where")) found.condition = joined(at + 2, tokens.end());
    return found;
}

} // namespace schema
