#pragma once

/// @file
/// SQLite as the hive uses it: statements whose parameters and columns have types, failures as exceptions.

#include <kelcore/platform/base.h>

#include <sqlite3.h>

#include <memory>
#include <string>
#include <string_view>

namespace kel::platform {

/// Ends a registry call with its result. Thrown below the door, returned at it.
struct RegistryFailure {
    LONG code;
};

/// A failure that SQLite reports, by its extended code.
struct SqliteFailure {
    int code;

    int Primary() const { return code & 0xFF; }
    /// Whether another connection was in the way, so that trying again helps.
    bool IsBusy() const;
    /// Whether the file is not what it should be.
    bool IsDamage() const;
    /// The result of a registry call that meets it.
    LONG Result() const;
};

/// @throws SqliteFailure unless @p code means success.
void RequireSqlite(int code);

struct DatabaseCloser {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};

/// A connection.
using Database = std::unique_ptr<sqlite3, DatabaseCloser>;

/// Connects with a file that exists, or with a new database in memory, for use by one thread at a time.
/// @throws SqliteFailure
Database OpenDatabase(const std::string& path);

/// Bytes as a parameter; a std::string_view is a text.
struct Blob {
    std::string_view bytes;
};

/// A prepared statement, kept for the life of its connection.
class Statement {
public:
    Statement(sqlite3* database, const char* sql);
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement() { sqlite3_finalize(m_statement); }

private:
    friend class Query;
    sqlite3_stmt* m_statement = nullptr;
};

/// One run of a statement. Parameters are bound in their order and must live as long as the run.
///
///     Query rows(statement, key, name);
///     while (rows.Next())
///         Take(rows.Integer(0), rows.Bytes(1));
class Query {
public:
    template <class... Parameters>
    explicit Query(Statement& statement, const Parameters&... parameters) : m_statement(statement.m_statement) {
        (Bind(parameters), ...);
    }
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;
    ~Query() { sqlite3_reset(m_statement); }

    /// Moves to the next row. @return false behind the last one.
    bool Next();
    /// Runs a statement that has no rows, or whose rows do not matter.
    void Run();

    std::int64_t Integer(int column) const { return sqlite3_column_int64(m_statement, column); }
    bool IsNull(int column) const { return sqlite3_column_type(m_statement, column) == SQLITE_NULL; }
    /// The bytes of a text or blob, valid until the next row.
    std::string_view Bytes(int column) const;

private:
    void Bind(std::int64_t value) { RequireSqlite(sqlite3_bind_int64(m_statement, ++m_bound, value)); }
    void Bind(std::string_view text);
    void Bind(Blob blob);

    sqlite3_stmt* m_statement;
    int m_bound = 0;
};

} // namespace kel::platform
