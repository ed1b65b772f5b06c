// Which objects of a schema are shown, and in what order.
// How they are shown is the business of the printers.
#pragma once

#include <kelm/object.h>

#include <string>
#include <string_view>
#include <vector>

namespace schema {

enum class order {
    as_read,    ///< tables and views by name, all else as it is declared
    name,       ///< blind to case
    columns,    ///< the widest first; by name where that is equal
    file_order, ///< as the database lists them: the oldest first, unless it was rewritten
};

/// What a user asks for.
struct selection {
    std::vector<kelm::u32> types; ///< of tables, views, indexes, triggers; none means tables and views
    std::string pattern = "*";    ///< of names: as SQLite's GLOB, but blind to case
    order by = order::as_read;
};

/// The objects of one type that are shown.
struct listing {
    kelm::u32 type;
    const char* key; ///< for programs
    std::vector<kelm::object*> objects;
};

/// \param root  the model's object side
/// \returns a listing for each type that is asked for, whether there are any objects of it or not
std::vector<listing> listings(const kelm::object& root, const selection& wanted = {});

} // namespace schema
