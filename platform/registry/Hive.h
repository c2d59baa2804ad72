#pragma once

#include "platform/registry/Sqlite.h"
#include "platform/registry/WalIndex.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace kel::platform {

/// One connection to a hive, used by one thread at a time. It lives within the process that made it: the locks that
/// SQLite holds on a file do not pass to a child.
class Hive {
public:
    /// Opens the hive at @p path (kMemoryHive: a new one in memory), making it if it is not there.
    /// @param check whether to read all of it, looking for damage.
    /// @throws RegistryFailure, SqliteFailure. A file that is refused is left as it was.
    Hive(const std::string& path, bool check);
    Hive(const Hive&) = delete;
    Hive& operator=(const Hive&) = delete;
    ~Hive();

    const WalIndex& Index() const { return m_index; }
    bool IsInMemory() const { return m_inMemory; }

    /// The prepared statement for a literal text.
    Statement& operator[](const char* sql);

    /// The row that the last insertion made.
    std::int64_t LastRow() const { return sqlite3_last_insert_rowid(m_database.get()); }

    /// Runs @p body in a transaction that sees one state of the hive. While other connections are in the way it is
    /// tried again, for half a minute. @throws RegistryFailure, SqliteFailure: nothing was changed.
    template <class Body>
    void Read(Body body) {
        Transact("BEGIN", body);
    }

    /// As Read, in a transaction that may change the hive: nobody else does before it ends.
    template <class Body>
    void Write(Body body) {
        Transact("BEGIN IMMEDIATE", body);
        if (m_inMemory)
            m_index.CountOwnCommit();
    }

    /// Brings all that was committed to the disk.
    void Flush();

    /// Leaves the files as they are when the connection ends: no checkpoint is made and the log stays.
    void KeepFilesOnClose(bool keep);

private:
    void Connect(const std::string& path, bool check);
    void Configure();
    void EnterWalMode();
    void Run(const char* sql) { Query((*this)[sql]).Run(); }
    bool Answers(const char* sql, std::string_view text);
    void RollBack() noexcept;

    // Whether to try again after @p failure; pauses first.
    static bool MayRetry(const SqliteFailure& failure, std::chrono::steady_clock::time_point begin);
    static int WaitForOthers(void* hive, int count);

    template <class Body>
    void Transact(const char* begin, Body& body) {
        const auto start = std::chrono::steady_clock::now();
        while (!TryTransact(begin, body, start))
            continue;
    }

    template <class Body>
    bool TryTransact(const char* begin, Body& body, std::chrono::steady_clock::time_point start) try {
        Run(begin);
        body();
        Run("COMMIT");
        return true;
    } catch (const SqliteFailure& failure) {
        RollBack();
        if (!MayRetry(failure, start))
            throw;
        return false;
    } catch (...) {
        RollBack();
        throw;
    }

    const bool m_inMemory;
    Database m_database;
    std::map<const char*, Statement> m_statements; // keyed by the literal itself
    WalIndex m_index;
};

} // namespace kel::platform
