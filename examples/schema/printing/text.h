// Text on its way out: broken bytes, control characters, widths.
// What is written is the business of the printers.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace schema {

/// \returns the text with every byte that is no UTF-8 replaced by U+FFFD
std::string valid_utf8(std::string_view text);
/// The same for a terminal: control characters, line breaks among them, become visible signs.
std::string printable(std::string_view text);

/// \returns the number of code points of valid text
std::size_t width(std::string_view text);
/// \returns the text, filled up with blanks
std::string padded(const std::string& text, std::size_t to);
/// \returns the text, cut behind `most` code points and marked with "..." when it is longer
std::string shortened(const std::string& text, std::size_t most);

/// \returns the text with its plain letters in lower case
std::string lower(std::string text);
/// \returns the words with that between them
std::string joined(const std::vector<std::string>& words, const std::string& between);

} // namespace schema
