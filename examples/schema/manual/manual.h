// What an installation holds beside the program: a manual page, and completions for three shells.
// Each is a text made of the outline of the command line.
#pragma once

#include "manual/outline.h"

#include <string>

namespace schema {

/// \returns a page for man, of section 1
std::string man_page(const program_outline& of);
/// \returns a file for bash-completion; it needs nothing but bash
std::string bash_completion(const program_outline& of);
/// \returns a function for zsh's completion system
std::string zsh_completion(const program_outline& of);
/// \returns a file for fish
std::string fish_completion(const program_outline& of);

} // namespace schema
