// `kelm-schema import`: from a database to a file that remembers its edits.
// A file that is there already is replaced.
#include "commands/commands.h"
#include "commands/help.h"
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
    explain(*command,
            {"", {"kelm-schema import shop.db -o shop.kelm", "kelm-schema import shop.db -o shop.xml"}});
    add_file(*command, "DATABASE", given->database, "An SQLite database; it is only read").required();
    add_file(*command, "-o,--output", given->target, "The file to save in; as XML when its name ends in .xml")
        .required();
    command->callback([given, &shared] {
        require_no_database(given->target); // before any work
        save_schema(load_database(given->database), given->target, shared);
    });
}

} // namespace schema
