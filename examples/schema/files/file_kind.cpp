// A database is known by its first bytes, a document by its name; all else can only be a stream, which has no mark.
// A database with the name of a document is a database.
#include "files/file_kind.h"

#include "files/file_error.h"
#include "files/readable_file.h"
#include "printing/text.h"

#include <filesystem>
#include <fstream>
#include <string_view>

namespace schema {

namespace {

constexpr std::string_view database_header("SQLite format 3\0", 16);

bool is_database(const std::string& path) {
    std::string begin(database_header.size(), '\0');
    std::ifstream in(path, std::ios::binary);
    in.read(begin.data(), static_cast<std::streamsize>(begin.size()));
    return begin == database_header;
}

file_kind kind_of_name(const std::string& path) {
    const bool is_document = lower(std::filesystem::path(path).extension().string()) == ".xml";
    return is_document ? file_kind::document : file_kind::stream;
}

} // namespace

file_kind kind_of_file(const std::string& path) {
    require_readable(path);
    std::error_code error;
    if (is_database(path) || std::filesystem::file_size(path, error) == 0) return file_kind::database;
    return kind_of_name(path);
}

void require_no_database(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error) && is_database(path))
        throw file_error(quoted(path) + " is an SQLite database, which is never written");
}

file_kind kind_to_write(const std::string& path) {
    require_no_database(path);
    return kind_of_name(path);
}

} // namespace schema
