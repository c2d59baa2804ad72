#include "platform/registry/Hive.h"

#include "platform/registry/HiveFile.h"
#include "platform/registry/HiveSchema.h"

#include <kelcore/platform/errors.h>

#include <algorithm>
#include <thread>
#include <unistd.h>

namespace kel::platform {
namespace {

using Clock = std::chrono::steady_clock;

// A process that holds the hive for so long is stopped or stuck. One that begins a new log waits for the disk
// meanwhile, which takes many seconds when others keep the disk busy.
constexpr auto kPatience = std::chrono::seconds(60);

// Turns are short: waiting begins with giving up the processor and grows to a millisecond, by an odd step so that
// processes that wait together do not come back together.
void Pause(int count) {
    if (count < 4)
        std::this_thread::yield();
    else
        std::this_thread::sleep_for(std::chrono::microseconds(std::min(20 * count, 900) + getpid() % 97));
}

// How far a wait under way has come; one a thread, as a connection's wait begins anew with the count 0.
thread_local Clock::time_point t_waitBegan;

} // namespace

Hive::Hive(const std::string& path, bool check) : m_inMemory(path == kMemoryHive) {
    const auto begin = Clock::now();
    for (;;) {
        try {
            Connect(path, check);
            return;
        } catch (const SqliteFailure& failure) {
            m_statements.clear();
            m_database.reset();
            if (!MayRetry(failure, begin))
                throw;
        }
    }
}

Hive::~Hive() {
    m_statements.clear();
}

void Hive::Connect(const std::string& path, bool check) {
    if (!m_inMemory)
        PrepareHiveFile(path);
    m_database = OpenDatabase(path);
    sqlite3* const database = m_database.get();
    Configure();
    if (!m_inMemory && check)
        CheckPages(database);
    PrepareTables(database);
    RemoveStaleKeys(database);
    if (!m_inMemory)
        EnterWalMode();
    KeepFilesOnClose(false);
}

// A hive may have been damaged on purpose: nothing that its tables say is run as code.
void Hive::Configure() {
    sqlite3* const database = m_database.get();
    sqlite3_busy_handler(database, &Hive::WaitForOthers, this);
    for (const int option : {SQLITE_DBCONFIG_DEFENSIVE, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE})
        RequireSqlite(sqlite3_db_config(database, option, 1, nullptr));
    for (const int option :
         {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_TRUSTED_SCHEMA})
        RequireSqlite(sqlite3_db_config(database, option, 0, nullptr));
    Run("PRAGMA cell_size_check = ON");
    Run("PRAGMA mmap_size = 0"); // a file that shrinks under a mapping ends the process
}

void Hive::EnterWalMode() {
    if (!Answers("PRAGMA journal_mode = WAL", "wal"))
        throw RegistryFailure{ERROR_CANTOPEN};
    // A commit is in the log, whole, whatever becomes of the process. RegFlushKey adds what the loss of power asks for.
    Run("PRAGMA synchronous = NORMAL");
    Read([this] { Run("SELECT 1 FROM keys LIMIT 1"); });
    m_index.Attach(m_database.get());
}

bool Hive::Answers(const char* sql, std::string_view text) {
    Query row((*this)[sql]);
    return row.Next() && row.Bytes(0) == text;
}

Statement& Hive::operator[](const char* sql) {
    const auto found = m_statements.find(sql);
    if (found != m_statements.end())
        return found->second;
    return m_statements
        .emplace(std::piecewise_construct, std::forward_as_tuple(sql), std::forward_as_tuple(m_database.get(), sql))
        .first->second;
}

// A failure may have ended the transaction already.
void Hive::RollBack() noexcept {
    if (sqlite3_get_autocommit(m_database.get()) == 0)
        sqlite3_exec(m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

// Every commit lies in the log, or in the file itself, which was forced to the disk before the log began anew. So
// forcing the log is all there is to do; SQLite's own routine sees to the log's folder entry.
void Hive::Flush() {
    if (m_inMemory)
        return;
    sqlite3_file* log = nullptr;
    RequireSqlite(sqlite3_file_control(m_database.get(), "main", SQLITE_FCNTL_JOURNAL_POINTER, &log));
    if (log != nullptr && log->pMethods != nullptr)
        RequireSqlite(log->pMethods->xSync(log, SQLITE_SYNC_NORMAL));
}

void Hive::KeepFilesOnClose(bool keep) {
    sqlite3_db_config(m_database.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, keep ? 1 : 0, nullptr);
}

bool Hive::MayRetry(const SqliteFailure& failure, Clock::time_point begin) {
    if (!failure.IsBusy() || Clock::now() - begin > kPatience)
        return false;
    Pause(/*count*/ 10);
    return true;
}

int Hive::WaitForOthers(void*, int count) {
    if (count == 0)
        t_waitBegan = Clock::now();
    else if (Clock::now() - t_waitBegan > kPatience)
        return 0;
    Pause(count);
    return 1;
}

} // namespace kel::platform
