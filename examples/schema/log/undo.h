// The command `undo`: takes back what a file remembers.
// Inside a script the editor does it: see editor.h.
#pragma once

#include <kelm/model.h>

#include <cstddef>
#include <string>
#include <vector>

namespace schema {

/// Undoes the newest transactions.
/// \param file  where the model comes from, for errors
/// \returns their names, the newest first
/// \throws file_error when there are not so many; nothing is undone then
std::vector<std::string> undo(kelm::model& model, std::size_t times, const std::string& file);

} // namespace schema
