// Where the elements of lists stand, for a writer of a log: messages ask it of each element that was put in.
// Which elements messages speak of is told by the messages.
#pragma once

#include <kelm/property.h>

#include <string>
#include <unordered_map>

namespace kelm {

/// Knows each list that it was asked about, so that asking for each element of a long one costs no search each.  The
/// lists must not change while it lives.
class element_index {
public:
    /// \returns the first element that equals `value`; npos32 when there is none
    u32 position(const vector_property& list, const abstract_property& value);

private:
    using first_places = std::unordered_map<std::string, u32>;

    std::unordered_map<const vector_property*, first_places> lists_;
};

/// \returns what element_index::position() answers, by looking at each element
u32 element_position(const vector_property& list, const abstract_property& value);

} // namespace kelm
