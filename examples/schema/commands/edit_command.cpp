// `kelm-schema edit`: its arguments, and the page of help for scripts.
// What a line does is in edits.h.
#include "commands/commands.h"
#include "commands/help.h"
#include "edits/edit.h"

#include <iostream>
#include <memory>

namespace schema {

namespace {

constexpr const char* script_help =
    R"(A line of the script is one of
  rename table A B                    add column T.C TYPE
  rename column T.C D                 move column T.C POSITION
  drop table T                        type column T.C TYPE
  drop column T.C                     add index I on T (C, D)
  drop index I                        add primary key on T (C, D)
  undo [N], redo [N]                  add foreign key on T (C, D) to U [(E, F)]
  show [T]      prints the schema, or a table of it
  history       lists the edits, and what undo has taken back
Names that need it stand in "double quotes", texts that are not one word as well; # begins a comment.
A new column is the last of its table; positions count from 1. Each edit is a transaction that undo
takes back. A line that is wrong, or breaks a rule of the schema, changes nothing and ends the script.

What was saved is saved again with its history, so that a later script, or kelm-schema undo, can take
edits back. A script with a wrong line saves nothing. What is undone at its end is not saved, and
cannot be redone by a later one. A database is only saved with --output, in another file.

Columns may take their type, their default and NOT NULL from a domain; what is their own wins:
  add domain D TYPE [DEFAULT TEXT] [NOT NULL]
  use domain D for T.C                the column gives up what it had of its own
  type domain D TYPE
  drop domain D
Properties of your own say what SQL has no word for, as who owns a table:
  define property P on table|column [default TEXT] [choices (A, B)]
  set property P of T[.C] to TEXT
  clear property P of T[.C]
  drop property P)";

} // namespace

void add_edit_command(CLI::App& app, rules& shared) {
    const auto given = std::make_shared<edit_request>();
    CLI::App* command =
        app.add_subcommand("edit", "Run a script of edits on a schema, save them, and take them back");
    explain(*command, {script_help,
                       {"kelm-schema edit shop.kelm first.edits",
                        "echo 'drop column sale.day' | kelm-schema edit shop.kelm - --author eve",
                        "kelm-schema edit shop.db first.edits -o new.kelm"}});
    add_file(*command, "SOURCE", given->source,
             "A file that was saved, or an SQLite database, which is only read")
        .required();
    add_file(*command, "SCRIPT", given->script, "A file with an edit a line; - reads standard input")
        .required();
    add_file(*command, "-o,--output", given->target, "Save in this file, and leave the source as it is");
    add_drop_option(*command, shared);
    add_signature_options(*command, given->by);
    command->callback([given, &shared] {
        given->by = complete(given->by);
        edit(*given, shared, std::cout);
    });
}

} // namespace schema
