// The part of a stream or document that tells what the types of one model have beyond those of the application.
// The record of one property is meta_record.
#pragma once

#include "framework/field_archives.h"
#include "message/format_version.h"

namespace kelm {

class model_impl;

/// Writes version, minor version and types, and for each type its id and its user-defined properties.
/// \param to  binary_out or document_out: the fields of the model
template <class Archive>
void write_meta_section(model_impl& of, Archive to);

/// Reads the version and asks the application about a newer one.
/// \param section  the fields of the section
/// \returns false, with nothing else read, for a version newer than the model's own, or at the end of the stream
template <class Archive>
bool read_format_version(model_impl& into, Archive section, format_version& version);

/// Reads the types and gives `into` their properties.  Properties of unknown types are dropped.
/// \param section   the fields of the section, behind the version
/// \param of_model  the fields of the model
template <class Archive>
void read_user_defined_properties(model_impl& into, Archive section, Archive of_model);

} // namespace kelm
