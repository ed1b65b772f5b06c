// The file of a clipboard: names as text, then the library's snapshot, and a sum over both.
// The sum finds accidents; what someone has made up on purpose is found when it is pasted.
#include "copying/clipboard.h"
#include "files/file_error.h"
#include "files/file_version.h"
#include "files/readable_file.h"

#include <kelm/framework.h>

#include <cstdint>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <string_view>

namespace schema {

namespace {

constexpr std::string_view title = "kelm-schema clipboard ";

/// FNV-1a over 64 bits.
std::uint64_t sum_of(std::string_view bytes) {
    std::uint64_t sum = 0xcbf29ce484222325;
    for (const char byte : bytes) sum = (sum ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    return sum;
}

[[noreturn]] void refuse(const std::string& path) {
    throw file_error(quoted(path) + " is not a whole clipboard of kelm-schema");
}

void write_names(std::ostream& out, const char* key, const std::map<kelm::u32, std::string>& names) {
    for (const auto& [id, name] : names) out << key << ' ' << id << ' ' << std::quoted(name) << '\n';
}

void read_name(std::istream& in, std::map<kelm::u32, std::string>& names) {
    kelm::u32 id = 0;
    std::string name;
    if (in >> id >> std::quoted(name)) names[id] = std::move(name);
}

void read_table(std::istream& in, std::vector<std::string>& tables) {
    std::string name;
    if (in >> std::quoted(name)) tables.push_back(std::move(name));
}

/// Reads lines up to the one behind which the snapshot begins.
/// \returns whether it came so far
bool read_lines(std::istream& in, clipboard& into) {
    std::string key;
    while (in >> key) {
        if (key == "table")
            read_table(in, into.tables);
        else if (key == "target")
            read_name(in, into.targets);
        else if (key == "property")
            read_name(in, into.properties);
        else
            return key == "snapshot" && in.get() == '\n';
    }
    return false;
}

/// What cannot be is told by the answer, what is impossible even for the library by an exception.
bool read_snapshot(std::istream& in, kelm::copier& into) {
    try {
        return into.read(in) && in.peek() == std::istream::traits_type::eof();
    } catch (const std::exception&) {
        return false;
    }
}

std::string body_of(const clipboard& from) {
    std::ostringstream out;
    for (const std::string& name : from.tables) out << "table " << std::quoted(name) << '\n';
    write_names(out, "target", from.targets);
    write_names(out, "property", from.properties);
    out << "snapshot\n";
    if (!from.objects->write(out)) throw std::runtime_error("the tables cannot be written");
    return std::move(out).str();
}

/// Takes the line of the title.
/// \returns the sum that it tells
std::uint64_t read_title(std::istream& in, const std::string& path) {
    file_version version{};
    std::uint64_t sum = 0;
    if (!(in >> version.major >> version.minor >> std::hex >> sum >> std::dec) || in.get() != '\n')
        refuse(path);
    if (version == current_version) return sum;
    throw file_error(quoted(path) + " is a clipboard of version " + to_string(version) +
                     ", this program pastes " + to_string(current_version));
}

} // namespace

std::string to_text(const clipboard& from) {
    const std::string body = body_of(from);
    std::ostringstream out;
    out << title << current_version.major << ' ' << current_version.minor << ' ' << std::hex << sum_of(body)
        << '\n'
        << body;
    return std::move(out).str();
}

clipboard read_clipboard(const std::string& path, kelm::model& into) {
    const std::string content = read_whole_file(path);
    if (!content.starts_with(title)) refuse(path);
    std::istringstream in(content.substr(title.size()));
    const std::uint64_t sum = read_title(in, path);
    const std::size_t body = title.size() + static_cast<std::size_t>(in.tellg());
    if (sum_of(std::string_view(content).substr(body)) != sum) refuse(path);
    clipboard read{kelm::framework::instance().create_copier(&into), {}, {}, {}};
    if (!read_lines(in, read) || read.tables.empty() || !read_snapshot(in, *read.objects)) refuse(path);
    return read;
}

} // namespace schema
