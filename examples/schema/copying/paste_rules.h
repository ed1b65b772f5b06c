// How a clipboard fits into the schema it is pasted into, as rules for the library's copier.
// The paste itself, and what is left to do behind it, is the business of paste.h.
#pragma once

#include "copying/clipboard.h"

#include <kelm/object.h>

#include <map>
#include <string>
#include <vector>

namespace schema {

/// What a paste is told of: a sentence's rest for each thing that was linked, came along or was left out.
struct paste_report {
    std::vector<std::string> copied;
    std::vector<std::string> linked;
    std::vector<std::string> brought_along;
    std::vector<std::string> left_out;
};

/// What the rules of one paste share.  The copier keeps clones of them, so this must outlive the last paste.
struct pasting {
    const clipboard& from;
    kelm::object& root; ///< the object side of the model that is pasted into
    paste_report report;
    std::map<kelm::u32, kelm::u32> source_ids; ///< by type: of the node that comes next, or came last
};

/// Gives the copier of a clipboard its rules:
/// - domains and properties of a name that is there are not made again;
/// - values of user-defined properties find the property of their name, and are left out when that will not have them;
/// - foreign keys to tables that stayed behind find a table of the same name, as far as there is one;
/// - where a database lists things is not carried over.
void set_paste_rules(kelm::copier& objects, pasting& shared);

} // namespace schema
