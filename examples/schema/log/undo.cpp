// Undo is the library's; this counts first.
// What is undone is not saved, so there is no command that brings it back.
#include "log/undo.h"

#include "files/file_error.h"

namespace schema {

std::vector<std::string> undo(kelm::model& model, std::size_t times, const std::string& file) {
    kelm::transaction_names names;
    model.undo_names(names, 0);
    if (names.empty()) throw file_error("there is nothing to undo in " + quoted(file));
    if (times > names.size())
        throw file_error("cannot undo " + std::to_string(times) + " edits, there " +
                         (names.size() == 1 ? "is" : "are") + " only " + std::to_string(names.size()) +
                         " in " + quoted(file));
    std::vector<std::string> undone;
    for (std::size_t at = 0; at != times; ++at) {
        model.undo();
        undone.push_back(names[at].second);
    }
    return undone;
}

} // namespace schema
