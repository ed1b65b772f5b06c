// Completion for zsh: what its function _arguments wants to be told.
// It shows the descriptions as well.
#include "manual/manual.h"

#include "printing/text.h"

#include <sstream>
#include <string_view>

namespace schema {

namespace {

/// A text inside of single quotes, in which _arguments sees no brackets and no colons of its own.
std::string for_zsh(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c == '\'')
            out += "'\\'";
        else if (c == '[' || c == ']' || c == ':' || c == '\\')
            out += '\\';
        out += c;
    }
    return out;
}

/// What completes a value: ":FILE:_files".
std::string action(const std::string& name, const argument_outline& of) {
    const std::string message = ':' + for_zsh(name) + ':';
    if (of.is_file) return message + "_files";
    return of.choices.empty() ? message : message + '(' + joined(of.choices, " ") + ')';
}

void write_option(std::ostream& out, const argument_outline& option) {
    const std::string others = '(' + joined(option.names, " ") + ')';
    for (const std::string& name : option.names) {
        out << " \\\n            '" << others << name << '[' << for_zsh(option.description) << ']';
        if (!option.value.empty()) out << action(option.value, option);
        out << '\'';
    }
}

void write_place(std::ostream& out, const argument_outline& place) {
    const std::string optional = place.is_required ? "" : ":";
    out << " \\\n            '" << (place.is_repeated ? "*" : "") << optional
        << action(place.names.front(), place) << '\'';
}

void write_command(std::ostream& out, const command_outline& command) {
    out << "        " << command.name << ")\n            _arguments";
    for (const argument_outline& each : command.options) write_option(out, each);
    for (const argument_outline& each : command.places) write_place(out, each);
    out << " ;;\n";
}

} // namespace

std::string zsh_completion(const program_outline& of) {
    std::ostringstream out;
    out << "#compdef kelm-schema\n"
           "# Completion of kelm-schema for zsh, as kelm-schema --generate zsh prints it.\n\n"
           "_kelm_schema_commands() {\n    local -a commands=(";
    for (const command_outline& command : of.commands)
        out << "\n        '" << command.name << ':' << for_zsh(command.description) << '\'';
    out << "\n    )\n    _describe command commands\n}\n\n"
           "_kelm_schema() {\n    local context state state_descr line\n    typeset -A opt_args\n"
           "    _arguments -C";
    for (const argument_outline& each : of.program.options) write_option(out, each);
    out << " \\\n            '1: :_kelm_schema_commands' \\\n            '*:: :->arguments'\n"
           "    [[ $state == arguments ]] || return\n    case $line[1] in\n";
    for (const command_outline& command : of.commands) write_command(out, command);
    out << "    esac\n}\n\n_kelm_schema \"$@\"\n";
    return std::move(out).str();
}

} // namespace schema
