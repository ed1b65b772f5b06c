// `kelm-schema convert`: between the binary form and XML.
// The names of the files say which is which.
#include "commands/commands.h"
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
    command->footer(
        "A name that ends in .xml asks for an XML document, any other for the binary form. Both hold all\n"
        "of a schema, its history too. A text with a control character cannot stand in a document.");
    command->add_option("FILE", given->file, "A file that was saved; it is only read")->required();
    command->add_option("OTHER", given->other, "The new file")->required();
    command->callback([given, &shared] {
        kind_to_write(given->other); // refuses a database first of all
        save_schema(load_saved(given->file, shared), given->other, shared);
    });
}

} // namespace schema
