#include "platform/registry/Sqlite.h"

#include <kelcore/platform/errors.h>

#include <new>

namespace kel::platform {
namespace {

struct Meaning {
    int sqlite;
    LONG result;
};

constexpr Meaning kMeanings[] = {
    {SQLITE_FULL, ERROR_DISK_FULL},
    {SQLITE_IOERR, ERROR_REGISTRY_IO_FAILED},
    {SQLITE_PERM, ERROR_ACCESS_DENIED},
    {SQLITE_AUTH, ERROR_ACCESS_DENIED},
    {SQLITE_READONLY, ERROR_ACCESS_DENIED},
    {SQLITE_CANTOPEN, ERROR_CANTOPEN},
    {SQLITE_CORRUPT, ERROR_REGISTRY_CORRUPT},
    {SQLITE_NOTADB, ERROR_NOT_REGISTRY_FILE},
    {SQLITE_TOOBIG, ERROR_NO_SYSTEM_RESOURCES},
    {SQLITE_BUSY, ERROR_BUSY},
    {SQLITE_LOCKED, ERROR_BUSY},
    {SQLITE_PROTOCOL, ERROR_BUSY},
    // Only a table that breaks its own rules brings these to statements as ours.
    {SQLITE_CONSTRAINT, ERROR_REGISTRY_CORRUPT},
    {SQLITE_MISMATCH, ERROR_REGISTRY_CORRUPT},
};

} // namespace

bool SqliteFailure::IsBusy() const {
    return Primary() == SQLITE_BUSY || Primary() == SQLITE_LOCKED || Primary() == SQLITE_PROTOCOL;
}

bool SqliteFailure::IsDamage() const {
    return Primary() == SQLITE_CORRUPT || Primary() == SQLITE_NOTADB;
}

LONG SqliteFailure::Result() const {
    for (const Meaning& meaning : kMeanings)
        if (meaning.sqlite == Primary())
            return meaning.result;
    return ERROR_INTERNAL_ERROR;
}

void RequireSqlite(int code) {
    if ((code & 0xFF) == SQLITE_NOMEM)
        throw std::bad_alloc();
    if (code != SQLITE_OK)
        throw SqliteFailure{code};
}

Database OpenDatabase(const std::string& path) {
    sqlite3* opened = nullptr;
    const int code =
        sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE,
                        /*file system*/ nullptr);
    Database database(opened); // there is one to close after a failure, too
    RequireSqlite(code);
    return database;
}

Statement::Statement(sqlite3* database, const char* sql) {
    RequireSqlite(sqlite3_prepare_v3(database, sql, /*to the NUL*/ -1, SQLITE_PREPARE_PERSISTENT, &m_statement,
                                     /*tail*/ nullptr));
}

bool Query::Next() {
    const int code = sqlite3_step(m_statement);
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE)
        RequireSqlite(code);
    return false;
}

void Query::Run() {
    while (Next())
        continue;
}

std::string_view Query::Bytes(int column) const {
    const void* const bytes = sqlite3_column_blob(m_statement, column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column));
    return bytes == nullptr ? std::string_view() : std::string_view(static_cast<const char*>(bytes), size);
}

void Query::Bind(std::string_view text) {
    RequireSqlite(sqlite3_bind_text64(m_statement, ++m_bound, text.data() == nullptr ? "" : text.data(), text.size(),
                                      SQLITE_STATIC, SQLITE_UTF8));
}

void Query::Bind(Blob blob) {
    // A null pointer would bind NULL.
    const char* const bytes = blob.bytes.data() == nullptr ? "" : blob.bytes.data();
    RequireSqlite(sqlite3_bind_blob64(m_statement, ++m_bound, bytes, blob.bytes.size(), SQLITE_STATIC));
}

} // namespace kel::platform
