// Diagnostics for users: a text that must reach somebody, after which the program goes on.
// A trace for developers is the logger.
#pragma once

#include <string>

namespace kelm {

/// Shows `text` on the diagnostic channel: the standard error stream, or what process().complain says.
void complain(const std::string& text);

} // namespace kelm
