// Puts the parts of a line together.
// Control characters and broken text are dealt with in text.cpp.
#include "printing/shown.h"

#include "printing/text.h"
#include "schema/identifiers.h"
#include "schema/sql_text.h"
#include "schema/values.h"

namespace schema {

std::string shown_identifier(const std::string& text) { return printable(identifier(text)); }
std::string shown_name(const kelm::object& what) { return shown_identifier(name(what)); }
std::string shown_sql(const std::string& sql) { return printable(one_line(sql)); }

void append(std::string& list, const std::string& entry, const char* separator) {
    if (!list.empty() && !entry.empty()) list += separator;
    list += entry;
}

void print_line(std::ostream& out, std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
}

} // namespace schema
