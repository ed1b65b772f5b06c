// `kelm-schema convert`: between the binary form and XML.
// The names of the files say which is which.
#include "commands/commands.h"
#include "commands/help.h"
#include "files/file_kind.h"
#include "files/model_file.h"

#include <memory>
#include <string>

namespace schema {

void add_convert_command(CLI::App& app, rules& shared) {
    struct arguments {
        std::string file;
        std::string other;
    };
    const auto given = std::make_shared<arguments>();
    CLI::App* command =
        app.add_subcommand("convert", "Save a file once more, in the form that the new name asks for");
    explain(
        *command,
        {"A name that ends in .xml asks for an XML document, any other for the binary form. Both hold all of "
         "a schema, its history too. A text with a control character cannot stand in a document.",
         {"kelm-schema convert shop.kelm shop.xml", "kelm-schema convert shop.xml again.kelm"}});
    add_file(*command, "FILE", given->file, "A file that was saved; it is only read").required();
    add_file(*command, "OTHER", given->other, "The new file").required();
    command->callback([given, &shared] {
        require_no_database(given->other); // before any work
        save_schema(load_saved(given->file, shared), given->other, shared);
    });
}

} // namespace schema
