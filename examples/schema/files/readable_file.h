// A file that is to be read: whether it can be, and its bytes.
// What the bytes mean is asked by others.
#pragma once

#include <string>

namespace schema {

/// \throws file_error when there is no such file, when it is no regular one, and when it cannot be opened
void require_readable(const std::string& path);

/// \returns all bytes of a file
/// \throws file_error as above, and when reading fails
std::string read_whole_file(const std::string& path);

} // namespace schema
