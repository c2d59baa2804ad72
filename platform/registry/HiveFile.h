#pragma once

/// @file
/// The hive's file before SQLite sees it: where it is, that it is there, and that it is a hive at all.

#include <cstdint>
#include <string>

namespace kel::platform {

/// The name of a hive in memory.
inline constexpr char kMemoryHive[] = ":memory:";

/// "KelR", the application identifier in the header of every hive.
inline constexpr std::int64_t kHiveIdentifier = 0x4B656C52;

/// The version of the tables.
inline constexpr std::int64_t kHiveVersion = 1;

/// The host path that KELCORE_REGISTRY names, or that of the user's own hive, whose folder is made if it is missing.
std::string DefaultHivePath();

/// Makes a new hive, readable by the user alone, if there is no file, and looks at the header of one that holds
/// something, without changing it.
/// @throws RegistryFailure if the file cannot be used, is none of ours, or is of a later version.
void PrepareHiveFile(const std::string& path);

/// Tells a file from another one, and from itself after a change.
struct FileSignature {
    std::uint64_t device = 0;
    std::uint64_t node = 0;
    std::int64_t size = -1;
    std::int64_t changed = 0; ///< in ns

    bool operator==(const FileSignature&) const = default;
};

FileSignature SignatureOf(const std::string& path);

} // namespace kel::platform
