// Commas, indentation and escapes of JSON.
// Control characters leave as \u00XX, everything else as UTF-8.
#include "printing/json_writer.h"

#include "printing/text.h"

namespace schema {

namespace {

std::string escaped(char c) {
    static constexpr char digits[] = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') return {'\\', c};
    if (c == '\n') return "\\n";
    if (c == '\t') return "\\t";
    if (byte < 0x20 || byte == 0x7F) return {'\\', 'u', '0', '0', digits[byte / 16], digits[byte % 16]};
    return {c};
}

} // namespace

json_writer& json_writer::key(std::string_view name) {
    before_value();
    write_string(name);
    out_ << ": ";
    after_key_ = true;
    return *this;
}

void json_writer::value(std::string_view text) {
    before_value();
    write_string(text);
}

void json_writer::value(std::size_t number) {
    before_value();
    out_ << std::to_string(number);
}

void json_writer::value(bool flag) {
    before_value();
    out_ << (flag ? "true" : "false");
}

void json_writer::null() {
    before_value();
    out_ << "null";
}

void json_writer::begin(char bracket) {
    before_value();
    out_ << bracket;
    ++depth_;
    first_ = true;
}

void json_writer::end(char bracket) {
    --depth_;
    if (!first_) new_line();
    out_ << bracket;
    first_ = false;
    if (depth_ == 0) out_ << '\n';
}

void json_writer::before_value() {
    if (!after_key_ && depth_ > 0) {
        if (!first_) out_ << ',';
        new_line();
    }
    after_key_ = false;
    first_ = false;
}

void json_writer::new_line() { out_ << '\n' << std::string(2 * depth_, ' '); }

void json_writer::write_string(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : valid_utf8(text)) quoted += escaped(c);
    out_ << quoted << '"';
}

} // namespace schema
