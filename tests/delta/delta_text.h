// A whole delta as lines, so that a test compares one block of text.
// What the lines must be is told by the tests.
#pragma once

#include <kelm/kelm.h>

#include <string>

namespace kelm::test {

/// Objects are told by their names, deleted ones by the names that they had; "root" is the model, "nobody" null.
///
///     deleted a of root at 0          nested details below, indented
///       10 = 'x'                      each value that the detail knows of itself, but for the name
///     created b                       nested details below, indented
///     modified c
///       10: none -> 'x'               each changed property, from the value at the start to the present one
///       child d 0 -> 1
///       base e -1 -> 0
///       owner was f
///
/// \returns "none\n" for null.  What a detail must never be (of another kind than it says, below another one than it
///          says, of another delta) is told in the line.
std::string text_of(const delta* of, kelm::model& in);

} // namespace kelm::test
