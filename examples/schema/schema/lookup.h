// Finds what a name means in a schema.
// Whether a new name is free is asked by name_hooks.cpp.
#pragma once

#include "edits/line_reader.h"

#include <kelm/object.h>

#include <string>

namespace schema {

// Names are compared as SQLite does; `root` is the model's object side.  All throw script_error when there is no
// such thing.

/// \returns null when `owner` has no part of that type and name
kelm::object* find(const kelm::object& owner, kelm::u32 type, const std::string& name);
/// A table or a view: they share one space of names.  \returns null when there is none
kelm::object* find_relation(const kelm::object& root, const std::string& name);
/// \returns null when there is none
kelm::object* find_index(const kelm::object& root, const std::string& name);
/// A table or a view.
kelm::object& relation(const kelm::object& root, const std::string& name);
kelm::object& table(const kelm::object& root, const std::string& name);
/// A table whose columns and indexes are its own: not a virtual one.
kelm::object& plain_table(const kelm::object& root, const std::string& name);
/// A column of a plain table.
kelm::object& column(const kelm::object& root, const column_name& name);
kelm::object& column(const kelm::object& plain_table, const std::string& name);
kelm::object& index(const kelm::object& root, const std::string& name);
kelm::object& domain(const kelm::object& root, const std::string& name);
/// The definition of a user-defined property.
kelm::object& property_definition(const kelm::object& root, const std::string& name);

/// \returns table.column, as a script writes it
std::string full_name(const kelm::object& column);

} // namespace schema
