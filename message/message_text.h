// The words that descriptions of messages are made of.
// Texts are for people: nothing reads them back.
#pragma once

#include <kelm/object.h>
#include <kelm/property.h>

#include <string>

namespace kelm::message_text {

/// The type and the path of an object, with `between` in the middle.
std::string type_and_path(const object* what, const char* between = " ");
/// The same; an object that is deleted has fixed words for both.
std::string type_and_path_or_deleted(const object* what);
/// The name of a property of the object's type as the application declared it; empty when unknown.
std::string property_of(const object* what, u32 id);
/// Where something has come to, and where it came from; a position of all ones, which stands for none, is -1.
std::string both_positions(u32 new_pos, u32 old_pos);
/// The text of a value; "NULL" for none.
std::string value_or_null(const abstract_property* value);

} // namespace kelm::message_text
