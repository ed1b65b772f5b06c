// A value in a stream with the code of its kind before it, so that a reader can make its box again.
// The bytes of each kind are its own.
#pragma once

#include <kelm/property.h>

#include <iosfwd>
#include <memory>
#include <vector>

namespace kelm {

/// Writes u32 code and the value.  Sets failbit, and writes nothing, for null and for a kind that no reader could make.
void put_stored_value(std::ostream& out, const abstract_property* value);

/// Reads what put_stored_value() wrote; sets failbit for an unknown code.
/// \param references  receives the records of the value; none are left of one that could not be read
/// \returns null exactly when `in` has failed
std::unique_ptr<abstract_property> get_stored_value(std::istream& in,
                                                    std::vector<reference_record>& references,
                                                    object* holder);

} // namespace kelm
