// Most complaints of the parser are fit to be told; a few are put in other words.
// Each says where to read more.
#include "commands/wrong_use.h"

#include <string_view>
#include <vector>

namespace schema {

namespace {

/// Nothing that was given is a command.
std::string no_command(const std::vector<std::string>& given) {
    if (given.empty()) return "a command is required";
    const std::string& first = given.front();
    return first.starts_with('-') ? "there is no option " + first : "there is no command \"" + first + '"';
}

/// The parser counts, in its words: "--last: At Most 1 required but received 2".
std::string wrong_number(const std::string& complaint) {
    const std::string option = complaint.substr(0, complaint.find(':'));
    const bool too_many = complaint.find("but received") != std::string::npos;
    return option + (too_many ? " is given more than once" : " needs a value");
}

} // namespace

std::string wrong_use(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<CLI::App*> commands = app.get_subcommands();
    std::string said = error.what();
    if (commands.empty() && error.get_name() == "RequiredError") said = no_command(app.remaining());
    if (error.get_name() == "ArgumentMismatch") said = wrong_number(said);
    const std::string command = commands.empty() ? "" : commands.front()->get_name() + ' ';
    return said + "; kelm-schema " + command + "--help tells more";
}

} // namespace schema
