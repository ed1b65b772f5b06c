// What is wrong with a file, as an exception.
// Databases have one of their own: see sqlite_database.h.
#pragma once

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>

namespace schema {

/// What is wrong with a file, as one sentence for the user.
class file_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// \returns why a call of the system has failed, behind a colon; nothing when it has not said so
inline std::string system_reason() {
    return errno ? ": " + std::generic_category().message(errno) : std::string();
}

inline std::string quoted(const std::string& path) { return '"' + path + '"'; }

} // namespace schema
