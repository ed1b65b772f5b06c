// The command line as an outline of it.
// What is made of outlines is in manual/.
#pragma once

#include "manual/outline.h"

#include <CLI/CLI.hpp>

namespace schema {

program_outline outline_of(const CLI::App& app);

} // namespace schema
