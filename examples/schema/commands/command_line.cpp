// The program's own options stand here; the commands come from their files.
// Options that end the program print, and leave by an exception as --help does.
#include "commands/command_line.h"

#include "commands/commands.h"
#include "commands/help.h"
#include "commands/outlined.h"
#include "commands/wrong_use.h"
#include "manual/manual.h"
#include "progress/progress.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <stdexcept>
#include <utility>

namespace schema {

namespace {

constexpr const char* version = "kelm-schema " KELM_SCHEMA_VERSION;

constexpr const char* about =
    "kelm-schema keeps the schema of an SQLite database in a file of its own, with every edit that was made "
    "of it. Any edit can be taken back, by a process that starts years later. The database is read once and "
    "never written.\n\n"
    "A file that is written is written as a whole: under another name in its folder, which then takes the "
    "place of the old file. Whatever goes wrong, the old one stays.";

using generator = std::string (*)(const program_outline&);
const std::map<std::string, generator> generators{
    {"bash", bash_completion}, {"fish", fish_completion}, {"man", man_page}, {"zsh", zsh_completion}};

/// Stands before an argument in brackets, which would be taken for a list: a table may have such a name.
constexpr char mark = '\x01';

std::string marked(const std::string& argument) {
    const bool is_list = argument.starts_with('[') && argument.ends_with(']');
    return is_list || argument.starts_with(mark) ? mark + argument : argument;
}

std::string unmarked(const std::string& argument) {
    return argument.starts_with(mark) ? argument.substr(1) : argument;
}

void unmark_values(CLI::App& command) {
    for (CLI::Option* each : command.get_options())
        if (each->get_type_size() != 0) each->transform(unmarked);
}

void add_own_options(CLI::App& app) {
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.set_version_flag("--version", version, "Print name and version and exit");
    app.add_option_function<std::string>(
           "--generate",
           [&app](const std::string& what) {
               std::cout << generators.at(what)(outline_of(app));
               throw CLI::Success();
           },
           "Print the manual page, or the completion of a shell, and exit")
        ->check(CLI::IsMember({"man", "bash", "zsh", "fish"}))
        ->type_name("KIND");
}

} // namespace

std::unique_ptr<CLI::App> command_line(rules& shared) {
    auto app = std::make_unique<CLI::App>("Looks at the schema of SQLite databases, and keeps changes to it.",
                                          "kelm-schema");
    app->formatter(std::make_shared<help_page>());
    app->require_subcommand(1);
    add_own_options(*app);
    explain(*app, {about, {"kelm-schema import shop.db -o shop.kelm", "kelm-schema edit --help"}});
    for (const auto add :
         {add_show_command, add_import_command, add_edit_command, add_undo_command, add_log_command,
          add_replay_command, add_convert_command, add_changes_command, add_copy_command, add_paste_command})
        add(*app, shared);
    for (CLI::App* command : app->get_subcommands({})) {
        command->add_flag_callback(
            "-q,--quiet", [] { show_progress_on(nullptr); }, "Show no progress on a terminal");
        unmark_values(*command);
    }
    return app;
}

void run(CLI::App& app, std::vector<std::string> arguments) {
    std::ranges::transform(arguments, arguments.begin(), marked);
    std::ranges::reverse(arguments); // the parser takes them from the end
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::Success& answered) { // --help, --version and their like
        app.exit(answered);                  // prints
    } catch (const CLI::ParseError& error) {
        std::string sentence = wrong_use(app, error);
        std::erase(sentence, mark);
        throw std::runtime_error(sentence);
    }
}

} // namespace schema
