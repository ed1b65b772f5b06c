// What all boxes share, and the pair of an attribute with its value.
// What the kinds do each is in the files named after them.
#include "util/free_list.h"

#include <kelm/property.h>
#include <kelm/xml_helpers.h>

namespace kelm {

void abstract_property::merge(abstract_property*) {}

void abstract_property::write_xml(void* element, u32) const {
    if (const std::string text = to_string(); !text.empty()) add_xml_text(element, text);
}

void abstract_property::read_xml(void* element, u32, std::vector<reference_record>&, object*) {
    if (std::string text; get_xml_text(element, text, false)) from_string(text);
}

void* abstract_property::operator new(std::size_t size) { return allocate_pooled(size); }

void abstract_property::operator delete(void* memory, std::size_t size) noexcept {
    free_pooled(memory, size);
}

// Kept: the former value is not freed and the other's is not cloned, so that two pairs hold one value until the
// caller sets one of them to null.  Applications move values between pairs this way.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): three plain copies, harmless to oneself
attribute_value_pair& attribute_value_pair::operator=(const attribute_value_pair& other) = default;

attribute_value_pair::~attribute_value_pair() { delete value; }

} // namespace kelm
