// Short words for what is done with objects all the time: make one, give it a value, ask for one.
// They know nothing of schemas.
#pragma once

#include <kelm/object.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace schema {

/// The model would not change: a hook refused, or an observer did.
class model_refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Makes an object as the last of its type in `owner`.
/// \throws model_refusal when the library refuses
kelm::object& add(kelm::object& owner, kelm::u32 type);
/// The same, with a Name.
kelm::object& add(kelm::object& owner, kelm::u32 type, const std::string& name);

/// Give an object a value.
/// \throws model_refusal when the library refuses
void set_text(kelm::object& what, kelm::u32 property, const std::string& text);
void set_number(kelm::object& what, kelm::u32 property, int number);
void set_flag(kelm::object& what, kelm::u32 property);
void set_target(kelm::object& what, kelm::u32 property, kelm::object& target);

void set_list(kelm::object& what, kelm::u32 property, const std::vector<std::string>& texts);
void set_list(kelm::object& what, kelm::u32 property, const std::vector<kelm::u32>& numbers);
/// Lets an object inherit values from `base`, and from no other any more.
void inherit_only(kelm::object& what, kelm::object& base);

/// Takes the object's own value away; what it inherits shows again.
/// \throws model_refusal when the library refuses
void clear(kelm::object& what, kelm::u32 property);
/// Deletes an object with all it contains.
/// \throws model_refusal when the library refuses
void remove(kelm::object& what);

bool has(const kelm::object& what, kelm::u32 property);
/// \returns empty when there is none
std::string text(const kelm::object& what, kelm::u32 property);
/// \returns 0 when there is none
int number(const kelm::object& what, kelm::u32 property);
/// \returns false when there is none
bool flag(const kelm::object& what, kelm::u32 property);
/// \returns null when there is none
kelm::object* target(const kelm::object& what, kelm::u32 property);
std::string name(const kelm::object& what);

/// \returns the children of one type, in their order
std::vector<kelm::object*> parts(const kelm::object& owner, kelm::u32 type);

} // namespace schema
