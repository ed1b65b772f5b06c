// Writes JSON, value by value.
// It knows nothing of schemas, and checks nothing: each member of an object needs its key.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

namespace schema {

/// Writes one document, indented by two blanks a level.  Text may hold any bytes: what is no UTF-8 is replaced.
class json_writer {
public:
    explicit json_writer(std::ostream& out) : out_(out) {}

    void begin_object() { begin('{'); }
    void end_object() { end('}'); }
    void begin_array() { begin('['); }
    void end_array() { end(']'); }

    /// The value of this member comes next.
    json_writer& key(std::string_view name);

    void value(std::string_view text);
    void value(std::size_t number);
    void value(bool flag);
    void null();
    // A literal is text; without this it would be taken for a flag.
    void value(const char* text) { value(std::string_view(text)); }
    void value(const std::string& text) { value(std::string_view(text)); }

private:
    void begin(char bracket);
    void end(char bracket);
    void before_value();
    void new_line();
    void write_string(std::string_view text);

    std::ostream& out_;
    std::size_t depth_ = 0;
    bool first_ = true;      ///< nothing stands in the innermost bracket yet
    bool after_key_ = false; ///< the next value belongs to the key that was just written
};

} // namespace schema
