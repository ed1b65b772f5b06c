// Escaping of texts that are to survive a document.
// Not the escaping that an XML writer does by itself: that one is added to it.
#include <kelm/xml_helpers.h>

#include <cstddef>
#include <string_view>

namespace kelm {

namespace {

struct entity {
    char character;
    std::string_view text;
};

/// In the order in which they are undone; "&amp;" comes first.
// Kept: the last two have no semicolon.  Documents hold them so.
constexpr entity entities[] = {
    {'&', "&amp;"},   {'<', "&lt;"},  {'>', "&gt;"},  {'"', "&quot;"},
    {'\'', "&apos;"}, {'\r', "&#13"}, {'\n', "&#10"},
};

// Kept: "&apos;" with its '&' escaped in turn.  Every byte beyond 7 bits comes back as an apostrophe.
constexpr std::string_view beyond_seven_bits = "&amp;apos;";

void append_escaped(std::string& out, char c) {
    if (static_cast<unsigned char>(c) > 127) {
        out += beyond_seven_bits;
        return;
    }
    for (const entity& e : entities) {
        if (e.character == c) {
            out += e.text;
            return;
        }
    }
    out += c;
}

/// Replaces each `e.text` by its character.
void undo(const entity& e, std::string& s) {
    std::size_t at = s.find(e.text);
    if (at == std::string::npos) return;

    // Into a second string: a replacement in place would move the rest of the text each time.
    std::string shorter;
    shorter.reserve(s.size());
    std::size_t done = 0;
    for (; at != std::string::npos; at = s.find(e.text, done)) {
        shorter.append(s, done, at - done);
        shorter += e.character;
        done = at + e.text.size();
    }
    shorter.append(s, done);
    s.swap(shorter);
}

} // namespace

std::string process_xml_data(const std::string& s) {
    std::string out;
    out.reserve(s.size());
    for (const char c : s) append_escaped(out, c);
    return out;
}

const std::string& reverse_process_xml_data(std::string& s) {
    // Kept: one entity after the other over the whole text, so "&amp;lt;" ends as '<' and not as "&lt;".
    for (const entity& e : entities) undo(e, s);
    return s;
}

} // namespace kelm
