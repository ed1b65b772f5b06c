// Puts a clipboard into a schema, as one edit.
// What becomes of single things on the way is decided by paste_rules.h.
#pragma once

#include "copying/clipboard.h"
#include "copying/paste_rules.h"
#include "hooks/rules.h"
#include "log/signature.h"

#include <kelm/model.h>

#include <ostream>
#include <string>

namespace schema {

/// Pastes in a transaction that can be undone.  The rules of a schema hold.
/// \param file    the name of the model's file, for errors
/// \param verb    the first word of the name of the edit; the tables follow
/// \param by      signs it
/// \param shared  of the hooks that the types were given
/// \throws file_error when a rule forbids it, or the clipboard is none: the model is then as before
paste_report paste(const clipboard& from, kelm::model& into, const std::string& file, const std::string& verb,
                   const signature& by, rules& shared);

/// Prints a line a thing.
void print_report(std::ostream& out, const paste_report& report);

} // namespace schema
