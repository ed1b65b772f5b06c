// A temporary file in the same folder, as only there a rename is one step.
// The calls are those of POSIX: the standard library can neither bring a file to the disk nor make one of a new name.
#include "files/whole_file.h"

#include "files/file_error.h"
#include "files/temporary_file.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace schema {

namespace {

namespace fs = std::filesystem;

/// \returns where the links end that begin at `path`; `path` itself when there is nothing
fs::path end_of_links(const std::string& path) {
    std::error_code error;
    const fs::path end = fs::weakly_canonical(path, error);
    return error || end.empty() ? fs::path(path) : end;
}

void require_replaceable(const fs::path& file, const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (!fs::exists(status)) return;
    if (fs::is_directory(status)) throw file_error("cannot write " + quoted(path) + ": it is a directory");
    if (!fs::is_regular_file(status))
        throw file_error("cannot write " + quoted(path) + ": it is no regular file");
    // A rename would not ask for it.
    if (::access(file.c_str(), W_OK) != 0)
        throw file_error("cannot write " + quoted(path) + ": it is read-only");
}

bool has_content(const fs::path& file, const std::string& content) {
    std::error_code error;
    if (fs::file_size(file, error) != content.size() || error) return false;
    std::ifstream in(file, std::ios::binary);
    return in && std::string(std::istreambuf_iterator<char>(in), {}) == content;
}

} // namespace

void write_whole_file(const std::string& path, const std::string& content) {
    if (path.empty()) throw file_error("a file to write needs a name");
    const fs::path file = end_of_links(path);
    require_replaceable(file, path);
    if (has_content(file, content)) return;
    try {
        temporary_file fresh(file);
        fresh.write(content);
        fresh.take_place_of(file);
    } catch (const std::system_error& error) {
        throw file_error("cannot write " + quoted(path) + ": " + error.code().message());
    }
}

void require_other_file(const std::string& target, const std::string& read, const std::string& what) {
    std::error_code error;
    if (fs::equivalent(target, read, error))
        throw file_error(quoted(target) + " is the file that is read; " + what + " needs one of its own");
}

} // namespace schema
