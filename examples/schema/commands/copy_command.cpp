// `kelm-schema copy`: its arguments.
// What is taken is told by clipboard.h, what becomes of it by paste.h.
#include "commands/commands.h"
#include "commands/help.h"
#include "copying/clipboard.h"
#include "copying/paste.h"
#include "files/file_kind.h"
#include "files/model_file.h"
#include "files/whole_file.h"

#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace schema {

namespace {

struct copy_arguments {
    std::string file;
    std::vector<std::string> tables;
    std::string other;
    std::string clipboard;
    signature by;
};

void run_copy(const copy_arguments& given, rules& shared) {
    const std::string& target = given.other.empty() ? given.clipboard : given.other;
    require_no_database(target); // before any work
    if (given.other.empty()) require_other_file(target, given.file, "the clipboard");
    const clipboard taken = take_clipboard(load_schema(given.file, shared), given.tables);
    if (given.other.empty()) return write_whole_file(target, to_text(taken));
    kelm::model& into = load_saved(target, shared);
    const paste_report report = paste(taken, into, target, "copy table", complete(given.by), shared);
    save_schema(into, target, shared);
    print_report(std::cout, report);
}

} // namespace

void add_copy_command(CLI::App& app, rules& shared) {
    const auto given = std::make_shared<copy_arguments>();
    CLI::App* command = app.add_subcommand("copy", "Carry tables into another file");
    explain(
        *command,
        {"A table goes with its columns, keys, indexes and triggers, and with the domains and properties "
         "that "
         "it uses, unless the other file has some of that name. Foreign keys to a table that stays behind "
         "lead to the one of that name in the other file; where there is none, they are left out. All of it "
         "is one edit, which kelm-schema undo takes back.",
         {"kelm-schema copy shop.kelm sale client --to office.kelm",
          "kelm-schema copy shop.kelm sale --to-clipboard clipboard"}});
    add_file(*command, "FILE", given->file, "A file that was saved, or an SQLite database; it is only read")
        .required();
    command->add_option("TABLE", given->tables, "The tables")->required();
    CLI::Option& other = add_file(*command, "--to", given->other, "The file to carry them into");
    other.option_text("OTHER");
    CLI::Option& clipboard = add_file(*command, "--to-clipboard", given->clipboard,
                                      "A file to keep them in, for kelm-schema paste");
    clipboard.option_text("F")->excludes(&other);
    add_signature_options(*command, given->by);
    command->callback([given, &other, &clipboard, &shared] {
        if (other.empty() && clipboard.empty()) throw CLI::RequiredError("--to or --to-clipboard");
        run_copy(*given, shared);
    });
}

} // namespace schema
