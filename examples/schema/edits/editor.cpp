// An edit is a transaction of the model, named by its line.
// Undo, redo and the list of both are the library's own; nothing is kept beside it.
#include "edits/editor.h"

#include "edits/edits.h"
#include "hooks/hooks.h"
#include "printing/text.h"
#include "printing/tree_printer.h"
#include "schema/foreign_keys.h"
#include "schema/lookup.h"
#include "schema/values.h"

#include <kelm/transaction.h>

namespace schema {

namespace {

kelm::transaction_names done(const kelm::model& model) {
    kelm::transaction_names names;
    model.undo_names(names, 0);
    return names;
}

kelm::transaction_names undone(const kelm::model& model) {
    kelm::transaction_names names;
    model.redo_names(names, 0);
    return names;
}

/// Takes how often to undo or redo; once when the line does not say.
std::size_t times(line_reader& line, std::size_t most, const char* what) {
    const std::size_t wanted = line.at_end() ? 1 : line.number("how often");
    line.expect_end();
    if (wanted == 0) throw script_error("0 times is no " + std::string(what));
    if (most == 0) throw script_error("there is nothing to " + std::string(what));
    if (wanted > most)
        throw script_error("cannot " + std::string(what) + ' ' + std::to_string(wanted) +
                           (wanted == 1 ? " edit" : " edits") + ", there " + (most == 1 ? "is" : "are") +
                           " only " + std::to_string(most));
    return wanted;
}

} // namespace

struct editor::command {
    std::string_view keyword;
    void (editor::*run)(line_reader&);
};

const editor::command editor::commands[] = {
    {"undo", &editor::undo},
    {"redo", &editor::redo},
    {"history", &editor::history},
    {"show", &editor::show},
};

editor::editor(kelm::model& model, rules& shared, std::ostream& out)
    : model_(model), rules_(shared), out_(out) {}

void editor::run(std::string_view text) {
    const script_line split_line = split(text);
    line_reader line(split_line.words);
    if (line.at_end()) return;
    for (const command& known : commands) {
        if (!line.is(known.keyword)) continue;
        line.skip(1);
        return (this->*known.run)(line);
    }
    change(line, split_line.text);
}

/// What an error leaves half done, the guard takes back; when a hook refused, that has happened already.
void editor::change(line_reader& line, const std::string& name) {
    const edit_function apply = take_edit(line);
    const rules::watch watching(rules_);
    kelm::transaction_object transaction(&model_, name);
    try {
        apply(*model_.as_object(), line);
        line.expect_end();
        complete();
    } catch (const model_refusal&) {
        if (rules_.reason().empty()) throw;
        throw script_error(rules_.reason());
    }
    transaction.commit();
}

/// Asks before the end of the transaction: what is refused behind it is undone, and could be redone.
void editor::complete() {
    resolve_foreign_keys(*model_.as_object());
    if (!validate(model_, rules_)) throw model_refusal("the model refused a foreign key");
}

void editor::undo(line_reader& line) {
    for (std::size_t n = times(line, done(model_).size(), "undo"); n > 0; --n) model_.undo();
}

void editor::redo(line_reader& line) {
    for (std::size_t n = times(line, undone(model_).size(), "redo"); n > 0; --n) model_.redo();
}

/// The oldest first; behind the last that is done come those that can be redone.
void editor::history(line_reader& line) {
    line.expect_end();
    const kelm::transaction_names before = done(model_);
    const kelm::transaction_names behind = undone(model_);
    if (before.empty() && behind.empty()) out_ << "no edits\n";
    std::size_t number = 0;
    for (auto edit = before.rbegin(); edit != before.rend(); ++edit)
        out_ << ++number << "  " << printable(edit->second) << '\n';
    for (const auto& [id, name] : behind) out_ << ++number << "  " << printable(name) << "  (undone)\n";
}

void editor::show(line_reader& line) {
    if (line.at_end()) return print_tree(out_, *model_.as_object(), listings(*model_.as_object()));
    const kelm::object& only = relation(*model_.as_object(), line.name("the name of a table"));
    line.expect_end();
    print_relation(out_, only);
}

} // namespace schema
