// Tables on their way into another file: the library's snapshot, and the names that it does not hold.
// How they are put in there is told by paste.h.
#pragma once

#include <kelm/copier.h>
#include <kelm/model.h>
#include <kelm/types.h>

#include <map>
#include <string>
#include <vector>

namespace schema {

/// A snapshot knows what lies outside of it by numbers alone, and these mean something else in another file.
struct clipboard {
    kelm::shared_ptr<kelm::copier> objects; ///< the tables, and the domains and properties that they use
    std::vector<std::string> tables;        ///< their names, in the order of copying
    /// By the number of a foreign key whose table stays behind: the name of that table; by the number of one of its
    /// columns that names its target: the name of that.
    std::map<kelm::u32, std::string> targets;
    std::map<kelm::u32, std::string> properties; ///< by their number: the names of what users defined
};

/// \param tables  names; one that comes twice is copied once
/// \throws script_error when there is no such table
clipboard take_clipboard(kelm::model& from, const std::vector<std::string>& tables);

/// \returns the content of a file: lines of text, then the snapshot
std::string to_text(const clipboard& from);
/// \param into  the model that it is going to be pasted into
/// \throws file_error when the file is no whole clipboard of the present version
clipboard read_clipboard(const std::string& path, kelm::model& into);

} // namespace schema
