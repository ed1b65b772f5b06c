// `kelm-schema undo`: its arguments.
// The file is saved when all of it has gone well.
#include "commands/commands.h"
#include "commands/help.h"
#include "files/model_file.h"
#include "log/undo.h"
#include "printing/text.h"

#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace schema {

void add_undo_command(CLI::App& app, rules& shared) {
    struct arguments {
        std::string file;
        std::size_t times = 1;
    };
    const auto given = std::make_shared<arguments>();
    CLI::App* command = app.add_subcommand("undo", "Take back the newest edits of a file");
    explain(
        *command,
        {"What is undone is gone from the file: there is no redo. Keep a copy, or a replay log of the edits "
         "(kelm-schema log --replay), if they might be wanted again.",
         {"kelm-schema undo shop.kelm", "kelm-schema undo shop.kelm 2"}});
    add_file(*command, "FILE", given->file, "A file that was saved").required();
    add_count(*command, "N", given->times, "How many edits").capture_default_str();
    command->callback([given, &shared] {
        kelm::model& model = load_saved(given->file, shared);
        const std::vector<std::string> undone = undo(model, given->times, given->file);
        save_schema(model, given->file, shared);
        for (const std::string& name : undone) std::cout << "undone: " << printable(name) << '\n';
    });
}

} // namespace schema
