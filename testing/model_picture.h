// What a model is at one moment, in a form that can be asked: objects by id, values as texts.
// The same as one text is text_of().
#pragma once

#include <kelm/kelm.h>

#include <map>
#include <string>
#include <vector>

namespace kelm::testing {

/// Values are texts as of value_text(); "" is none.
struct object_picture {
    u32 type = 0;
    std::vector<u32> children;
    std::vector<u32> bases;
    std::vector<u32> marks;
    std::map<u32, std::string> own;       ///< also of what the type does not declare
    std::map<u32, std::string> effective; ///< of what the type declares
};

using model_picture = std::map<u32, object_picture>;

model_picture picture_of(kelm::model& of);

/// \returns the id; 0 for null
u32 id_of(const object* what);

/// \returns whether no value of that text equals another one, nor itself: a null reference, what is no number, and a
///          list that holds one of them
bool equals_nothing(const std::string& value);

} // namespace kelm::testing
