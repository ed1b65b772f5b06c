// kelm-schema: the command line.
// What a command does is in a file of its name.
#include "edit.h"
#include "meta_model.h"
#include "show.h"
#include "text.h"
#include "types.h"

#include <kelm/framework.h>

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// The library, from its start to its end.
class session {
public:
    session() { kelm::framework::instance().initialise(types_); }
    ~session() { kelm::framework::instance().shutdown(); }
    session(const session&) = delete;
    session& operator=(const session&) = delete;
    schema::rules& rules() { return rules_; }

private:
    schema::rules rules_;
    schema::schema_types types_{rules_};
};

template <class T>
std::vector<std::string> keys(const std::map<std::string, T>& of) {
    std::vector<std::string> found;
    for (const auto& [key, value] : of) found.push_back(key);
    return found;
}

std::string one_sentence(const CLI::App*, const CLI::Error& error) {
    return "kelm-schema: " + schema::printable(error.what()) + "; kelm-schema --help tells more\n";
}

const std::map<std::string, kelm::u32> shown_types{{"table", schema::type::table},
                                                   {"view", schema::type::view},
                                                   {"index", schema::type::index},
                                                   {"trigger", schema::type::trigger}};
const std::map<std::string, schema::order> orders{{"name", schema::order::name},
                                                  {"columns", schema::order::columns},
                                                  {"file-order", schema::order::file_order}};

struct show_arguments {
    std::string path;
    bool json = false;
    std::vector<std::string> types;
    std::string sort;
    schema::selection wanted;
};

void run_show(show_arguments& given) {
    for (const std::string& type : given.types) given.wanted.types.push_back(shown_types.at(type));
    if (!given.sort.empty()) given.wanted.by = orders.at(given.sort);
    schema::show(given.path, given.wanted, given.json, std::cout);
}

void add_show(CLI::App& app) {
    const auto given = std::make_shared<show_arguments>();
    CLI::App* command = app.add_subcommand("show", "Show the tables, views and all they contain");
    command->add_option("DATABASE", given->path, "An SQLite database; it is only read")->required();
    command->add_flag("--json", given->json, "Print JSON for programs");
    command
        ->add_option("--type", given->types, "Show these alone: table, view, index, trigger; may be repeated")
        ->check(CLI::IsMember(keys(shown_types)))
        ->delimiter(',')
        ->allow_extra_args(false)
        ->option_text("TYPE,...");
    command
        ->add_option(
            "--name", given->wanted.pattern,
            "Show those alone that have such a name; * and ? stand for anything, case does not count")
        ->option_text("PATTERN");
    command->add_option("--sort", given->sort, "Order by name, columns (most first) or file-order")
        ->check(CLI::IsMember(keys(orders)))
        ->option_text("ORDER");
    command->callback([given] { run_show(*given); });
}

constexpr const char* edit_help =
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

void add_edit(CLI::App& app, schema::rules& rules) {
    struct arguments {
        std::string source;
        std::string script;
        std::string on_referenced_drop = "refuse";
    };
    const auto given = std::make_shared<arguments>();
    CLI::App* command =
        app.add_subcommand("edit", "Run a script of edits on a schema in memory, and take them back");
    command->footer(edit_help);
    command->add_option("SOURCE", given->source, "An SQLite database; it is only read")->required();
    command->add_option("SCRIPT", given->script, "A file with an edit a line; - reads standard input")
        ->required();
    command
        ->add_option(
            "--on-referenced-drop", given->on_referenced_drop,
            "When a table is dropped that foreign keys refer to: refuse it, or drop the keys as well")
        ->check(CLI::IsMember({"refuse", "drop-keys"}))
        ->capture_default_str();
    command->callback([given, &rules] {
        if (given->on_referenced_drop == "drop-keys")
            rules.on_referenced_drop = schema::referenced_drop::drop_keys;
        schema::edit(given->source, given->script, rules, std::cout);
    });
}

int run(int argc, char** argv, schema::rules& rules) {
    CLI::App app("Looks at the schema of SQLite databases, and tries out changes to it.", "kelm-schema");
    app.require_subcommand(1);
    app.failure_message(one_sentence);
    add_show(app);
    add_edit(app, rules);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 1; // --help comes here too
    }
    if (!std::cout.flush()) throw std::runtime_error("cannot write the output");
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        session library;
        return run(argc, argv, library.rules());
    } catch (const std::exception& error) {
        std::cerr << "kelm-schema: " << schema::printable(error.what()) << '\n';
        return 1;
    }
}
