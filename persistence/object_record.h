// The stored form of one object with its subtree.
// References, bases and observers wait in an io_reference_manager until all objects are there.
#pragma once

#include "object/object_impl.h"

#include <kelm/io_references.h>

#include <iosfwd>

namespace kelm {

/// Writes u32 id, the values that are kept, u32 marks, u32 bases, u32 observers, u32 children with their types and
/// records: docs/stream_format.md tells the fields.
void write_object(const object_impl& top, std::ostream& out);

/// Reads what write_object() wrote into `top`, which stands in its model, and makes the objects below it.
/// Nothing is linked, recorded or told, and no hooks run.  Ids that others have stay theirs.
/// \returns false, with `in` failed, for a stream that ends early or tells what cannot be; what was read until then
///          stands in the tree
bool read_object(object_impl& top, std::istream& in, io_reference_manager& references);

/// \returns a new object of a plain type, in the model's memory but in no tree; null for any other type
object_impl* make_stored_object(u32 type, model_impl& in);

} // namespace kelm
