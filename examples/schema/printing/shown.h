// Names and SQL as a line of text shows them.
// What comes into a line is the business of the printers.
#pragma once

#include <kelm/object.h>

#include <ostream>
#include <string>

namespace schema {

std::string shown_identifier(const std::string& text);
std::string shown_name(const kelm::object& what);
/// In one line.
std::string shown_sql(const std::string& sql);

/// Adds an entry to a list; nothing for an empty one.
void append(std::string& list, const std::string& entry, const char* separator);
/// Prints a line without blanks at its end.
void print_line(std::ostream& out, std::string line);

} // namespace schema
