// An SQLite database that is read and never written, and the rows of its queries.
// What is asked of it is the business of reader.h.
#pragma once

#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace schema {

/// What went wrong, as one sentence for the user.
class database_error : public std::runtime_error {
public:
    database_error(const std::string& sentence, bool local) : std::runtime_error(sentence), local_(local) {}
    /// \returns whether only what was asked for is out of order, not the database as a whole
    bool is_local() const { return local_; }

private:
    bool local_;
};

/// What SQLite knows of a table's column beyond its PRAGMAs.
struct column_details {
    std::string collation;
    bool autoincrement = false;
};

/// An open database.  Reading it makes and changes no file, not even beside it.
class database {
public:
    /// \throws database_error when what is at `path` is no database or cannot be read, file_error when there is no
    ///         file to read
    explicit database(const std::string& path);

    /// \returns the error, with the file's name when it told only of a part
    database_error as_whole(const database_error& error) const;
    /// \returns nothing special for what SQLite does not know
    column_details details(const std::string& table, const std::string& column) const;

private:
    friend class statement;
    struct closer {
        void operator()(sqlite3* handle) const;
    };

    [[noreturn]] void fail(int code) const;

    std::string path_;
    std::unique_ptr<sqlite3, closer> handle_;
};

/// A query with bound parameters, read row by row.  It must not outlive its database.
class statement {
public:
    statement(const database& in, std::string_view sql,
              std::initializer_list<std::string_view> parameters = {});

    /// Goes to the next row.  \returns false behind the last
    bool next();
    // Columns count from 0.
    bool is_null(int column) const;
    /// \returns empty for null
    std::string text(int column) const;
    /// \returns 0 for null
    int number(int column) const;

private:
    struct finalizer {
        void operator()(sqlite3_stmt* handle) const;
    };

    const database& database_;
    std::unique_ptr<sqlite3_stmt, finalizer> handle_;
};

} // namespace schema
