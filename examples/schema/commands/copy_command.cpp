// `kelm-schema copy`: its arguments.
// What is taken is told by clipboard.h, what becomes of it by paste.h.
#include "commands/commands.h"
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

struct arguments {
    std::string file;
    std::vector<std::string> tables;
    std::string other;
    std::string clipboard;
    signature by;
};

void run(const arguments& given, rules& shared) {
    const std::string& target = given.other.empty() ? given.clipboard : given.other;
    kind_to_write(target); // refuses a database first of all
    const clipboard taken = take_clipboard(load_schema(given.file, shared), given.tables);
    if (given.other.empty()) return write_whole_file(target, to_text(taken));
    kelm::model& into = load_saved(target, shared);
    const paste_report report = paste(taken, into, target, "copy table", complete(given.by), shared);
    save_schema(into, target, shared);
    print_report(std::cout, report);
}

} // namespace

void add_copy_command(CLI::App& app, rules& shared) {
    const auto given = std::make_shared<arguments>();
    CLI::App* command = app.add_subcommand("copy", "Carry tables into another file");
    command->footer(
        "A table goes with its columns, keys, indexes and triggers, and with the domains and properties\n"
        "that it uses, unless the other file has some of that name. Foreign keys to a table that stays\n"
        "behind lead to the one of that name in the other file; where there is none, they are left out.\n"
        "All of it is one edit, which kelm-schema undo takes back.");
    command->add_option("FILE", given->file, "A file that was saved, or an SQLite database; it is only read")
        ->required();
    command->add_option("TABLE", given->tables, "The tables")->required();
    CLI::Option* other = command->add_option("--to", given->other, "The file to carry them into");
    other->option_text("OTHER");
    CLI::Option* clipboard = command->add_option("--to-clipboard", given->clipboard,
                                                 "A file to keep them in, for kelm-schema paste");
    clipboard->option_text("F");
    other->excludes(clipboard);
    add_signature_options(*command, given->by);
    command->callback([given, other, clipboard, &shared] {
        if (other->empty() && clipboard->empty()) throw CLI::RequiredError("--to or --to-clipboard");
        run(*given, shared);
    });
}

} // namespace schema
