// A replay log: edits that one file remembers, to be made on another.
// How they are made is in replay.h.
#pragma once

#include "files/file_version.h"

#include <kelm/model.h>

#include <cstddef>
#include <string>
#include <vector>

namespace schema {

/// An object that the edits speak of and that was there before them.
struct known_object {
    kelm::u32 id;
    kelm::u32 type;
    std::string name;
};

/// The library's log, with what must be so before and after it is performed: nothing in it maps ids, so it fits a model
/// that has the same objects under the same ids, and gives new ones the same.
struct replay_log {
    file_version version;
    std::vector<known_object> known;
    std::vector<kelm::u32> made; ///< the objects that the edits make, in their order
    std::string messages;        ///< what message_history::read_transactions reads
};

/// Takes the newest transactions of a model's history, and undoes them on the way: the model is not to be saved.
/// \param last  how many; 0 stands for all
/// \throws file_error when there are none, and when they can fit no model
replay_log take_replay_log(kelm::model& from, std::size_t last);

/// \returns the log as the content of a file: lines of text, then the messages
std::string to_text(const replay_log& log);
/// \throws file_error when the file is no whole log of the present version
replay_log read_replay_log(const std::string& path);

/// \returns the objects that the newest messages of a model have made, in their order
/// \param first  the place of the first message that is asked
std::vector<kelm::u32> objects_made(const kelm::model& in, std::size_t first);

} // namespace schema
