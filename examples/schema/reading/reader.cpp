// Reads tables, views, keys, indexes and triggers through SQLite's PRAGMAs.
// Objects first, then what refers to them: a foreign key may point at a table of a later name.
#include "reading/reader.h"

#include "progress/progress.h"
#include "schema/foreign_keys.h"
#include "schema/identifiers.h"
#include "schema/lookup.h"
#include "schema/sql_text.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/meta_model.h>
#include <kelm/transaction.h>

#include <sqlite3.h>

#include <map>
#include <utility>
#include <vector>

namespace schema {

namespace {

class schema_reader {
public:
    schema_reader(const database& from, kelm::object& root) : db_(from), root_(root) {}

    void read() {
        read_relations("table", type::table);
        read_relations("view", type::view);
        read_table_list();
        read_index_sql();
        std::vector<kelm::object*> relations;
        for (const auto& [unused, relation] : relations_) relations.push_back(relation);
        for_each("columns", relations, &schema_reader::read_columns);
        const std::vector<kelm::object*> tables = parts(root_, type::table);
        for_each("keys", tables, &schema_reader::read_keys);
        for_each("foreign keys", tables, &schema_reader::read_foreign_keys);
        resolve_foreign_keys(root_);
        read_triggers();
    }

private:
    void for_each(const char* what, const std::vector<kelm::object*>& relations,
                  void (schema_reader::*read_part)(kelm::object&)) {
        progress told("reading " + std::string(what), count_of_tables, relations.size());
        for (kelm::object* relation : relations) {
            (this->*read_part)(*relation);
            told.advance();
        }
    }

    void read_relations(const char* kind, kelm::u32 type) {
        statement row(db_,
                      "SELECT name, sql, rowid FROM main.sqlite_master"
                      " WHERE type = ? AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'"
                      " ORDER BY name COLLATE NOCASE, name",
                      {kind});
        while (row.next()) {
            kelm::object& made = add(root_, type, row.text(0));
            set_text(made, property::sql, row.text(1));
            set_number(made, property::file_position, row.number(2));
            relations_[row.text(0)] = &made;
        }
    }

    /// What kind of table each is.
    void read_table_list() {
        if (sqlite3_libversion_number() < 3037000) return; // it came with 3.37
        statement row(db_, "SELECT name, type, wr, strict FROM pragma_table_list WHERE schema = 'main'");
        while (row.next()) {
            const auto found = relations_.find(row.text(0));
            if (found == relations_.end()) continue;
            kelm::object& table = *found->second;
            if (row.text(1) == "virtual") set_flag(table, property::is_virtual);
            if (row.text(1) == "shadow") set_flag(table, property::shadow);
            if (row.number(2)) set_flag(table, property::without_rowid);
            if (row.number(3)) set_flag(table, property::strict);
        }
    }

    void read_index_sql() {
        statement row(db_, "SELECT name, sql, rowid FROM main.sqlite_master WHERE type = 'index'");
        while (row.next()) index_sql_[row.text(0)] = {row.text(1), row.number(2)};
    }

    /// A view of what is gone, and a virtual table of an unknown kind, have no columns that could be told; the
    /// rest of the schema can be.
    void read_columns(kelm::object& relation) {
        try {
            statement row(db_,
                          "SELECT name, type, \"notnull\", dflt_value, hidden"
                          " FROM pragma_table_xinfo(?, 'main') ORDER BY cid",
                          {name(relation)});
            while (row.next()) read_column(relation, row);
        } catch (const database_error& error) {
            if (!error.is_local()) throw;
            set_text(relation, property::problem, error.what());
        }
    }

    void read_column(kelm::object& relation, const statement& row) {
        kelm::object& column = add(relation, type::column, row.text(0));
        set_text(column, property::declared_type, row.text(1));
        if (row.number(2)) set_flag(column, property::not_null);
        if (!row.is_null(3)) set_text(column, property::default_value, row.text(3));
        if (row.number(4) == 1) set_flag(column, property::hidden);
        if (row.number(4) == 2) set_text(column, property::generated, "virtual");
        if (row.number(4) == 3) set_text(column, property::generated, "stored");
        if (relation.type() != type::table) return;
        const column_details details = db_.details(name(relation), row.text(0));
        set_text(column, property::collation, details.collation);
        if (details.autoincrement) set_flag(column, property::autoincrement);
    }

    /// SQLite lists the indexes of a table newest first, those that serve its keys among them.
    void read_keys(kelm::object& table) {
        statement row(db_,
                      "SELECT name, \"unique\", origin, partial FROM pragma_index_list(?, 'main')"
                      " ORDER BY seq DESC",
                      {name(table)});
        while (row.next()) {
            const std::string origin = row.text(2);
            if (origin == "pk")
                read_key_columns(add(table, type::primary_key), table, row.text(0), {});
            else if (origin == "u")
                read_key_columns(add(table, type::unique_key), table, row.text(0), {});
            else
                read_index_of(table, row);
        }
        if (!table.child_count(type::primary_key)) read_plain_primary_key(table);
    }

    void read_index_of(kelm::object& table, const statement& row) {
        kelm::object& index = add(table, type::index, row.text(0));
        if (row.number(1)) set_flag(index, property::unique);
        if (row.number(3)) set_flag(index, property::partial);
        const auto& [sql, position] = index_sql_[row.text(0)];
        set_text(index, property::sql, sql);
        set_number(index, property::file_position, position);
        const index_text text = read_index(sql);
        if (row.number(3)) set_text(index, property::condition, text.condition);
        read_key_columns(index, table, row.text(0), text.terms);
    }

    /// \param terms  the text of each term, for those that are expressions
    void read_key_columns(kelm::object& key, const kelm::object& table, const std::string& index,
                          const std::vector<std::string>& terms) {
        statement row(
            db_, "SELECT cid, desc, coll FROM pragma_index_xinfo(?, 'main') WHERE key = 1 ORDER BY seqno",
            {index});
        for (std::size_t position = 0; row.next(); ++position) {
            kelm::object& part = add(key, type::key_column);
            const int cid = row.number(0);
            if (kelm::object* column =
                    cid < 0 ? nullptr : table.child_at(type::column, static_cast<std::size_t>(cid)))
                set_target(part, property::column, *column);
            else
                set_text(part, property::expression, position < terms.size() ? terms[position] : "?");
            if (row.number(1)) set_flag(part, property::descending);
            set_text(part, property::collation, row.text(2));
        }
    }

    /// An integer primary key is the row id and needs no index; a virtual table has none either.
    void read_plain_primary_key(kelm::object& table) {
        if (has(table, property::problem)) return;
        statement row(db_, "SELECT cid FROM pragma_table_xinfo(?, 'main') WHERE pk > 0 ORDER BY pk",
                      {name(table)});
        kelm::object* key = nullptr;
        while (row.next()) {
            kelm::object* column = table.child_at(type::column, static_cast<std::size_t>(row.number(0)));
            if (!column) continue;
            if (!key) key = &add(table, type::primary_key);
            kelm::object& part = add(*key, type::key_column);
            set_target(part, property::column, *column);
            set_text(part, property::collation, text(*column, property::collation));
        }
    }

    /// SQLite numbers the foreign keys of a table from the last to the first.
    void read_foreign_keys(kelm::object& table) {
        statement row(db_,
                      "SELECT seq, \"table\", \"from\", \"to\", on_delete, on_update"
                      " FROM pragma_foreign_key_list(?, 'main') ORDER BY id DESC, seq",
                      {name(table)});
        kelm::object* key = nullptr;
        while (row.next()) {
            if (row.number(0) == 0) key = &read_foreign_key(table, row);
            if (!key) continue;
            kelm::object& part = add(*key, type::foreign_key_column);
            if (kelm::object* column = find(table, type::column, row.text(2)))
                set_target(part, property::column, *column);
            if (!row.is_null(3)) set_text(part, property::target_name, row.text(3));
        }
    }

    static kelm::object& read_foreign_key(kelm::object& table, const statement& row) {
        kelm::object& key = add(table, type::foreign_key);
        set_text(key, property::target_name, row.text(1));
        if (row.text(4) != "NO ACTION") set_text(key, property::on_delete, row.text(4));
        if (row.text(5) != "NO ACTION") set_text(key, property::on_update, row.text(5));
        return key;
    }

    void read_triggers() {
        statement row(db_, "SELECT name, tbl_name, sql, rowid FROM main.sqlite_master WHERE type = 'trigger' "
                           "ORDER BY rowid");
        while (row.next()) {
            const auto found = relations_.find(row.text(1));
            if (found == relations_.end()) continue; // of one of SQLite's own tables
            kelm::object& made = add(*found->second, type::trigger, row.text(0));
            set_text(made, property::sql, row.text(2));
            set_number(made, property::file_position, row.number(3));
        }
    }

    const database& db_;
    kelm::object& root_;
    std::map<std::string, kelm::object*, less_name> relations_; ///< tables and views share one space of names
    std::map<std::string, std::pair<std::string, int>, less_name>
        index_sql_; ///< with their positions in the file
};

} // namespace

void read_schema(const database& from, kelm::model& into) {
    kelm::transaction_object change(&into, "Read schema");
    try {
        schema_reader(from, *into.as_object()).read();
    } catch (const database_error& error) {
        throw from.as_whole(error);
    }
    change.commit();
}

} // namespace schema
