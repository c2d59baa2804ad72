#include "bench/registry/Stores.h"

#include <sqlite3.h>

#include <stdexcept>

namespace {

using namespace kel::bench;

// Prepared statements on a database that is as safe as the hive: a log ahead of the file, written through on
// checkpoints.
class SqliteStore : public ByteTexts {
public:
    SqliteStore() {
        Check(sqlite3_open((NewFolder("sqlite") / "store.db").c_str(), &m_database));
        Execute("PRAGMA journal_mode = WAL");
        Execute("PRAGMA synchronous = NORMAL");
        Execute("CREATE TABLE entry (name TEXT PRIMARY KEY, text TEXT NOT NULL) WITHOUT ROWID");
        m_set = Prepare("INSERT INTO entry VALUES (?1, ?2) ON CONFLICT (name) DO UPDATE SET text = ?2");
        m_get = Prepare("SELECT text FROM entry WHERE name = ?1");
        m_all = Prepare("SELECT name, text FROM entry");
    }
    SqliteStore(const SqliteStore&) = delete;
    SqliteStore& operator=(const SqliteStore&) = delete;
    ~SqliteStore() {
        for (sqlite3_stmt* const statement : {m_set, m_get, m_all})
            sqlite3_finalize(statement);
        sqlite3_close(m_database);
    }

    void Fill(const Pairs<ByteTexts>& pairs) {
        Execute("BEGIN");
        for (const auto& [name, text] : pairs)
            Set(name, text);
        Execute("COMMIT");
    }

    void Set(const Text& name, const Text& text) {
        Bind(m_set, 1, name);
        Bind(m_set, 2, text);
        Check(sqlite3_step(m_set) == SQLITE_DONE ? SQLITE_OK : SQLITE_ERROR);
        sqlite3_reset(m_set);
    }

    Text Get(const Text& name) {
        Bind(m_get, 1, name);
        sqlite3_step(m_get);
        const Text text = Column(m_get, 0);
        sqlite3_reset(m_get);
        return text;
    }

    Pairs<ByteTexts> All() {
        Pairs<ByteTexts> pairs;
        while (sqlite3_step(m_all) == SQLITE_ROW)
            pairs.emplace_back(Column(m_all, 0), Column(m_all, 1));
        sqlite3_reset(m_all);
        return pairs;
    }

private:
    static void Check(int code) {
        if (code != SQLITE_OK)
            throw std::runtime_error("sqlite: " + std::to_string(code));
    }

    static void Bind(sqlite3_stmt* statement, int index, const Text& text) {
        sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    }

    static Text Column(sqlite3_stmt* statement, int index) {
        const auto* const bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, index));
        return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, index))};
    }

    void Execute(const char* text) { Check(sqlite3_exec(m_database, text, nullptr, nullptr, nullptr)); }

    sqlite3_stmt* Prepare(const char* text) {
        sqlite3_stmt* statement = nullptr;
        Check(sqlite3_prepare_v3(m_database, text, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
        return statement;
    }

    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_set = nullptr;
    sqlite3_stmt* m_get = nullptr;
    sqlite3_stmt* m_all = nullptr;
};

const Enter<StoreJobs> entered(JobsOf<SqliteStore>("sqlite"));

} // namespace
