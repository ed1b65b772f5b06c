// `kelm-schema replay`: its arguments.
// The file is saved when the whole log has been performed.
#include "commands/commands.h"
#include "commands/help.h"
#include "files/model_file.h"
#include "log/replay.h"

#include <iostream>
#include <memory>
#include <string>

namespace schema {

namespace {

struct replay_arguments {
    std::string log;
    std::string file;
    signature by;
};

void run_replay(const replay_arguments& given, rules& shared) {
    const replay_log log = read_replay_log(given.log);
    kelm::model& model = load_saved(given.file, shared);
    const std::size_t count = replay(log, model, given.file, complete(given.by), shared);
    save_schema(model, given.file, shared);
    std::cout << "replayed " << count << (count == 1 ? " edit\n" : " edits\n");
}

} // namespace

void add_replay_command(CLI::App& app, rules& shared) {
    const auto given = std::make_shared<replay_arguments>();
    CLI::App* command = app.add_subcommand("replay", "Make the edits of a log on a file");
    explain(*command,
            {"The log is made by kelm-schema log --replay. It fits a file in which the same objects have the "
             "same "
             "numbers, as a copy that was made before the edits: one that does not fit is told, and the file "
             "stays as it is.",
             {"kelm-schema replay shop.log twin.kelm"}});
    add_file(*command, "LOG", given->log, "A replay log; it is only read").required();
    add_file(*command, "FILE", given->file, "A file that was saved").required();
    add_drop_option(*command, shared);
    add_signature_options(*command, given->by);
    command->callback([given, &shared] { run_replay(*given, shared); });
}

} // namespace schema
