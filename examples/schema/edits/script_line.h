// A line of a script, cut into words.
// What the words mean is the business of line_reader.h and of the commands.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace schema {

/// What is wrong with a line, as one sentence for the user.
class script_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A keyword, a name, a number, or one of the signs . , ( ) + -
struct word {
    std::string text; ///< that of a quoted name is without its quotes
    bool quoted = false;
    bool spaced = false; ///< white space stands before it
};

struct script_line {
    std::vector<word> words;
    std::string text; ///< as it was written, without its comment, with one blank for each run of white space
};

/// \throws script_error when the line cannot be cut into words
script_line split(std::string_view line);

} // namespace schema
