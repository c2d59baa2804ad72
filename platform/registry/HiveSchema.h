#pragma once

#include "platform/registry/Sqlite.h"

namespace kel::platform {

/// Keys that every hive has from the beginning. They cannot be deleted.
enum BuiltInKey : std::int64_t {
    kLocalMachine = 1,
    kUsers,
    kSoftware,
    kClasses,
    kCurrentUser,
    kSystem,
    kCurrentControlSet,
    kHardwareProfiles,
    kCurrentConfig,
    kLastBuiltIn = kCurrentConfig,
};

/// The bytes of a new hive's file.
std::string NewHive();

/// Makes the tables of an empty database, or waits until another process has made them, and checks that they are
/// exactly those of this version. Tables of another making could run code of theirs (triggers, views) or refuse values.
/// @throws RegistryFailure, SqliteFailure
void PrepareTables(sqlite3* database);

/// Reads every page of the database. @throws RegistryFailure if one is damaged.
void CheckPages(sqlite3* database);

/// Removes the volatile keys that were made before the host started.
void RemoveStaleKeys(sqlite3* database);

/// Identifies the time since the host started.
std::string_view BootIdentifier();

/// The present time as keys and values carry it: units of 100 ns since 1601 (UTC).
std::int64_t RegistryTime();

} // namespace kel::platform
