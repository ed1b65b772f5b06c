// kelm-schema: the command line.
// What a command does is in a file of its name.
#include "commands/commands.h"
#include "printing/text.h"
#include "schema/meta_model.h"

#include <kelm/framework.h>

#include <exception>
#include <iostream>
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
    schema::rules& rules() { return rules_; }

private:
    schema::rules rules_;
    schema::schema_types types_{rules_};
};

std::string one_sentence(const CLI::App*, const CLI::Error& error) {
    return "kelm-schema: " + schema::printable(error.what()) + "; kelm-schema --help tells more\n";
}

int run(int argc, char** argv, schema::rules& rules) {
    CLI::App app("Looks at the schema of SQLite databases, and keeps changes to it.", "kelm-schema");
    app.require_subcommand(1);
    app.failure_message(one_sentence);
    for (const auto add : {schema::add_show_command, schema::add_import_command, schema::add_edit_command,
                           schema::add_undo_command, schema::add_log_command, schema::add_replay_command,
                           schema::add_convert_command, schema::add_changes_command, schema::add_copy_command,
                           schema::add_paste_command})
        add(app, rules);
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
