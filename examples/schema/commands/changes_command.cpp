// `kelm-schema changes`: its arguments.
// What has changed is told by changes.h, how it is shown by changes_printer.h and changes_json.h.
#include "changes/changes.h"
#include "changes/changes_json.h"
#include "changes/changes_printer.h"
#include "commands/commands.h"
#include "commands/help.h"
#include "files/file_error.h"
#include "files/model_file.h"
#include "log/transactions.h"

#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace schema {

namespace {

struct changes_arguments {
    std::string file;
    std::size_t since = 1;
    bool json = false;
};

void require_edit(const changes_arguments& given, std::size_t count) {
    if (given.since <= count || (count == 0 && given.since == 1)) return;
    const std::string missing =
        "there is no edit " + std::to_string(given.since) + " in " + quoted(given.file);
    throw file_error(count == 0 ? missing + ", it remembers none"
                                : missing + ", the last is " + std::to_string(count));
}

void print(const changes_arguments& given, std::size_t count, const std::vector<change_group>& changes) {
    if (given.json) return print_changes_as_json(std::cout, {given.file, given.since, count}, changes);
    if (count == 0)
        std::cout << "no edits\n";
    else if (changes.empty())
        std::cout << "nothing differs: what was done has been taken back, or shows in no value\n";
    print_changes(std::cout, changes);
}

void run_changes(const changes_arguments& given, rules& shared) {
    kelm::model& model = load_saved(given.file, shared);
    const std::vector<transaction> edits = transactions(model);
    require_edit(given, edits.size());
    std::vector<change_group> changes;
    if (!edits.empty()) changes = changes_since(model, edits[given.since - 1].id);
    print(given, edits.size(), changes);
}

} // namespace

void add_changes_command(CLI::App& app, rules& shared) {
    const auto given = std::make_shared<changes_arguments>();
    CLI::App* command = app.add_subcommand("changes", "Tell what the edits of a file came to");
    explain(
        *command,
        {"A line begins with + for what was created, - for what was dropped, ~ for what differs. What was "
         "changed twice is told once, what was created and dropped again not at all.",
         {"kelm-schema changes shop.kelm", "kelm-schema changes shop.kelm --since 2 --json"}});
    add_file(*command, "FILE", given->file, "A file that was saved; it is only read").required();
    add_count(*command, "--since", given->since,
              "From this edit on, as kelm-schema log numbers them; else all");
    command->add_flag("--json", given->json, "Print JSON for programs");
    command->callback([given, &shared] { run_changes(*given, shared); });
}

} // namespace schema
