// The command line as plain data: what a manual page and the completions of shells are made of.
// It is taken from the command line itself (commands/outlined.h), so that they say what the program does.
#pragma once

#include <string>
#include <vector>

namespace schema {

struct argument_outline {
    std::vector<std::string>
        names;         ///< with their dashes; one without, for an argument that is told by its place
    std::string value; ///< what stands for its value; empty for a flag and for a place
    std::string description;
    std::vector<std::string> choices; ///< the values that it may have; empty for any
    bool is_file;
    bool is_required;
    bool is_repeated; ///< more than one value at its place
};

struct command_outline {
    std::string name;
    std::string description;
    std::string text; ///< paragraphs; lines that begin with a blank stay as they are
    std::vector<std::string> examples;
    std::vector<argument_outline> places;
    std::vector<argument_outline> options;
};

struct program_outline {
    std::string version;
    command_outline program; ///< what it has without a command; no places
    std::vector<command_outline> commands;
};

} // namespace schema
