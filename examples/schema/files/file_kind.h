// The three kinds of files that hold a schema, told apart.
// How each is read is in load.h, stream_file.h and document_file.h.
#pragma once

#include <string>

namespace schema {

enum class file_kind {
    database, ///< of SQLite: read, and never written
    document, ///< XML
    stream,   ///< the library's binary form
};

/// The kind of a file that is there.  An empty file is an empty database to SQLite.
/// \throws file_error when it cannot be read
file_kind kind_of_file(const std::string& path);

/// \throws file_error for a file that holds a database: it is never written
void require_no_database(const std::string& path);

/// The kind that a file of this name is written as: a document when the name ends in .xml, in any case.
/// \throws file_error for a file that holds a database
file_kind kind_to_write(const std::string& path);

} // namespace schema
