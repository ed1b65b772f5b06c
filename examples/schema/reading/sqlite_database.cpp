// Opening an SQLite database without leaving a trace, and running queries on it.
// Every failure leaves here as one sentence.
#include "reading/sqlite_database.h"

#include "files/file_error.h"
#include "files/readable_file.h"

#include <sqlite3.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace schema {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const std::string& sentence) { throw database_error(sentence, false); }

/// Whether the header tells of a write-ahead log.
bool uses_log(const std::string& path) {
    std::array<char, 20> header{};
    std::ifstream(path, std::ios::binary).read(header.data(), header.size());
    return header[19] == 2;
}

/// Whether nothing but the database file itself holds content.  SQLite would then make a log and a shared index
/// beside it, and leave them there.
bool can_do_without_log(const std::string& path) {
    std::error_code error;
    if (!uses_log(path)) return false;
    if (!fs::exists(path + "-wal", error)) return true;
    return fs::file_size(path + "-wal", error) == 0 && !fs::exists(path + "-shm", error);
}

bool has_unread_log(const std::string& path) {
    std::error_code error;
    return uses_log(path) && fs::exists(path + "-wal", error) && !fs::exists(path + "-shm", error);
}

/// The path as a URI; absolute, so that names like ":memory:" and "file:x" are taken as files.
std::string uri_of(const std::string& path) {
    static constexpr char digits[] = "0123456789ABCDEF";
    static constexpr std::string_view plain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/._-";
    std::string uri = "file://";
    for (const char c : fs::absolute(path).string()) {
        const auto byte = static_cast<unsigned char>(c);
        if (plain.find(c) != std::string_view::npos)
            uri += c;
        else
            uri.append({'%', digits[byte / 16], digits[byte % 16]});
    }
    uri += "?mode=ro&readonly_shm=1";
    return can_do_without_log(path) ? uri + "&immutable=1" : uri;
}

} // namespace

void database::closer::operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
void statement::finalizer::operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }

database::database(const std::string& path) : path_(path) {
    require_readable(path); // SQLite itself says only "unable to open database file" to all that can be wrong
    sqlite3* handle = nullptr;
    const int code =
        sqlite3_open_v2(uri_of(path).c_str(), &handle, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    handle_.reset(handle);
    if (code != SQLITE_OK) fail(code);
    sqlite3_extended_result_codes(handle, 1);
    sqlite3_busy_timeout(handle, 2000);
    try {
        // One transaction, so that all queries see the same schema.
        statement(*this, "BEGIN").next();
        statement(*this, "SELECT count(*) FROM main.sqlite_master").next();
    } catch (const database_error& error) {
        throw as_whole(error);
    }
}

database_error database::as_whole(const database_error& error) const {
    return error.is_local() ? database_error("cannot read " + quoted(path_) + ": " + error.what(), false)
                            : error;
}

column_details database::details(const std::string& table, const std::string& column) const {
    const char* collation = nullptr;
    int autoincrement = 0;
    const int code = sqlite3_table_column_metadata(handle_.get(), "main", table.c_str(), column.c_str(),
                                                   nullptr, &collation, nullptr, nullptr, &autoincrement);
    if (code != SQLITE_OK || !collation) return {};
    return {collation, autoincrement != 0};
}

void database::fail(int code) const {
    const std::string path = quoted(path_);
    const std::string reason = handle_ ? sqlite3_errmsg(handle_.get()) : sqlite3_errstr(code);
    if (code == SQLITE_ERROR || code == SQLITE_CORRUPT_VTAB) throw database_error(reason, true);
    switch (code & 0xFF) {
    case SQLITE_NOTADB: refuse(path + " is not an SQLite database");
    case SQLITE_CORRUPT: refuse(path + " is damaged: " + reason);
    case SQLITE_BUSY: refuse(path + " is locked by another program");
    case SQLITE_CANTOPEN:
        if (has_unread_log(path_))
            refuse(path + " has a log that only a program that may write can take over");
        break;
    default: break;
    }
    refuse("cannot read " + path + ": " + reason);
}

statement::statement(const database& in, std::string_view sql,
                     std::initializer_list<std::string_view> parameters)
    : database_(in) {
    sqlite3_stmt* handle = nullptr;
    const int code =
        sqlite3_prepare_v2(in.handle_.get(), sql.data(), static_cast<int>(sql.size()), &handle, nullptr);
    handle_.reset(handle);
    if (code != SQLITE_OK) in.fail(code);
    int position = 0;
    for (const std::string_view value : parameters) {
        const int bound = sqlite3_bind_text64(handle, ++position, value.data(), value.size(),
                                              SQLITE_TRANSIENT, SQLITE_UTF8);
        if (bound != SQLITE_OK) in.fail(bound);
    }
}

bool statement::next() {
    const int code = sqlite3_step(handle_.get());
    if (code == SQLITE_ROW) return true;
    if (code != SQLITE_DONE) database_.fail(code);
    return false;
}

bool statement::is_null(int column) const {
    return sqlite3_column_type(handle_.get(), column) == SQLITE_NULL;
}

std::string statement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(handle_.get(), column));
    if (!bytes) return {};
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column))};
}

int statement::number(int column) const { return sqlite3_column_int(handle_.get(), column); }

} // namespace schema
