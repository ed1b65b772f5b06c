// The transactions of a model's history, with what belongs to each.
// How they are shown is the business of log.h.
#pragma once

#include "log/signature.h"

#include <kelm/message.h>
#include <kelm/model.h>

#include <cstddef>
#include <string>
#include <vector>

namespace schema {

struct transaction {
    std::size_t number; ///< from 1, the oldest
    kelm::u32 id;
    std::string name;
    signature by;                               ///< empty when nobody has signed it
    std::vector<const kelm::message*> messages; ///< borrowed; without begins and ends
};

/// \param last  the newest so many; 0 stands for all
/// \returns the transactions that can be undone, the oldest first
std::vector<transaction> transactions(const kelm::model& of, std::size_t last = 0);

/// \returns the text of one of its messages
std::string text_of(const kelm::message& message);

} // namespace schema
