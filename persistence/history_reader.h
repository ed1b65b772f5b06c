// A model's log back from its stream or document.
// Performing it on a live model is replay.
#pragma once

#include "framework/field_archives.h"
#include "message/format_version.h"

#include <kelm/io_references.h>

#include <vector>

namespace kelm {

class model_impl;

/// Where a log goes.
struct log_target {
    std::vector<message*>& messages; ///< appended to; the caller owns them
    io_reference_manager& references;
    model_impl& model;
    std::vector<object*>& deleted; ///< the model owns them
};

/// Reads what history_writer wrote.
/// \param from  binary_in or document_in: the fields of the history
/// \returns false when the replay of a message failed; that the archive has failed is told by the archive
template <class Archive>
bool read_log(Archive from, const log_target& into, format_version version, bool replay);

} // namespace kelm
