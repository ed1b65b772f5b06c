// `kelm-schema import`: from a database to a file that remembers its edits.
// A file that is there already is replaced.
#include "commands/commands.h"
#include "files/file_kind.h"
#include "files/model_file.h"
#include "reading/load.h"

#include <memory>
#include <string>

namespace schema {

void add_import_command(CLI::App& app, rules& shared) {
    struct arguments {
        std::string database;
        std::string target;
    };
    const auto given = std::make_shared<arguments>();
    CLI::App* command = app.add_subcommand("import", "Save the schema of a database in a file of its own");
    command->add_option("DATABASE", given->database, "An SQLite database; it is only read")->required();
    command
        ->add_option("-o,--output", given->target, "The file to save in; as XML when its name ends in .xml")
        ->required()
        ->option_text("FILE");
    command->callback([given, &shared] {
        kind_to_write(given->target); // refuses a database first of all
        save_schema(load_database(given->database), given->target, shared);
    });
}

} // namespace schema
