// mkstemp, write, fsync, rename: the order is what makes it safe.
// A program that is killed meanwhile leaves a file with a dot before its name, and the old one as it was.
#include "files/temporary_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace schema {

namespace {

void check(bool good) {
    if (!good) throw std::system_error(errno, std::generic_category());
}

std::filesystem::path folder_of(const std::filesystem::path& file) {
    return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

mode_t mode_of_new_files() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

/// Brings the new name to the disk.  A file system that cannot do so with folders has its own ways.
void sync_folder(const std::filesystem::path& folder) {
    const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) return;
    ::fsync(handle);
    ::close(handle);
}

} // namespace

temporary_file::temporary_file(const std::filesystem::path& beside)
    : name_((folder_of(beside) / ("." + beside.filename().string().substr(0, 200) + ".XXXXXX")).string()),
      handle_(::mkostemp(name_.data(), O_CLOEXEC)) {
    check(handle_ >= 0);
}

temporary_file::~temporary_file() {
    if (handle_ >= 0) ::close(handle_);
    if (!name_.empty()) ::unlink(name_.c_str());
}

void temporary_file::write(const std::string& content) {
    for (std::size_t done = 0; done != content.size();) {
        const ssize_t count = ::write(handle_, content.data() + done, content.size() - done);
        if (count < 0 && errno == EINTR) continue;
        check(count >= 0);
        done += static_cast<std::size_t>(count);
    }
}

void temporary_file::take_permissions_of(const std::filesystem::path& other) {
    struct stat known {};
    const bool is_there = ::stat(other.c_str(), &known) == 0;
    // Only root may give files away; for all others the owner changes, as with any file that is replaced.
    if (is_there && ::fchown(handle_, known.st_uid, known.st_gid) != 0) errno = 0;
    check(::fchmod(handle_, is_there ? known.st_mode & 07777 : mode_of_new_files()) == 0);
}

void temporary_file::take_place_of(const std::filesystem::path& other) {
    take_permissions_of(other);
    check(::fsync(handle_) == 0);
    const int handle = handle_;
    handle_ = -1;
    check(::close(handle) == 0);
    check(std::rename(name_.c_str(), other.c_str()) == 0);
    name_.clear();
    sync_folder(folder_of(other));
}

} // namespace schema
