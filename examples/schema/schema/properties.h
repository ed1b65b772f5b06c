// What users have said about tables and columns in properties of their own.
// They are defined and set by property_edits.cpp.
#pragma once

#include <kelm/object.h>

#include <string>
#include <utility>
#include <vector>

namespace schema {

/// \param root  the model's object side
/// \returns the definition that has made the property with that id; null when there is none
kelm::object* definition_of(const kelm::object& root, kelm::u32 property);
/// \returns what a value may be; empty when it may be anything
std::vector<std::string> choices(const kelm::object& definition);

/// \returns the names and the values that are set on this very object, in the order of their definition
std::vector<std::pair<std::string, std::string>> user_values(const kelm::object& what);

} // namespace schema
