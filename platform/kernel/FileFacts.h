#pragma once

#include <kelcore/platform/base.h>

#include <sys/stat.h>

#include <string_view>

namespace kel::platform {

/// A file's time of creation, from what statx tells when asked for STATX_BASIC_STATS | STATX_BTIME: the time of birth
/// or, where the file system keeps none, the earliest of the others.
FILETIME CreationTime(const struct statx& facts);

/// One of statx's times as a file time.
FILETIME ToFileTime(const struct statx_timestamp& time);

/// The FILE_ATTRIBUTE_ bits of a file: folders are DIRECTORY, files ARCHIVE and all else DEVICE; what nobody may write
/// is READONLY, and names that begin with a dot are HIDDEN.
/// @param name the last component of its host path.
DWORD AttributesOf(mode_t mode, std::string_view name);

} // namespace kel::platform
