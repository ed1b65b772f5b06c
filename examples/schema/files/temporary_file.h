// A file on its way: under a name of its own until it takes the place of another.
// When and what is written is the business of whole_file.h.
#pragma once

#include <filesystem>
#include <string>

namespace schema {

/// A new file in the folder of another.  It is removed again unless it takes the other's place.
class temporary_file {
public:
    /// \throws std::system_error when it cannot be made, as do the others
    explicit temporary_file(const std::filesystem::path& beside);
    ~temporary_file();
    temporary_file(const temporary_file&) = delete;
    temporary_file& operator=(const temporary_file&) = delete;

    void write(const std::string& content);
    /// Brings the file to the disk and lets it replace `other`, with the permissions that this has; without it, with
    /// those that a new file gets.
    void take_place_of(const std::filesystem::path& other);

private:
    void take_permissions_of(const std::filesystem::path& other);

    std::string name_;
    int handle_;
};

} // namespace schema
