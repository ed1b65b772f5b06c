// Tells each reason for which a file cannot be read.
// Open files report most of them in words of the system only.
#include "files/readable_file.h"

#include "files/file_error.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace schema {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse_reading(const std::string& path) {
    throw file_error("cannot read " + quoted(path) + system_reason());
}

} // namespace

void require_readable(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) throw file_error("there is no file " + quoted(path));
    if (error) throw file_error("cannot open " + quoted(path) + ": " + error.message());
    if (fs::is_directory(status)) throw file_error(quoted(path) + " is a directory, not a file");
    if (!fs::is_regular_file(status)) throw file_error(quoted(path) + " is not a regular file");
    errno = 0;
    if (!std::ifstream(path, std::ios::binary)) refuse_reading(path);
}

std::string read_whole_file(const std::string& path) {
    require_readable(path);
    errno = 0;
    std::ifstream in(path, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(in), {}};
    if (in.bad()) refuse_reading(path);
    return content;
}

} // namespace schema
