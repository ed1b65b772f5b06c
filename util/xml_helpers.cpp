// Numbers, texts and bytes in elements: the functions of the interface.
// The DOM is behind xml_element; escaping is in xml_escape.cpp.
#include <kelm/base64.h>
#include <kelm/xml_helpers.h>

#include "util/text.h"
#include "util/xml_element.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

namespace kelm {

namespace {

constexpr long most_bytes = std::numeric_limits<int>::max();
constexpr const char* kind_of_value = "datatype";

/// Sets `out` to what `parse` makes of the text, if there is one.
template <class Number, class Parse>
bool read(const std::optional<std::string>& text, Number& out, Parse parse) {
    if (text) out = static_cast<Number>(parse(*text));
    return text.has_value();
}

} // namespace

void* add_xml_elem(void* parent, const char* name) { return xml_element{parent}.add(name).get(); }

void add_xml_att(void* element, const char* name, long long value) {
    xml_element{element}.set_attribute(name, text_of(value));
}

// Kept: called an attribute, made an element; stored documents have it so.
void add_xml_att(void* element, unsigned int type) {
    add_xml_text(add_xml_elem(element, kind_of_value), static_cast<long long>(type));
}

void* add_xml_text(void* element, const std::string& text) { return xml_element{element}.add_text(text); }

void* add_xml_text(void* element, long long value) { return xml_element{element}.add_text(text_of(value)); }

void add_xml_value(void* element, const void* data, long size) {
    if (size > most_bytes) throw std::length_error("add_xml_value: too many bytes");
    std::u16string text;
    Base64::Encode(static_cast<const unsigned char*>(data), size > 0 ? static_cast<int>(size) : 0, text);
    xml_element{element}.add_cdata(text);
}

void get_child_elems_by_name(void* element, const char* name, std::vector<void*>& out) {
    xml_element{element}.append_children(name, out);
}

void* get_xml_elem(void* element, const char* name) { return xml_element{element}.first(name).get(); }

// Kept: a missing attribute is an empty one to the DOM, so it reads as 0, and successfully.
bool get_xml_att(void* element, const char* name, unsigned long& out) {
    return read(xml_element{element}.attribute(name), out, parse_long);
}

bool get_xml_att(void* element, const char* name, int& out) {
    return read(xml_element{element}.attribute(name), out, parse_int);
}

bool get_xml_att(void* element, const char* name, unsigned int& out) {
    return read(xml_element{element}.attribute(name), out, parse_int);
}

bool get_xml_att(void* element, unsigned int& out) {
    const xml_element kind = xml_element{element}.first(kind_of_value);
    // Kept: the child is enough for success, with or without a text.
    read(kind.text(), out, parse_int);
    return static_cast<bool>(kind);
}

bool get_xml_text(void* element, unsigned long& out) {
    return read(xml_element{element}.text(), out, parse_long);
}

bool get_xml_text(void* element, int& out) { return read(xml_element{element}.text(), out, parse_int); }

bool get_xml_text(void* element, bool& out) {
    return read(xml_element{element}.text(), out,
                [](const std::string& text) { return parse_int(text) > 0; });
}

bool get_xml_text(void* element, std::string& out, bool unescape) {
    auto text = xml_element{element}.text();
    if (!text) return false;
    if (unescape) reverse_process_xml_data(*text);
    out.swap(*text);
    return true;
}

void get_xml_value(void* element, void*& data, int& size) {
    const std::u16string text = xml_element{element}.wide_text().value_or(std::u16string{});
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw std::length_error("get_xml_value: the text is too long");

    void* bytes = nullptr;
    if (!text.empty()) {
        bytes = std::malloc(text.size() * 2);
        if (!bytes) throw std::bad_alloc();
        std::memset(bytes, 0, text.size() * 2);
        Base64::Decode(text, static_cast<int>(text.size()), static_cast<unsigned char*>(bytes));
    }
    data = bytes;
    // Kept: the length of the text, not of what it stands for; the formats of values know their own lengths.
    size = static_cast<int>(text.size());
}

} // namespace kelm
