// Who stands in the way of a drop: what still refers to a table, a column or a domain.
// The library would clear such references; a user is better told.
#pragma once

#include <kelm/object.h>

#include <string>
#include <vector>

namespace schema {

/// \returns the key or index in words, as in "the primary key of table t"
std::string described(const kelm::object& key);
/// \returns the foreign keys of other tables, the oldest first
std::vector<kelm::object*> foreign_keys_to(const kelm::object& table);

// What uses a thing, in words; empty when nothing does.

/// Asks for keys and indexes that list the column, and for foreign keys that have it as a target.
std::string user_of_column(const kelm::object& column);
/// Asks for indexes that have the column's name in the text of an expression or of their condition.
std::string text_user_of_column(const kelm::object& column);
/// Asks for columns that inherit from the domain.
std::string user_of_domain(const kelm::object& domain);

} // namespace schema
