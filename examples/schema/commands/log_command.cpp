// `kelm-schema log`: its arguments.
// How edits are shown is in log.h, how they are written for another file in replay_log.h.
#include "commands/commands.h"
#include "commands/help.h"
#include "files/file_kind.h"
#include "files/model_file.h"
#include "files/whole_file.h"
#include "log/log.h"
#include "log/replay_log.h"

#include <iostream>
#include <memory>
#include <string>

namespace schema {

namespace {

struct log_arguments {
    std::string file;
    std::string target;
    std::size_t last = 0;
    bool json = false;
    bool messages = false;
    bool replay = false;
};

void run_log(const log_arguments& given, rules& shared) {
    kelm::model& model = load_saved(given.file, shared);
    if (given.replay) {
        require_no_database(given.target);
        require_other_file(given.target, given.file, "the log");
        return write_whole_file(given.target, to_text(take_replay_log(model, given.last)));
    }
    const std::vector<transaction> shown = transactions(model, given.last);
    if (given.json) return print_log_as_json(std::cout, given.file, shown);
    print_log(std::cout, shown, given.messages);
}

} // namespace

void add_log_command(CLI::App& app, rules& shared) {
    const auto given = std::make_shared<log_arguments>();
    CLI::App* command = app.add_subcommand("log", "List the edits that a file remembers, the oldest first");
    explain(*command, {"",
                       {"kelm-schema log shop.kelm", "kelm-schema log shop.kelm --last 1 --messages",
                        "kelm-schema log shop.kelm --replay -o shop.log"}});
    add_file(*command, "FILE", given->file, "A file that was saved; it is only read").required();
    add_count(*command, "--last", given->last, "The newest so many alone");
    CLI::Option* messages =
        command->add_flag("--messages", given->messages, "Tell each change below its edit");
    CLI::Option* json = command->add_flag("--json", given->json, "Print JSON for programs");
    CLI::Option* replay =
        command->add_flag("--replay", given->replay, "Write them for kelm-schema replay instead");
    CLI::Option& output = add_file(*command, "-o,--output", given->target, "The file for --replay");
    output.option_text("LOG")->needs(replay);
    replay->needs(&output)->excludes(json)->excludes(messages);
    command->callback([given, &shared] { run_log(*given, shared); });
}

} // namespace schema
