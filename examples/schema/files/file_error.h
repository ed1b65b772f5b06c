// What is wrong with a file, as an exception.
// Databases have one of their own: see sqlite_database.h.
#pragma once

#include <stdexcept>
#include <string>

namespace schema {

/// What is wrong with a file, as one sentence for the user.
class file_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

inline std::string quoted(const std::string& path) { return '"' + path + '"'; }

} // namespace schema
