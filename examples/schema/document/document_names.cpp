// Messages and their elements, side by side.
// A message's name is taken from its binary form, the one place where each of them tells it.
#include "document/document_names.h"

#include <kelm/message.h>
#include <kelm/xml_helpers.h>

#include <sstream>
#include <string_view>
#include <vector>

namespace schema {

namespace {

/// Where docs/messages.md has a name among the fields of a message.
struct name_row {
    kelm::u32 type;
    const char* element;
    std::size_t bytes_before;
};
constexpr name_row name_rows[] = {{kelm::message_type::tran_begin, "name", 8},
                                  {kelm::message_type::udp_add, "udp_name", 8},
                                  {kelm::message_type::udp_remove, "udp_name", 8}};

std::size_t number_at(std::string_view bytes, std::size_t at) {
    std::size_t number = 0;
    for (std::size_t i = 4; i-- > 0;) number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
    return number;
}

/// A text is its length and its bytes.
std::string name_of(const kelm::message& message, std::size_t bytes_before) {
    std::ostringstream out;
    message.write(&out, {}, nullptr, false);
    const std::string fields = std::move(out).str();
    return fields.substr(bytes_before + 4, number_at(fields, bytes_before));
}

/// What the library's reader makes the name of again.
std::string with_entities(const std::string& name) {
    std::string text;
    for (const char c : name) {
        text += c;
        if (c == '&') text += "amp;";
    }
    return text;
}

void write_name(xml_document& in, void* element, const kelm::message& of) {
    for (const name_row& row : name_rows)
        if (row.type == of.type())
            in.set_text(kelm::get_xml_elem(element, row.element),
                        with_entities(name_of(of, row.bytes_before)));
}

} // namespace

void write_names(xml_document& in, const kelm::model& of) {
    void* history = kelm::get_xml_elem(in.root(), "message_history_impl");
    std::vector<void*> elements;
    kelm::get_child_elems_by_name(kelm::get_xml_elem(history, "transactions"), "message", elements);
    if (elements.size() != of.message_count()) return;
    for (std::size_t at = 0; at != elements.size(); ++at) write_name(in, elements[at], *of.message_at(at));
}

} // namespace schema
