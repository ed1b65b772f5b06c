// How a command is explained: what its help says beside its arguments, and how all of it is laid out.
// What the arguments are is told where they are added.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace schema {

/// What stands behind the arguments of a command.
struct explanation {
    /// Paragraphs, filled to the width of a page; a line that begins with a blank stays as it is.
    std::string text;
    std::vector<std::string> examples; ///< command lines
};

/// Gives a command, or the program, its explanation.
void explain(CLI::App& command, const explanation& what);
/// \returns what explain() was given
explanation explanation_of(const CLI::App& command);

/// \returns what stands for the value of an option: FILE, N; empty for a flag, and for what is told by its place
std::string value_name(const CLI::Option& option);

/// Lays a page of help out: at most 80 columns wide, each argument with its name and what stands for its value.
class help_page final : public CLI::Formatter {
public:
    help_page() { column_width(27); }

    std::string make_usage(const CLI::App* app, std::string name) const override;
    std::string make_subcommand(const CLI::App* command) const override;
    std::string make_option_opts(const CLI::Option* option) const override;
    std::string make_option_desc(const CLI::Option* option) const override;
    std::string make_footer(const CLI::App* app) const override;
};

} // namespace schema
