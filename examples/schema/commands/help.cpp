// The explanation is kept as the footer of a command: the text, and behind a line of its own the examples.
// Words are taken over as they are; where lines break is decided here.
#include "commands/help.h"

#include "printing/text.h"

#include <sstream>
#include <string_view>

namespace schema {

namespace {

constexpr std::size_t page_width = 80;
constexpr const char* examples_title = "Examples:";

/// Fills lines up to a width.
std::string filled(const std::string& text, std::size_t to) {
    std::string page;
    std::size_t used = 0;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const bool fits = used + 1 + width(word) <= to;
        if (!page.empty()) page += fits ? ' ' : '\n';
        used = fits && !page.empty() ? used + 1 + width(word) : width(word);
        page += word;
    }
    return page;
}

/// Fills each paragraph; lines that begin with a blank stay as they are.
std::string filled_paragraphs(const std::string& text) {
    std::string page;
    std::string paragraph;
    const auto end_paragraph = [&] {
        if (!paragraph.empty()) page += filled(paragraph, page_width) + '\n';
        paragraph.clear();
    };
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const bool stays = line.empty() || line.front() == ' ';
        if (stays) end_paragraph();
        if (stays)
            page += line + '\n';
        else
            paragraph += line + '\n';
    }
    end_paragraph();
    return page;
}

} // namespace

void explain(CLI::App& command, const explanation& what) {
    std::string footer = what.text + (what.text.empty() ? "" : "\n\n") + examples_title;
    for (const std::string& line : what.examples) footer += "\n  " + line;
    command.footer(footer);
}

explanation explanation_of(const CLI::App& command) {
    const std::string footer = command.get_footer();
    const std::size_t title = footer.rfind(examples_title);
    if (title == std::string::npos) return {footer, {}};
    explanation found;
    if (title > 2) found.text = footer.substr(0, title - 2);
    std::istringstream lines(footer.substr(title));
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) found.examples.push_back(line.substr(2));
    return found;
}

std::string value_name(const CLI::Option& option) {
    if (option.get_positional() || option.get_type_size() == 0) return {};
    if (!option.get_option_text().empty()) return option.get_option_text();
    const std::string type = option.get_type_name(); // with what it is checked for behind a colon
    return type.substr(0, type.find(':'));
}

std::string help_page::make_usage(const CLI::App* app, std::string name) const {
    return '\n' + Formatter::make_usage(app, std::move(name));
}

std::string help_page::make_subcommand(const CLI::App* command) const {
    std::ostringstream out;
    CLI::detail::format_help(out, command->get_name(),
                             filled(command->get_description(), page_width - get_column_width()),
                             get_column_width());
    return out.str();
}

std::string help_page::make_option_opts(const CLI::Option* option) const {
    const std::string value = value_name(*option);
    return value.empty() ? value : ' ' + value;
}

std::string help_page::make_option_desc(const CLI::Option* option) const {
    std::string text = option->get_description();
    if (option->nonpositional() && option->get_required()) text += " (required)";
    if (!option->get_default_str().empty()) text += " (else " + option->get_default_str() + ')';
    return filled(text, page_width - get_column_width());
}

std::string help_page::make_footer(const CLI::App* app) const { return filled_paragraphs(app->get_footer()); }

} // namespace schema
