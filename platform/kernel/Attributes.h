#pragma once

#include <kelcore/platform/directories.h>

#include <string>
#include <string_view>

namespace kel::platform {

/// What Win32 tells about one thing in a folder, besides its name.
struct EntryFacts {
    DWORD attributes = 0;
    FILETIME created = {};
    FILETIME accessed = {};
    FILETIME written = {};
    std::uint64_t size = 0; ///< 0 for all but files
};

/// The last component of a host path.
std::string_view LastComponent(std::string_view hostPath);

/// Asks for @p path, below the open folder @p folder or AT_FDCWD, as a program that goes through links sees it.
/// @return 0, or the host's error number.
int FollowedFacts(int folder, const char* path, EntryFacts& facts);

/// Asks for @p path as a search shows it: a link to a file is that file with FILE_ATTRIBUTE_REPARSE_POINT; a link to a
/// folder or to nowhere is a reparse point alone, so that nobody who walks a tree goes round in circles.
int ListedFacts(int folder, const char* path, EntryFacts& facts);

/// Writes the facts into a WIN32_FIND_DATAA or a WIN32_FILE_ATTRIBUTE_DATA.
template <class Record>
void TellFacts(const EntryFacts& facts, Record& record) {
    record.dwFileAttributes = facts.attributes;
    record.ftCreationTime = facts.created;
    record.ftLastAccessTime = facts.accessed;
    record.ftLastWriteTime = facts.written;
    record.nFileSizeHigh = static_cast<DWORD>(facts.size >> 32);
    record.nFileSizeLow = static_cast<DWORD>(facts.size);
}

} // namespace kel::platform
