// The command `replay`: makes the edits of a log on a model.
// What a log is, is told by replay_log.h.
#pragma once

#include "hooks/rules.h"
#include "log/replay_log.h"
#include "log/signature.h"

#include <kelm/model.h>

#include <string>

namespace schema {

/// Makes the edits of a log, each as a transaction that can be undone.  The rules of a schema hold.
/// \param on      where; when this throws, it is in pieces and not to be saved
/// \param file    its name, for errors
/// \param by      signs the transactions
/// \param shared  of the hooks that the types were given
/// \returns how many transactions there were
/// \throws file_error when the log does not fit
std::size_t replay(const replay_log& log, kelm::model& on, const std::string& file, const signature& by,
                   rules& shared);

} // namespace schema
