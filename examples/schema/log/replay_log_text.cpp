// The file of a replay log: what the library's messages do not say, as text before them.
// Names are in quotes, with a backslash before a quote or a backslash; they may hold line ends.
#include "files/file_error.h"
#include "files/readable_file.h"
#include "log/replay_log.h"

#include <iomanip>
#include <sstream>

namespace schema {

namespace {

constexpr const char* title = "kelm-schema replay log";

[[noreturn]] void refuse(const std::string& path) {
    throw file_error(quoted(path) + " is not a whole replay log of kelm-schema");
}

void read_known(std::istream& in, replay_log& log) {
    known_object known{};
    if (in >> known.id >> known.type >> std::quoted(known.name)) log.known.push_back(std::move(known));
}

void read_made(std::istream& in, replay_log& log) {
    kelm::u32 id = 0;
    if (in >> id) log.made.push_back(id);
}

/// Reads lines up to the one that tells the number of bytes of the messages, which begin behind its end.
/// \returns that number; what is wrong shows in the state of `in`
std::size_t read_lines(std::istream& in, replay_log& log) {
    std::string key;
    while (in >> key) {
        std::size_t size = 0;
        if (key == "knows")
            read_known(in, log);
        else if (key == "makes")
            read_made(in, log);
        else if (key == "messages" && in >> size && in.get() == '\n')
            return size;
        else
            in.setstate(std::ios::failbit);
    }
    return 0;
}

} // namespace

std::string to_text(const replay_log& log) {
    std::ostringstream out;
    out << title << ' ' << log.version.major << ' ' << log.version.minor << '\n';
    for (const known_object& each : log.known)
        out << "knows " << each.id << ' ' << each.type << ' ' << std::quoted(each.name) << '\n';
    for (const kelm::u32 id : log.made) out << "makes " << id << '\n';
    out << "messages " << log.messages.size() << '\n' << log.messages;
    return std::move(out).str();
}

replay_log read_replay_log(const std::string& path) {
    const std::string content = read_whole_file(path);
    if (!content.starts_with(title)) refuse(path);
    std::istringstream in(content.substr(std::char_traits<char>::length(title)));
    replay_log log;
    if (!(in >> log.version.major >> log.version.minor)) refuse(path);
    if (log.version != current_version)
        throw file_error(quoted(path) + " is a replay log of version " + to_string(log.version) +
                         ", this program replays " + to_string(current_version));
    const std::size_t size = read_lines(in, log);
    if (!in) refuse(path);
    log.messages.assign(std::istreambuf_iterator<char>(in), {});
    if (log.messages.size() != size || size == 0) refuse(path);
    return log;
}

} // namespace schema
