// `kelm-schema show`: its arguments.
// What is shown, and how, is in show.h.
#include "commands/commands.h"
#include "commands/help.h"
#include "printing/show.h"
#include "schema/types.h"

#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace schema {

namespace {

template <class T>
std::vector<std::string> keys(const std::map<std::string, T>& of) {
    std::vector<std::string> found;
    for (const auto& [key, value] : of) found.push_back(key);
    return found;
}

const std::map<std::string, kelm::u32> shown_types{
    {"table", type::table}, {"view", type::view}, {"index", type::index}, {"trigger", type::trigger}};
const std::map<std::string, order> orders{
    {"name", order::name}, {"columns", order::columns}, {"file-order", order::file_order}};

struct show_arguments {
    std::string path;
    bool json = false;
    std::vector<std::string> types;
    std::string sort;
    selection wanted;
};

void run_show(show_arguments& given, rules& shared) {
    for (const std::string& type : given.types) given.wanted.types.push_back(shown_types.at(type));
    if (!given.sort.empty()) given.wanted.by = orders.at(given.sort);
    show(given.path, given.wanted, given.json, shared, std::cout);
}

} // namespace

void add_show_command(CLI::App& app, rules& shared) {
    const auto given = std::make_shared<show_arguments>();
    CLI::App* command = app.add_subcommand("show", "Show the tables, views and all they contain");
    explain(*command, {"",
                       {"kelm-schema show shop.db",
                        "kelm-schema show shop.kelm --type table --name 'cl*' --sort columns",
                        "kelm-schema show shop.kelm --json"}});
    add_file(*command, "FILE", given->path, "An SQLite database, or a file that was saved; it is only read")
        .required();
    command->add_flag("--json", given->json, "Print JSON for programs");
    command
        ->add_option("--type", given->types, "Show these alone: table, view, index, trigger; may be repeated")
        ->check(CLI::IsMember(keys(shown_types)))
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("TYPE")
        ->option_text("TYPE,...");
    command
        ->add_option(
            "--name", given->wanted.pattern,
            "Show those alone that have such a name; * and ? stand for anything, case does not count")
        ->type_name("PATTERN");
    command->add_option("--sort", given->sort, "Order by name, columns (most first) or file-order")
        ->check(CLI::IsMember(keys(orders)))
        ->type_name("ORDER");
    command->callback([given, &shared] { run_show(*given, shared); });
}

} // namespace schema
