// Short words for what is done with objects all the time: make one, give it a value, ask for one.
// They know nothing of schemas.
#pragma once

#include <kelm/object.h>

#include <string>
#include <vector>

namespace schema {

/// Makes an object as the last of its type in `owner`.
/// \throws std::runtime_error when the library refuses
kelm::object& add(kelm::object& owner, kelm::u32 type);
/// The same, with a Name.
kelm::object& add(kelm::object& owner, kelm::u32 type, const std::string& name);

/// Give an object a value.
/// \throws std::runtime_error when the library refuses
void set_text(kelm::object& what, kelm::u32 property, const std::string& text);
void set_flag(kelm::object& what, kelm::u32 property);
void set_target(kelm::object& what, kelm::u32 property, kelm::object& target);

bool has(const kelm::object& what, kelm::u32 property);
/// \returns empty when there is none
std::string text(const kelm::object& what, kelm::u32 property);
/// \returns false when there is none
bool flag(const kelm::object& what, kelm::u32 property);
/// \returns null when there is none
kelm::object* target(const kelm::object& what, kelm::u32 property);
std::string name(const kelm::object& what);

/// \returns the children of one type, in their order
std::vector<kelm::object*> parts(const kelm::object& owner, kelm::u32 type);

} // namespace schema
