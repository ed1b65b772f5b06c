// What a stretch of edits came to: what is new in a schema, what is gone, and what differs.
// How it is shown is the business of changes_printer.h and changes_json.h.
#pragma once

#include <kelm/delta.h>
#include <kelm/model.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace schema {

/// A property of something that changed, as text.
struct value_change {
    kelm::u32 property;
    std::string name;
    std::optional<std::string> before; ///< empty when there was no value, and for what was created
    std::optional<std::string> after;  ///< empty when there is no value, and for what was dropped
    std::string inherited_from; ///< the domain that the value of now comes from; empty when it is its own
    bool by_default = false;    ///< whether the value of now is the one that nobody has set
};

/// Places among the parts of a type, from 1.
struct place_change {
    std::size_t from;
    std::size_t to;
};

enum class fate { created, dropped, changed };

/// An object that a change is told of.
struct changed_thing {
    fate what;
    kelm::u32 type;
    kelm::u32 id;
    std::string type_name;
    std::string
        name; ///< of now; for what was dropped, of before; of a term, its column's; empty when it has none
    std::string where; ///< the table or view it is part of; empty for what is part of none
    std::vector<value_change> values;
    std::vector<std::string> columns; ///< of a key or an index: its columns and expressions
    std::string target;               ///< of a foreign key: its table
    std::vector<std::string> target_columns;
    std::vector<changed_thing> parts; ///< what came or went with it

    // Of what changed.
    std::string renamed_from;            ///< empty when it kept its name
    std::string moved_from;              ///< the table it was part of before; empty when it stayed
    std::optional<place_change> moved;   ///< empty when it stayed
    std::vector<std::string> new_bases;  ///< domains that it uses now and did not
    std::vector<std::string> lost_bases; ///< domains that it used and does not
};

/// The changes of one table or view; or those of all domains and properties.
using change_group = std::vector<changed_thing>;

/// Tells from transaction `first` on what has changed since.
/// \param first  a transaction that the history of the model has
/// \returns domains and properties first, then tables and views as they stand in the schema, dropped ones last
std::vector<change_group> changes_since(kelm::model& in, kelm::u32 first);

/// \returns the value of now; for what was dropped, that of before; empty when there is none
std::string value_of(const changed_thing& thing, kelm::u32 property);

} // namespace schema
