// The lines in which two texts differ.
// The texts are canonical_text.cpp.
#include <kelm/testing/laws.h>

#include <algorithm>
#include <sstream>

namespace kelm::testing {

namespace {

using lines = std::vector<std::string>;

lines lines_of(const std::string& text) {
    lines out;
    std::istringstream in{text};
    for (std::string line; std::getline(in, line);) out.push_back(line);
    return out;
}

/// The longest common subsequence of two texts, walked from its start.
class comparison {
public:
    comparison(lines expected, lines is) : expected_(std::move(expected)), is_(std::move(is)) {
        const std::size_t width = is_.size() + 1;
        lengths_.assign((expected_.size() + 1) * width, 0);
        for (std::size_t i = expected_.size(); i-- != 0;)
            for (std::size_t j = is_.size(); j-- != 0;)
                lengths_[i * width + j] = expected_[i] == is_[j]
                                              ? lengths_[(i + 1) * width + j + 1] + 1
                                              : std::max(length(i + 1, j), length(i, j + 1));
    }

    std::string told() {
        std::size_t i = 0;
        std::size_t j = 0;
        while (i != expected_.size() || j != is_.size()) {
            if (i != expected_.size() && j != is_.size() && expected_[i] == is_[j]) {
                meet(expected_[i]);
                ++i, ++j;
            } else if (j == is_.size() || (i != expected_.size() && length(i + 1, j) >= length(i, j + 1))) {
                tell("- ", expected_[i++]);
            } else {
                tell("+ ", is_[j++]);
            }
        }
        return out_;
    }

private:
    std::size_t length(std::size_t i, std::size_t j) const { return lengths_[i * (is_.size() + 1) + j]; }
    static bool is_heading(const std::string& line) { return !line.starts_with(' '); }

    void meet(const std::string& line) {
        if (is_heading(line)) heading_ = line;
    }
    void tell(const char* sign, const std::string& line) {
        if (is_heading(line)) heading_.clear(); // it is told itself
        if (!heading_.empty()) out_ += "  " + std::exchange(heading_, {}) + '\n';
        out_ += sign + line + '\n';
    }

    lines expected_;
    lines is_;
    std::vector<std::size_t> lengths_;
    std::string heading_;
    std::string out_;
};

} // namespace

std::string difference_of(const std::string& expected, const std::string& is) {
    return expected == is ? std::string{} : comparison{lines_of(expected), lines_of(is)}.told();
}

} // namespace kelm::testing
