// Options that more than one command has.
// Their defaults are taken from the surroundings when a command runs.
#include "commands/commands.h"

#include <map>
#include <string>

namespace schema {

void add_signature_options(CLI::App& command, signature& by) {
    command.add_option("--author", by.author, "Who signs the edits; else $USER, or the user's name")
        ->option_text("NAME");
    command
        .add_option("--time", by.time,
                    "When they were made, as 2026-11-21T10:00:00Z; else $SOURCE_DATE_EPOCH, or now")
        ->option_text("TIME");
}

void add_drop_option(CLI::App& command, rules& shared) {
    const std::map<std::string, referenced_drop> answers{{"refuse", referenced_drop::refuse},
                                                         {"drop-keys", referenced_drop::drop_keys}};
    command
        .add_option_function<std::string>(
            "--on-referenced-drop",
            [&shared, answers](const std::string& given) { shared.on_referenced_drop = answers.at(given); },
            "When a table is dropped that foreign keys refer to: refuse it, or drop the keys as well")
        ->check(CLI::IsMember({"refuse", "drop-keys"}))
        ->default_str("refuse");
}

} // namespace schema
