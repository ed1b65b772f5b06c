// A value in a stream or a document with the code of its kind before it, so that a reader can make its box again.
// The bytes of each kind are its own.
#pragma once

#include <kelm/property.h>

#include <iosfwd>
#include <memory>
#include <vector>

namespace kelm {

/// Writes u32 code and the value.  Sets failbit, and writes nothing, for null and for a kind that no reader could make.
void put_stored_value(std::ostream& out, const abstract_property* value);

/// Adds the children "datatype" and "value".  Where a stream would fail, the pass through the document does
/// (util/document_state.h), and nothing is added.
/// \param id  of the property that the value is of
void put_stored_value(void* element, const abstract_property* value, u32 id);

/// Reads what put_stored_value() wrote; sets failbit for an unknown code.
/// \param references  receives the records of the value; none are left of one that could not be read
/// \returns null exactly when `in` has failed
std::unique_ptr<abstract_property> get_stored_value(std::istream& in,
                                                    std::vector<reference_record>& references,
                                                    object* holder);

/// Reads the children "datatype" and "value" of an element.
/// \returns null when one of the two is missing, or the code is unknown
std::unique_ptr<abstract_property> get_stored_value(void* element, u32 id,
                                                    std::vector<reference_record>& references,
                                                    object* holder);

} // namespace kelm
