// Runs the lines of a script on a model: each edit in a transaction, undo and redo between them.
// Where the lines come from is the business of edit.h.
#pragma once

#include "edits/line_reader.h"
#include "hooks/rules.h"

#include <kelm/model.h>

#include <ostream>
#include <string_view>

namespace schema {

class editor {
public:
    /// What the model's history holds can be undone.  All are borrowed.
    /// \param shared  of the hooks that the types were given
    editor(kelm::model& model, rules& shared, std::ostream& out);

    /// Does what one line says; nothing for one that is empty or a comment.
    /// \throws script_error when it is wrong, or a rule forbids it; the model is then as before
    void run(std::string_view line);

private:
    struct command;
    static const command commands[];

    void undo(line_reader& line);
    void redo(line_reader& line);
    void history(line_reader& line);
    void show(line_reader& line);
    void change(line_reader& line, const std::string& name);

    void complete();

    kelm::model& model_;
    rules& rules_;
    std::ostream& out_;
};

} // namespace schema
