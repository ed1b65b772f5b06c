// A member of an object of JSON from a property.
// Names and order of members are told by the printers.
#pragma once

#include "printing/json_writer.h"
#include "schema/values.h"

#include <kelm/object.h>

namespace schema {

/// Writes the text that the object has; null when it has none.
inline void text_or_null(json_writer& json, const char* key, const kelm::object& what, kelm::u32 property) {
    json.key(key);
    if (has(what, property))
        json.value(text(what, property));
    else
        json.null();
}

} // namespace schema
