// The manual page: what the command line tells of itself, and what only a manual has to say.
// In the language of man(7) a line that begins with a dot is a request, and a backslash begins an escape.
#include "manual/manual.h"

#include "printing/text.h"

#include <sstream>
#include <string_view>
#include <utility>

namespace schema {

namespace {

struct entry {
    const char* name;
    const char* text;
};

constexpr entry exit_statuses[] = {
    {"0", "All went well."},
    {"1", "Something was wrong, with a file or with how the command was given. One sentence on standard "
          "error says "
          "what. Files are as they were, unless nothing but the output could not be written."},
    {"141",
     "Whoever read the output has stopped reading, as head does. It is the end by a broken pipe, as a shell "
     "numbers it."},
};

constexpr entry files[] = {
    {"*.xml", "A document: all of a schema and its history, as XML. The case of the ending does not count."},
    {"any other name",
     "The same in binary form. Where a file is read, an SQLite database is told by its first bytes, "
     "whatever its name."},
    {".NAME.XXXXXX",
     "A file NAME on its way. It takes the place of NAME when it has been brought to the disk; only a "
     "program that is killed leaves one behind, and it may be removed."},
};

constexpr entry variables[] = {
    {"USER",
     "Who signs edits, unless --author says so. Without either it is the name of the process's user."},
    {"SOURCE_DATE_EPOCH",
     "When edits were made, in seconds since 1970, unless --time says so. Without either it is "
     "the clock."},
    {"TERM", "Progress of long work is shown when standard error is a terminal, unless this is dumb or "
             "empty. --quiet "
             "switches it off."},
};

/// A text with nothing in it that man would take for its own.
std::string for_troff(const std::string& text) {
    std::string out;
    for (const char c : text) {
        const bool begins_line = out.empty() || out.back() == '\n';
        if (begins_line && (c == '.' || c == '\'')) out += "\\&";
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else if (c == '\'')
            out += "\\(aq";
        else
            out += c;
    }
    return out;
}

std::string bold(const std::string& text) { return "\\fB" + for_troff(text) + "\\fR"; }
std::string italic(const std::string& text) { return "\\fI" + for_troff(text) + "\\fR"; }

class page_writer {
public:
    void section(std::string_view name) { out_ << ".SH " << name << '\n'; }
    void subsection(const std::string& name) { out_ << ".SS " << name << '\n'; }
    void paragraph() { out_ << ".PP\n"; }
    void text(const std::string& line) { out_ << line << '\n'; }

    void entry(const std::string& term, const std::string& text) {
        out_ << ".TP\n" << term << '\n' << for_troff(text) << '\n';
    }

    /// \param lines  without their ends
    void as_it_is(const std::vector<std::string>& lines) {
        if (lines.empty()) return;
        out_ << ".nf\n.RS\n";
        for (const std::string& line : lines) out_ << for_troff(line) << '\n';
        out_ << ".RE\n.fi\n";
    }

    /// Paragraphs, between which lines that begin with a blank stay as they are.
    void explain(const std::string& text) {
        std::vector<std::string> fixed;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with(' ')) {
                fixed.push_back(line);
                continue;
            }
            const bool behind_fixed = !fixed.empty();
            as_it_is(std::exchange(fixed, {}));
            if (behind_fixed || line.empty()) paragraph();
            if (!line.empty()) out_ << for_troff(line) << '\n';
        }
        as_it_is(fixed);
    }

    std::string page() const { return out_.str(); }

private:
    std::ostringstream out_;
};

std::string shown(const argument_outline& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.names) names.push_back(bold(name));
    return joined(names, ", ") + (option.value.empty() ? "" : ' ' + italic(option.value));
}

std::string usage(const command_outline& command) {
    std::string line = bold("kelm-schema " + command.name) + " [" + italic("OPTIONS") + ']';
    for (const argument_outline& each : command.places) {
        const std::string place = italic(each.names.front()) + (each.is_repeated ? "..." : "");
        line += ' ' + (each.is_required ? place : '[' + place + ']');
    }
    return line;
}

std::string described(const argument_outline& option) {
    std::string text = option.description;
    if (!option.choices.empty() && option.names.front() != "--type")
        text += "; one of " + joined(option.choices, ", ");
    if (!option.value.empty() && option.is_required) text += " (required)";
    return text + '.';
}

void write_options(page_writer& page, const std::vector<argument_outline>& options) {
    for (const argument_outline& each : options) page.entry(shown(each), described(each));
}

void write_command(page_writer& page, const command_outline& command) {
    page.subsection(usage(command));
    page.text(for_troff(command.description + '.'));
    for (const argument_outline& each : command.places)
        page.entry(italic(each.names.front()), described(each));
    write_options(page, command.options);
    if (command.text.empty()) return;
    page.paragraph();
    page.explain(command.text);
}

template <std::size_t Count>
void write_entries(page_writer& page, const char* name, const entry (&entries)[Count]) {
    page.section(name);
    for (const auto& [term, text] : entries) page.entry(bold(term), text);
}

} // namespace

std::string man_page(const program_outline& of) {
    page_writer page;
    page.text(".TH KELM\\-SCHEMA 1 \"\" \"" + for_troff(of.version) + "\" \"User Commands\"");
    page.section("NAME");
    page.text("kelm\\-schema \\- look at the schema of SQLite databases, and keep changes to it");
    page.section("SYNOPSIS");
    page.text(bold("kelm-schema") + ' ' + italic("COMMAND") + " [" + italic("OPTIONS") + "] " +
              italic("ARGUMENTS"));
    page.section("DESCRIPTION");
    page.explain(of.program.text);
    page.section("OPTIONS");
    write_options(page, of.program.options);
    page.section("COMMANDS");
    for (const command_outline& command : of.commands) write_command(page, command);
    write_entries(page, "EXIT STATUS", exit_statuses);
    write_entries(page, "ENVIRONMENT", variables);
    write_entries(page, "FILES", files);
    page.section("EXAMPLES");
    page.as_it_is(of.program.examples);
    for (const command_outline& command : of.commands) {
        page.paragraph();
        page.text(for_troff(command.description + ':'));
        page.as_it_is(command.examples);
    }
    page.section("SEE ALSO");
    page.text(".BR sqlite3 (1)");
    return page.page();
}

} // namespace schema
