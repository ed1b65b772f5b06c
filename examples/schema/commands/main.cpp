// kelm-schema: from its start to its end, and what becomes of errors.
// What it understands is told by command_line.h.
#include "commands/command_line.h"
#include "printing/text.h"
#include "progress/terminal_line.h"
#include "schema/meta_model.h"

#include <kelm/framework.h>

#include <exception>
#include <iostream>
#include <memory>
#include <new>
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

int fail(const char* sentence) {
    std::cerr << "kelm-schema: " << schema::printable(sentence) << '\n';
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    schema::terminal_line line;
    if (schema::terminal_line::is_possible()) schema::show_progress_on(&line);
    try {
        session library;
        const std::unique_ptr<CLI::App> app = schema::command_line(library.rules());
        schema::run(*app, {argv + 1, argv + argc});
        if (!std::cout.flush()) throw std::runtime_error("cannot write the output");
        return 0;
    } catch (const std::bad_alloc&) {
        return fail("there is not enough memory");
    } catch (const std::exception& error) {
        return fail(error.what());
    }
}
