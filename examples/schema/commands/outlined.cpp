// Everything is asked of the command line's own description.
// Choices stand there in the name of a type, as in ANSWER:{refuse,drop-keys}.
#include "commands/outlined.h"

#include "commands/help.h"

#include <algorithm>
#include <sstream>

namespace schema {

namespace {

std::vector<std::string> choices_in(const std::string& type) {
    const std::size_t begin = type.find('{');
    const std::size_t end = type.find('}');
    if (begin == std::string::npos || end == std::string::npos) return {};
    std::istringstream list(type.substr(begin + 1, end - begin - 1));
    std::vector<std::string> found;
    for (std::string word; std::getline(list, word, ',');) found.push_back(word);
    return found;
}

std::vector<std::string> names_of(const CLI::Option& option) {
    if (option.get_positional()) return {option.get_name(true, false)};
    std::vector<std::string> names;
    for (const std::string& each : option.get_snames()) names.push_back('-' + each);
    for (const std::string& each : option.get_lnames()) names.push_back("--" + each);
    return names;
}

argument_outline outline_of(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    std::string description = option.get_description();
    if (!option.get_default_str().empty()) description += "; else " + option.get_default_str();
    return {names_of(option),
            value_name(option),
            description,
            choices_in(type),
            type.starts_with("FILE"),
            option.get_required(),
            option.get_expected_max() > 1};
}

command_outline outline_of_command(const CLI::App& command) {
    explanation said = explanation_of(command);
    command_outline found{command.get_name(), command.get_description(), said.text, said.examples, {}, {}};
    for (const CLI::Option* each : command.get_options())
        (each->get_positional() ? found.places : found.options).push_back(outline_of(*each));
    return found;
}

} // namespace

program_outline outline_of(const CLI::App& app) {
    program_outline found{app.version(), outline_of_command(app), {}};
    for (const CLI::App* command : app.get_subcommands({}))
        found.commands.push_back(outline_of_command(*command));
    return found;
}

} // namespace schema
