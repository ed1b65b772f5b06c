// A line of a terminal that is written again and again.
// What it says is the business of progress.h.
#pragma once

#include "progress/progress.h"

#include <string>

namespace schema {

/// The last line of the terminal that standard error is.
class terminal_line final : public progress_display {
public:
    /// \returns whether standard error is a terminal that can erase: a pipe or a file gets no progress
    static bool is_possible();

    void show(const std::string& line) override;
    void clear() override;
};

} // namespace schema
