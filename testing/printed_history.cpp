// A history as a source that compiles against the public headers.
// Its lines are step_code.cpp.
#include "testing/histories.h"

#include <algorithm>
#include <sstream>

namespace kelm::testing {

namespace {

/// \returns whether a call of `what` is there, as a whole word
bool speak_of(const std::vector<std::string>& lines, const std::string& what) {
    return std::ranges::any_of(lines, [&](const std::string& line) {
        if (line.starts_with("//")) return false;
        for (std::size_t at = line.find(what); at != npos; at = line.find(what, at + 1))
            if (at == 0 || std::string_view{" ({*&"}.find(line[at - 1]) != npos) return true;
        return false;
    });
}

std::string helpers_for(const std::vector<std::string>& lines) {
    std::string out;
    if (speak_of(lines, "fw.")) out += "    kelm::framework& fw = kelm::framework::instance();\n";
    if (speak_of(lines, "o("))
        out += "    const auto o = [&](kelm::u32 id) { return model.find_object(id); };\n";
    if (speak_of(lines, "box("))
        out += "    const auto box = [](const auto& value) {\n"
               "        return std::unique_ptr<kelm::abstract_property>{value.clone()};\n"
               "    };\n";
    if (speak_of(lines, "made("))
        out += "    const auto made = [](kelm::u32 kind, const char* text) {\n"
               "        std::unique_ptr<kelm::abstract_property> value{\n"
               "            kelm::framework::instance().create_value(kind)};\n"
               "        value->from_string(text);\n"
               "        return value;\n"
               "    };\n";
    if (speak_of(lines, "list("))
        out += "    const auto list = [](const auto&... elements) {\n"
               "        auto value = std::make_unique<kelm::vector_property>();\n"
               "        (value->elements.push_back(elements.clone()), ...);\n"
               "        return value;\n"
               "    };\n";
    return out;
}

/// \returns the end of the function: what is asked behind the last step
std::string question_of(const failure& broken) {
    if (broken.expected_at != npos)
        return "    return kelm::testing::difference_of(expected, kelm::testing::text_of(model));\n";
    if (broken.broken == law::links) return "    return kelm::testing::broken_links(model);\n";
    return "    return {}; // the law is broken by the model as it is here\n";
}

std::string commented(const std::string& text) {
    std::string out;
    std::istringstream in{text};
    for (std::string line; std::getline(in, line);) out += "//   " + line + '\n';
    return out;
}

} // namespace

std::string printed(const played_history& history, u64 seed) {
    const failure& broken = history.broken;
    std::string out = "// The law \"" + std::string(name_of(broken.broken)) + "\" is broken: " + broken.what +
                      ".\n" + commented(broken.difference) + "// Seed " + std::to_string(seed) +
                      ".  The function takes a fresh model.\n" +
                      "#include <kelm/kelm.h>\n#include <kelm/testing/laws.h>\n\n"
                      "#include <limits>\n#include <memory>\n#include <string>\n\n"
                      "/// \\returns how the law is broken; empty when it holds\n"
                      "std::string broken_history(kelm::model& model);\n\n"
                      "std::string broken_history(kelm::model& model) {\n" +
                      helpers_for(history.lines);
    for (std::size_t i = 0; i <= history.lines.size(); ++i) {
        if (i == broken.expected_at)
            out += "    const std::string expected = kelm::testing::text_of(model);\n";
        if (i == history.lines.size()) break;
        const std::string& line = history.lines[i];
        const bool is_whole = line.starts_with("//") || line.starts_with("try ");
        out += "    " + line + (is_whole ? "\n" : ";\n");
    }
    return out + question_of(broken) + "}\n";
}

} // namespace kelm::testing
