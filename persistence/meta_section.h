// The part of a stream that tells what the types of one model have beyond those of the application.
// The record of one property is meta_record.
#pragma once

#include "message/format_version.h"

#include <iosfwd>

namespace kelm {

class model_impl;

/// Writes u32 version, u32 minor version, u32 types, and for each type its u32 id, u32 count and its user-defined
/// properties.
void write_meta_section(model_impl& of, std::ostream& out);

/// Reads the version and asks the application about a newer one.
/// \returns false, with nothing else read, for a version newer than the model's own, or at the end of the stream
bool read_format_version(model_impl& into, std::istream& in, format_version& version);

/// Reads the types and gives `into` their properties.  Properties of unknown types are dropped.
void read_user_defined_properties(model_impl& into, std::istream& in);

} // namespace kelm
