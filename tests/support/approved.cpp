// The reader of annotated bytes, and of documents in parts.
// It knows nothing of what they mean.
#include "tests/support/approved.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace kelm::test {

namespace {

constexpr std::string_view blanks = " \t";
constexpr int deepest_include = 4;

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// \returns -1 for what is no hexadecimal digit
int digit(char what) {
    if (what >= '0' && what <= '9') return what - '0';
    return what >= 'a' && what <= 'f' ? what - 'a' + 10 : -1;
}

class field_reader {
public:
    explicit field_reader(std::string file, int depth = 0) : file_(std::move(file)), depth_(depth) {}

    std::string read(std::string_view text) {
        while (!text.empty()) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            ++line_;
            read_line(trimmed(text.substr(0, end)));
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        return std::move(bytes_);
    }

private:
    void read_line(std::string_view line) {
        static constexpr std::string_view include = "include ";
        if (line.empty() || line.front() == '#') return;
        if (line.starts_with(include)) return read_file(std::string{trimmed(line.substr(include.size()))});
        const std::size_t mark = line.find('#');
        if (mark == std::string_view::npos || trimmed(line.substr(mark + 1)).empty())
            refuse("bytes without '#' and what they are");
        read_bytes(trimmed(line.substr(0, mark)));
    }

    void read_file(const std::string& other) {
        if (depth_ == deepest_include) refuse("files that include one another too deep");
        bytes_ += field_reader{other, depth_ + 1}.read(approved_text(other));
    }

    /// Pairs of digits with one blank between two.
    void read_bytes(std::string_view field) {
        for (std::size_t at = 0; at < field.size(); at += 3) {
            const int high = digit(field[at]);
            const int low = at + 1 < field.size() ? digit(field[at + 1]) : -1;
            if (high < 0 || low < 0) refuse("a byte that is not two hexadecimal digits");
            if (at + 2 < field.size() && field[at + 2] != ' ') refuse("bytes without a blank between them");
            bytes_.push_back(static_cast<char>(high * 16 + low));
        }
    }

    [[noreturn]] void refuse(const char* what) const {
        throw std::runtime_error(file_ + ":" + std::to_string(line_) + ": " + what);
    }

    std::string file_;
    int depth_;
    int line_ = 0;
    std::string bytes_;
};

} // namespace

std::string approved_text(const std::string& file) {
    std::ifstream in{std::string{KELM_APPROVED_FILES} + "/" + file, std::ios::binary};
    if (!in) throw std::runtime_error("no approved file " + file);
    return {std::istreambuf_iterator<char>{in}, {}};
}

std::string approved_bytes(const std::string& name) {
    const std::string file = name + ".hex";
    return bytes_of_fields(approved_text(file), file);
}

std::string approved_document(const std::string& name) {
    static constexpr std::string_view mark = "<!-- include ";
    static constexpr std::string_view end = " -->";
    std::string text = approved_text(name + ".xml");
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
        const std::size_t behind = text.find(end, at);
        const std::size_t file = at + mark.size();
        text.replace(at, behind + end.size() - at, approved_text(text.substr(file, behind - file)));
    }
    return text;
}

std::string bytes_of_fields(std::string_view text, const std::string& file) {
    return field_reader{file}.read(text);
}

std::string first_difference(std::string_view is, std::string_view should_be) {
    if (is == should_be) return {};
    const auto [here, there] = std::ranges::mismatch(is, should_be);
    const auto shown = [](auto at, std::string_view of) {
        return at == of.end() ? std::string{"the end"}
                              : std::to_string(static_cast<unsigned>(static_cast<unsigned char>(*at)));
    };
    std::ostringstream out;
    out << "byte " << here - is.begin() << " of " << is.size() << " is " << shown(here, is) << ", should be "
        << shown(there, should_be) << " (of " << should_be.size() << " bytes)";
    return out.str();
}

} // namespace kelm::test
