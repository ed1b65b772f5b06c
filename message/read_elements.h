// Which elements of lists the messages of a log speak of that was read back.
// What is stored of an element is told by the messages of elements themselves.
#pragma once

#include <cstddef>
#include <vector>

namespace kelm {

class message;

/// Gives each message of an element that a list holds, or held until a later message, that very element.
///
/// A stream tells of such an element only where one that equals it stands today, which may be another: one that a later
/// message puts in, and takes along when that message is undone and dropped.  The places that messages have are those of
/// their own moment, so the log is walked back from today, as undo will walk it.
/// \param first  where the log begins among `messages`; all of it stands on the done side
void find_read_elements(const std::vector<message*>& messages, std::size_t first);

} // namespace kelm
