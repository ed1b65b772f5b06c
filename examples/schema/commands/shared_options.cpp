// Arguments that more than one command has.
// Their defaults are taken from the surroundings when a command runs.
#include "commands/commands.h"

#include <charconv>
#include <map>
#include <string>
#include <system_error>

namespace schema {

namespace {

/// \returns what is wrong with it; empty when it is a number from 1 on
std::string complaint_about_count(const std::string& given) {
    std::size_t count = 0;
    const char* end = given.data() + given.size();
    const auto [behind, error] = std::from_chars(given.data(), end, count);
    const bool good = error == std::errc() && behind == end && count != 0;
    return good ? std::string() : "a number from 1 on is wanted, not \"" + given + '"';
}

} // namespace

CLI::Option& add_file(CLI::App& command, const std::string& name, std::string& into,
                      const std::string& description) {
    return *command.add_option(name, into, description)->type_name("FILE");
}

CLI::Option& add_count(CLI::App& command, const std::string& name, std::size_t& into,
                       const std::string& description) {
    return *command.add_option(name, into, description)->type_name("N")->check(complaint_about_count);
}

void add_signature_options(CLI::App& command, signature& by) {
    command.add_option("--author", by.author, "Who signs the edits; else $USER, or the user's name")
        ->type_name("NAME");
    command
        .add_option("--time", by.time,
                    "When they were made, as 2026-11-21T10:00:00Z; else $SOURCE_DATE_EPOCH, or now")
        ->type_name("TIME");
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
        ->type_name("ANSWER")
        ->default_str("refuse");
}

} // namespace schema
