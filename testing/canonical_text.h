// Values and models as text in one form, so that two states can be compared.
// How texts are compared is difference.cpp.
#pragma once

#include <kelm/model.h>
#include <kelm/object.h>
#include <kelm/property.h>

#include <string>
#include <vector>

namespace kelm::testing {

/// \returns a text of a value in which references are ids and elements can be told apart; "null" for null
std::string value_text(const abstract_property* value);

/// \returns their ids in their order; npos32 for null
std::vector<u32> ids_of(const std::vector<object*>& objects);

/// \returns a text of what the objects of a model store, back-lists included
std::string stored_text_of(kelm::model& of);

} // namespace kelm::testing
