#include "platform/registry/HiveSchema.h"

#include "platform/registry/HiveFile.h"

#include <kelcore/platform/errors.h>
#include <kelcore/platform/system.h>

#include <fcntl.h>
#include <iterator>
#include <string>
#include <unistd.h>

namespace kel::platform {
namespace {

// Compared with what a hive says it consists of: any change here needs another version.
// AUTOINCREMENT: an identifier is never given out again, so that an open handle cannot come to mean a later key.
constexpr const char* kTables[] = {
    "CREATE TABLE keys(id INTEGER PRIMARY KEY AUTOINCREMENT, parent INTEGER NOT NULL, folded TEXT NOT NULL, "
    "name TEXT NOT NULL, class TEXT NOT NULL, boot TEXT, written INTEGER NOT NULL, UNIQUE(parent, folded)) STRICT",
    "CREATE TABLE vals(id INTEGER PRIMARY KEY, key INTEGER NOT NULL, folded TEXT NOT NULL, name TEXT NOT NULL, "
    "type INTEGER NOT NULL, written INTEGER NOT NULL, data BLOB NOT NULL, UNIQUE(key, folded)) STRICT",
    "CREATE INDEX stale ON keys(boot) WHERE boot IS NOT NULL",
};

struct BuiltIn {
    BuiltInKey id;
    std::int64_t parent;
    const char* folded;
    const char* name;
};

constexpr BuiltIn kBuiltIns[] = {
    {kLocalMachine, 0, "HKEY_LOCAL_MACHINE", "HKEY_LOCAL_MACHINE"},
    {kUsers, 0, "HKEY_USERS", "HKEY_USERS"},
    {kSoftware, kLocalMachine, "SOFTWARE", "Software"},
    {kClasses, kSoftware, "CLASSES", "Classes"},
    {kCurrentUser, kUsers, "CURRENT", "Current"},
    {kSystem, kLocalMachine, "SYSTEM", "System"},
    {kCurrentControlSet, kSystem, "CURRENTCONTROLSET", "CurrentControlSet"},
    {kHardwareProfiles, kCurrentControlSet, "HARDWARE PROFILES", "Hardware Profiles"},
    {kCurrentConfig, kHardwareProfiles, "CURRENT", "Current"},
};

void Run(sqlite3* database, const char* sql) {
    Statement statement(database, sql);
    Query(statement).Run();
}

std::int64_t Ask(sqlite3* database, const char* sql) {
    Statement statement(database, sql);
    Query row(statement);
    return row.Next() ? row.Integer(0) : 0;
}

void AddBuiltIns(sqlite3* database) {
    Statement insert(database, "INSERT INTO keys(id, parent, folded, name, class, boot, written) "
                               "VALUES(?, ?, ?, ?, '', NULL, ?)");
    for (const BuiltIn& key : kBuiltIns)
        Query(insert, std::int64_t{key.id}, key.parent, std::string_view(key.folded), std::string_view(key.name),
              RegistryTime())
            .Run();
}

void MakeTables(sqlite3* database) {
    for (const char* table : kTables)
        Run(database, table);
    AddBuiltIns(database);
    Run(database, ("PRAGMA application_id = " + std::to_string(kHiveIdentifier)).c_str());
    Run(database, ("PRAGMA user_version = " + std::to_string(kHiveVersion)).c_str());
}

bool IsEmpty(sqlite3* database) {
    return Ask(database, "SELECT count(*) FROM sqlite_schema") == 0 && Ask(database, "PRAGMA application_id") == 0;
}

// The header is forced to the disk with the tables, as it is never written again.
void MakeTablesOnce(sqlite3* database) {
    Run(database, "BEGIN IMMEDIATE");
    if (IsEmpty(database))
        MakeTables(database);
    Run(database, "COMMIT");
}

bool HasOurTables(sqlite3* database) {
    Statement statement(database, "SELECT sql FROM sqlite_schema WHERE sql IS NOT NULL AND "
                                  "name <> 'sqlite_sequence' ORDER BY rowid");
    Query tables(statement);
    for (const char* table : kTables)
        if (!tables.Next() || tables.Bytes(0) != table)
            return false;
    return !tables.Next();
}

std::string ReadBootIdentifier() {
    char text[64];
    const int file = open("/proc/sys/kernel/random/boot_id", O_RDONLY | O_CLOEXEC);
    const ssize_t size = file == -1 ? 0 : read(file, text, sizeof text);
    if (file != -1)
        close(file);
    std::string identifier(text, size > 0 ? static_cast<std::size_t>(size) : 0);
    while (!identifier.empty() && identifier.back() == '\n')
        identifier.pop_back();
    return identifier;
}

} // namespace

std::string NewHive() {
    const Database database = OpenDatabase(kMemoryHive);
    PrepareTables(database.get());
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
        sqlite3_serialize(database.get(), "main", &size, /*flags*/ 0), sqlite3_free);
    if (!bytes)
        throw std::bad_alloc();
    std::string image(reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size));
    image[18] = image[19] = 2; // what writers and readers have to know: there is a log
    return image;
}

void PrepareTables(sqlite3* database) {
    if (IsEmpty(database))
        MakeTablesOnce(database);
    if (Ask(database, "PRAGMA application_id") != kHiveIdentifier)
        throw RegistryFailure{ERROR_NOT_REGISTRY_FILE};
    if (Ask(database, "PRAGMA user_version") > kHiveVersion)
        throw RegistryFailure{ERROR_UNKNOWN_REVISION};
    if (!HasOurTables(database))
        throw RegistryFailure{ERROR_REGISTRY_CORRUPT};
}

void CheckPages(sqlite3* database) {
    Statement statement(database, "PRAGMA quick_check(1)");
    Query row(statement);
    if (!row.Next() || row.Bytes(0) != "ok")
        throw RegistryFailure{ERROR_REGISTRY_CORRUPT};
}

void RemoveStaleKeys(sqlite3* database) {
    const std::string_view boot = BootIdentifier();
    constexpr char kStale[] = "SELECT 1 FROM keys WHERE boot IS NOT NULL AND boot <> ? LIMIT 1";
    Statement stale(database, kStale);
    if (!Query(stale, boot).Next())
        return;
    Statement values(database, "DELETE FROM vals WHERE key IN "
                               "(SELECT id FROM keys WHERE boot IS NOT NULL AND boot <> ?)");
    Statement keys(database, "DELETE FROM keys WHERE boot IS NOT NULL AND boot <> ?");
    Run(database, "BEGIN IMMEDIATE");
    Query(values, boot).Run();
    Query(keys, boot).Run();
    Run(database, "COMMIT");
}

std::string_view BootIdentifier() {
    static const std::string identifier = ReadBootIdentifier();
    return identifier;
}

std::int64_t RegistryTime() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(now.dwHighDateTime) << 32 | now.dwLowDateTime);
}

} // namespace kel::platform
