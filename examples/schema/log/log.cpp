// Transactions as text and as JSON.
// Control characters in names are shown, broken bytes replaced: see text.h.
#include "log/log.h"

#include "printing/json_writer.h"
#include "printing/text.h"

#include <algorithm>

namespace schema {

namespace {

constexpr const char* nobody = "(not signed)";

std::size_t widest_author(const std::vector<transaction>& all) {
    std::size_t widest = 0;
    for (const transaction& each : all) widest = std::max(widest, width(printable(each.by.author)));
    return widest;
}

std::string signed_by(const signature& by, std::size_t author_width) {
    if (by.time.empty()) return nobody;
    return by.time + "  " + padded(printable(by.author), author_width);
}

void text_or_null(json_writer& json, const char* key, const std::string& text) {
    json.key(key);
    if (text.empty())
        json.null();
    else
        json.value(text);
}

void print_transaction(json_writer& json, const transaction& each) {
    json.begin_object();
    json.key("number").value(each.number);
    json.key("id").value(static_cast<std::size_t>(each.id));
    json.key("name").value(each.name);
    text_or_null(json, "author", each.by.author);
    text_or_null(json, "time", each.by.time);
    json.key("messages").begin_array();
    for (const kelm::message* message : each.messages) json.value(text_of(*message));
    json.end_array();
    json.end_object();
}

} // namespace

void print_log(std::ostream& out, const std::vector<transaction>& shown, bool messages) {
    if (shown.empty()) out << "no edits\n";
    const std::size_t author_width = widest_author(shown);
    for (const transaction& each : shown) {
        out << each.number << "  " << signed_by(each.by, author_width) << "  " << printable(each.name)
            << '\n';
        if (!messages) continue;
        for (const kelm::message* message : each.messages)
            out << "    " << printable(text_of(*message)) << '\n';
    }
}

void print_log_as_json(std::ostream& out, const std::string& file, const std::vector<transaction>& shown) {
    json_writer json(out);
    json.begin_object();
    json.key("file").value(file);
    json.key("transactions").begin_array();
    for (const transaction& each : shown) print_transaction(json, each);
    json.end_array();
    json.end_object();
}

} // namespace schema
