// A value in an element of its own: the child "value" that properties, elements of vectors and messages have.
// What a value writes into it is the value's business.
#pragma once

#include <kelm/types.h>
#include <kelm/xml_helpers.h>

#include <vector>

namespace kelm {

/// Appends a child element "value" and lets `value` write itself into it.
///
/// \param value  has write_xml(void* element, u32 id)
/// \param id     of the property that the value is of
template <class Value>
void add_child_value(void* element, const Value& value, u32 id) {
    if (void* child = add_xml_elem(element, "value")) value.write_xml(child, id);
}

/// Lets `value` read itself from the first child element "value".
///
/// \param value       has read_xml(void* element, u32 id, references, holder)
/// \param references  receives what is to be resolved when all objects are there
/// \param holder      borrowed: the object that the value will belong to; may be null
/// \returns whether there is such a child; false leaves `value` as it was
template <class Value>
bool read_child_value(void* element, Value& value, u32 id, std::vector<reference_record>& references,
                      object* holder) {
    void* child = get_xml_elem(element, "value");
    if (child) value.read_xml(child, id, references, holder);
    return child != nullptr;
}

} // namespace kelm
