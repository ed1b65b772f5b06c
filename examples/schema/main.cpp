// kelm-schema: the command line.
// What a command does is in a file of its name.
#include "meta_model.h"
#include "show.h"
#include "text.h"

#include <kelm/framework.h>

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

/// The library, from its start to its end.
class session {
public:
    session() { kelm::framework::instance().initialise(types_); }
    ~session() { kelm::framework::instance().shutdown(); }
    session(const session&) = delete;
    session& operator=(const session&) = delete;

private:
    schema::schema_types types_;
};

std::string one_sentence(const CLI::App*, const CLI::Error& error) {
    return "kelm-schema: " + schema::printable(error.what()) + "; kelm-schema --help tells more\n";
}

void add_show(CLI::App& app) {
    struct arguments {
        std::string path;
        bool json = false;
    };
    const auto given = std::make_shared<arguments>();
    CLI::App* command = app.add_subcommand("show", "Show the tables, views and all they contain");
    command->add_option("DATABASE", given->path, "An SQLite database; it is only read")->required();
    command->add_flag("--json", given->json, "Print JSON for programs");
    command->callback([given] { schema::show(given->path, given->json, std::cout); });
}

int run(int argc, char** argv) {
    CLI::App app("Looks at the schema of SQLite databases.", "kelm-schema");
    app.require_subcommand(1);
    app.failure_message(one_sentence);
    add_show(app);
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
        const session library;
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "kelm-schema: " << schema::printable(error.what()) << '\n';
        return 1;
    }
}
