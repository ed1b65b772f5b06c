// The ids of what a schema is made of: types of objects, and their properties.
// What they may contain is told in meta_model.cpp.
#pragma once

#include <kelm/types.h>

namespace schema {

/// Types.  The schema itself is the model.
namespace type {
inline constexpr kelm::u32 table = 100;
inline constexpr kelm::u32 view = 101;
inline constexpr kelm::u32 column = 102;
inline constexpr kelm::u32 primary_key = 103;
inline constexpr kelm::u32 unique_key = 104;
inline constexpr kelm::u32 foreign_key = 105;
inline constexpr kelm::u32 index = 106;
inline constexpr kelm::u32 key_column = 107;         ///< one term of a primary key, a unique key or an index
inline constexpr kelm::u32 foreign_key_column = 108; ///< one pair of a foreign key
inline constexpr kelm::u32 trigger = 109;
inline constexpr kelm::u32 domain =
    110; ///< columns inherit its type, its default and whether they may be null
} // namespace type

/// Properties, beside the Name and the Definition that every object may have.  A flag that does not hold, and a
/// text that there is not, are simply not set.
namespace property {
// tables, views, indexes, triggers
inline constexpr kelm::u32 sql = 100;           ///< the statement that made it
inline constexpr kelm::u32 problem = 101;       ///< why the columns are unknown
inline constexpr kelm::u32 file_position = 102; ///< where the database lists it
// tables
inline constexpr kelm::u32 without_rowid = 110;
inline constexpr kelm::u32 strict = 111;
inline constexpr kelm::u32 is_virtual = 112;
inline constexpr kelm::u32 shadow = 113; ///< keeps the content of a virtual table
// columns, domains
inline constexpr kelm::u32 declared_type = 120;
inline constexpr kelm::u32 not_null = 121;
inline constexpr kelm::u32 default_value = 122;
// columns
inline constexpr kelm::u32 generated = 123; ///< "virtual" or "stored"
inline constexpr kelm::u32 hidden = 124;
inline constexpr kelm::u32 autoincrement = 125;
// columns, key columns
inline constexpr kelm::u32 collation = 126;
// key columns
inline constexpr kelm::u32 column = 130;     ///< Object Reference; not set for an expression
inline constexpr kelm::u32 expression = 131; ///< its text
inline constexpr kelm::u32 descending = 132;
// foreign keys
inline constexpr kelm::u32 target_table = 140; ///< Object Reference; not set when there is no such table
inline constexpr kelm::u32 target_name = 141;  ///< as the foreign key spells it: a table's, or a column's
inline constexpr kelm::u32 on_delete = 142;
inline constexpr kelm::u32 on_update = 143;
// foreign key columns, beside `column` and `target_name`
inline constexpr kelm::u32 target_column = 144; ///< Object Reference; not set when there is no such column
// indexes
inline constexpr kelm::u32 unique = 150;
inline constexpr kelm::u32 partial = 151;
inline constexpr kelm::u32 condition = 152; ///< which rows a partial index covers
} // namespace property

} // namespace schema
