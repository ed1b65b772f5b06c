// `kelm-schema paste`: its arguments.
// The clipboard is written by `kelm-schema copy`, and stays as it is.
#include "commands/commands.h"
#include "commands/help.h"
#include "copying/clipboard.h"
#include "copying/paste.h"
#include "files/file_kind.h"
#include "files/model_file.h"

#include <iostream>
#include <memory>
#include <string>

namespace schema {

void add_paste_command(CLI::App& app, rules& shared) {
    struct arguments {
        std::string clipboard;
        std::string file;
        signature by;
    };
    const auto given = std::make_shared<arguments>();
    CLI::App* command = app.add_subcommand("paste", "Put tables from a clipboard into a file");
    explain(*command, {"The clipboard is made by kelm-schema copy --to-clipboard, whose help tells what "
                       "happens to the tables.",
                       {"kelm-schema paste clipboard office.kelm"}});
    add_file(*command, "F", given->clipboard, "A clipboard; it is only read").required();
    add_file(*command, "OTHER", given->file, "A file that was saved").required();
    add_signature_options(*command, given->by);
    command->callback([given, &shared] {
        kelm::model& into = load_saved(given->file, shared);
        const clipboard taken = read_clipboard(given->clipboard, into);
        const paste_report report =
            paste(taken, into, given->file, "paste table", complete(given->by), shared);
        save_schema(into, given->file, shared);
        print_report(std::cout, report);
    });
}

} // namespace schema
