// How much there is of what in a schema.
// Counted in the model, not in the database.
#pragma once

#include <kelm/object.h>

#include <cstddef>
#include <vector>

namespace schema {

struct count {
    const char* one;  ///< what is counted, as in "1 table"
    const char* many; ///< as in "2 tables"
    const char* key;  ///< for programs
    std::size_t number;
};

/// \param root  the model's object side
std::vector<count> counts(const kelm::object& root);

} // namespace schema
