// Lets foreign keys find what they name.
// They are read by reader.h, with no more than names.
#pragma once

#include <kelm/object.h>

namespace schema {

/// Lets each foreign key that has no target yet refer to the table and the columns that have the names it gives, if
/// there are any.  One that names no columns means the whole primary key of its target.
/// \param root  the model's object side
void resolve_foreign_keys(kelm::object& root);

} // namespace schema
