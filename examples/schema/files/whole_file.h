// Writes a file as a whole or not at all.
// Whatever goes wrong, and whenever: what stood there before stands there afterwards.
#pragma once

#include <string>

namespace schema {

/// Gives the file at `path` a new content.  It is written beside it under a name of its own, brought to the disk, and
/// then takes the place of the old file, whose permissions it keeps.  A link stays, and the file it leads to is
/// written.  A file that has this content already is left alone.
/// \throws file_error when it cannot be written; the old file, or that there is none, is as before
void write_whole_file(const std::string& path, const std::string& content);

/// \param what  is to be written there: "the log"
/// \throws file_error when `target` is the file that is read, by whatever name: it would be lost
void require_other_file(const std::string& target, const std::string& read, const std::string& what);

} // namespace schema
