// UTF-8, checked byte by byte.
// Width is counted in code points, which is right for most names and near for the rest.
#include "printing/text.h"

#include <array>

namespace schema {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// The allowed range of a character's second byte tells overlong forms, surrogates and too high values apart.
struct lead_row {
    unsigned char first, last; // of the first byte
    unsigned char low, high;   // of the second byte
    std::size_t length;
};
constexpr std::array<lead_row, 9> leads{{{0x00, 0x7F, 0, 0, 1},
                                         {0xC2, 0xDF, 0x80, 0xBF, 2},
                                         {0xE0, 0xE0, 0xA0, 0xBF, 3},
                                         {0xE1, 0xEC, 0x80, 0xBF, 3},
                                         {0xED, 0xED, 0x80, 0x9F, 3},
                                         {0xEE, 0xEF, 0x80, 0xBF, 3},
                                         {0xF0, 0xF0, 0x90, 0xBF, 4},
                                         {0xF1, 0xF3, 0x80, 0xBF, 4},
                                         {0xF4, 0xF4, 0x80, 0x8F, 4}}};

unsigned char byte(char c) { return static_cast<unsigned char>(c); }
bool continues(char c) { return (byte(c) & 0xC0) == 0x80; }

/// The length of the character that `text` begins with; 0 when it begins with none.
std::size_t character_length(std::string_view text) {
    for (const lead_row& row : leads) {
        if (byte(text[0]) < row.first || byte(text[0]) > row.last) continue;
        if (row.length > text.size()) return 0;
        if (row.length > 1 && (byte(text[1]) < row.low || byte(text[1]) > row.high)) return 0;
        for (std::size_t i = 2; i < row.length; ++i)
            if (!continues(text[i])) return 0;
        return row.length;
    }
    return 0;
}

} // namespace

std::string valid_utf8(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const std::size_t length = character_length(text);
        out += length ? text.substr(0, length) : replacement;
        text.remove_prefix(length ? length : 1);
    }
    return out;
}

std::string printable(std::string_view text) {
    std::string out;
    const std::string valid = valid_utf8(text);
    for (std::size_t i = 0; i < valid.size(); ++i) {
        const char c = valid[i];
        if (byte(c) < 0x20)
            out.append({'\xE2', '\x90', static_cast<char>(0x80 + byte(c))}); // U+2400 and on: ␀ to ␟
        else if (byte(c) == 0x7F)
            out += "\xE2\x90\xA1"; // ␡
        else if (byte(c) == 0xC2 && byte(valid[i + 1]) < 0xA0) {
            out += replacement; // the second set of control characters has no signs
            ++i;
        } else
            out += c;
    }
    return out;
}

std::size_t width(std::string_view text) {
    std::size_t count = 0;
    for (const char c : text) count += !continues(c);
    return count;
}

std::string padded(const std::string& text, std::size_t to) {
    const std::size_t have = width(text);
    return have < to ? text + std::string(to - have, ' ') : text;
}

std::string shortened(const std::string& text, std::size_t most) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++at)
        if (!continues(text[at]) && ++count > most) return text.substr(0, at) + "...";
    return text;
}

std::string lower(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

std::string joined(const std::vector<std::string>& words, const std::string& between) {
    std::string all;
    for (const std::string& word : words) all += (all.empty() ? "" : between) + word;
    return all;
}

} // namespace schema
