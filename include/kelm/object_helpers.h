// Common questions to objects: names, paths, types.
// Free functions on public interfaces; none changes anything.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <string>

namespace kelm {

/// The text of property 1.  The reference is good until the next call; two calls in one expression overwrite
/// one another.  Empty for null and for an object without a name.
KELM_EXPORT const std::string& fast_unsafe_object_name(const object* what);
/// A copy of the same.
KELM_EXPORT std::string object_name(const object* what);
/// The value of property 2; empty for null and when there is none.
KELM_EXPORT std::string object_definition(const object* what);
/// The names from below `stop` (or the model) down to `what`, joined by ".", each in double quotes if `quoted`.
/// Empty for null, for the model and for `stop` itself.
KELM_EXPORT std::string object_full_path_name(const object* what, const object* stop = nullptr,
                                              bool quoted = false);
/// The name of the object's type in its model; empty for null.
KELM_EXPORT std::string object_type_as_string(const object* what);
/// The name of the type in the application meta model; empty for an unknown type.
KELM_EXPORT std::string object_type_as_string(unsigned type);
/// The name of a property in `in`, or in the application meta model when that is null; empty when unknown.
KELM_EXPORT std::string property_name(unsigned type, unsigned property, kelm::model* in);

/// The boolean meta attribute of the object's type; `fallback` when it has no value.
KELM_EXPORT bool bool_meta_attribute(const object* what, unsigned attribute, bool fallback);
/// The meta attribute of the object's type; empty when it has no value.
KELM_EXPORT value_ptr meta_att(const object* what, unsigned attribute);
/// The name of the object's type in its model.
KELM_EXPORT std::string meta_name(const object* what);

} // namespace kelm
