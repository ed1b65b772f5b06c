// The registry of kinds of values: code, maker, dynamic type and name.
// The framework's operations of the same names answer from here; an application sees only those.
#pragma once

#include <kelm/framework.h>
#include <kelm/types.h>

#include <string>
#include <typeinfo>

namespace kelm::data_types {

/// Enters a kind.  A code that is taken stays as it is.
void register_data_type(u32 code, const std::type_info& type, value_factory make, const std::string& name);

/// Enters the eleven kinds of the library; once they are there, a further call changes nothing.
void register_built_in_data_types();

/// \returns a new value, zero, false, empty or null; null for an unknown code
[[nodiscard]] owned<abstract_property*> create_value(u32 code);

/// \returns the lowest code whose type is the dynamic type of `value`; 0 when there is none, and for null
[[nodiscard]] u32 data_type_of(const abstract_property* value);

/// \returns the code that a stream gives the value, so that a reader can make its box again; 0 when none can
[[nodiscard]] u32 stream_code_of(const abstract_property* value);

/// \returns empty for an unknown code
[[nodiscard]] std::string data_type_name(u32 code);

} // namespace kelm::data_types
