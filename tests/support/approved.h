// Files that say what stored models look like: written by hand from the format pages, never from what the library
// wrote.  tests/approved/README.md tells how they are written; what they must mean is told by the tests.
#pragma once

#include <string>
#include <string_view>

namespace kelm::test {

/// \returns the text of tests/approved/`file`
/// \throws std::runtime_error  when there is none
std::string approved_text(const std::string& file);

/// \returns the bytes that tests/approved/`name`.hex spells out
/// \throws std::runtime_error  naming file and line of what is no field, no comment and no file to include
std::string approved_bytes(const std::string& name);

/// The same of a text; `file` is what errors call it.
std::string bytes_of_fields(std::string_view text, const std::string& file);

/// \returns the text of tests/approved/`name`.xml, with the files in place that it includes
/// \throws std::runtime_error  when one of them is not there
std::string approved_document(const std::string& name);

/// \returns where two streams differ first, in words for a failing test; empty when they are the same
std::string first_difference(std::string_view is, std::string_view should_be);

} // namespace kelm::test
