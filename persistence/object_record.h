// The stored form of one object with its subtree.
// References, bases and observers wait in an io_reference_manager until all objects are there.
#pragma once

#include "framework/field_archives.h"
#include "object/object_impl.h"

#include <kelm/io_references.h>

namespace kelm {

/// Writes the object, then the objects below it: docs/stream_format.md and docs/document_format.md tell the fields.
/// \param to  binary_out or document_out
template <class Archive>
void write_object(const object_impl& top, Archive to);

/// Reads what write_object() wrote into `top`, which stands in its model, and makes the objects below it.
/// Nothing is linked, recorded or told, and no hooks run.  Ids that others have stay theirs.
/// \param from  binary_in or document_in
/// \returns false for a record that ends early or tells what cannot be; what was read until then stands in the tree
template <class Archive>
bool read_object(object_impl& top, Archive from, io_reference_manager& references);

} // namespace kelm
