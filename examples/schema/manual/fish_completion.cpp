// Completion for fish: a line an option.
// It shows the descriptions as well.
#include "manual/manual.h"

#include "printing/text.h"

#include <sstream>
#include <string_view>

namespace schema {

namespace {

constexpr const char* no_command = " -n __fish_use_subcommand";

std::string for_fish(const std::string& text) {
    std::string out = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\') out += '\\';
        out += c;
    }
    return out + '\'';
}

std::string behind(const command_outline& command) {
    return " -n '__fish_seen_subcommand_from " + command.name + '\'';
}

void write_option(std::ostream& out, const std::string& where, const argument_outline& option) {
    out << "complete -c kelm-schema" << where;
    for (const std::string& name : option.names)
        out << (name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1));
    if (!option.value.empty()) out << (option.is_file ? " -r -F" : " -x");
    if (!option.choices.empty()) out << " -a " << for_fish(joined(option.choices, " "));
    out << " -d " << for_fish(option.description) << '\n';
}

bool takes_files(const command_outline& command) {
    for (const argument_outline& each : command.places)
        if (each.is_file) return true;
    return false;
}

} // namespace

std::string fish_completion(const program_outline& of) {
    std::ostringstream out;
    out << "# Completion of kelm-schema for fish, as kelm-schema --generate fish prints it.\n"
           "complete -c kelm-schema -f\n";
    for (const argument_outline& each : of.program.options) write_option(out, no_command, each);
    for (const command_outline& command : of.commands) {
        out << "complete -c kelm-schema" << no_command << " -a " << command.name << " -d "
            << for_fish(command.description) << '\n';
        if (takes_files(command)) out << "complete -c kelm-schema" << behind(command) << " -F\n";
        for (const argument_outline& each : command.options) write_option(out, behind(command), each);
    }
    return std::move(out).str();
}

} // namespace schema
