#include "platform/kernel/FileFacts.h"

#include "platform/kernel/Descriptor.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/FileObject.h"
#include "platform/kernel/HostTimes.h"
#include "platform/kernel/LastError.h"

#include <fcntl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <climits>

namespace kel::platform {

FILETIME ToFileTime(const struct statx_timestamp& time) {
    return ToFileTime(timespec{time.tv_sec, time.tv_nsec});
}

FILETIME CreationTime(const struct statx& facts) {
    if (facts.stx_mask & STATX_BTIME)
        return ToFileTime(facts.stx_btime);
    FILETIME earliest = ToFileTime(facts.stx_mtime);
    for (const statx_timestamp& time : {facts.stx_atime, facts.stx_ctime})
        if (const FILETIME other = ToFileTime(time); CompareFileTime(&other, &earliest) < 0)
            earliest = other;
    return earliest;
}

DWORD AttributesOf(mode_t mode, std::string_view name) {
    DWORD attributes = S_ISDIR(mode)   ? FILE_ATTRIBUTE_DIRECTORY
                       : S_ISREG(mode) ? FILE_ATTRIBUTE_ARCHIVE
                                       : FILE_ATTRIBUTE_DEVICE;
    if ((mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0)
        attributes |= FILE_ATTRIBUTE_READONLY;
    if (name.starts_with('.') && name != "." && name != "..")
        attributes |= FILE_ATTRIBUTE_HIDDEN;
    return attributes;
}

namespace {

bool AskFor(const FileObject& file, struct statx& facts) {
    constexpr unsigned kWanted = STATX_BASIC_STATS | STATX_BTIME;
    return statx(file.descriptor, "", AT_EMPTY_PATH, kWanted, &facts) == 0 || FailFromHost();
}

// By the name that the file has now, which need not be the one it was opened by.
DWORD CurrentAttributes(const FileObject& file, mode_t mode) {
    char path[PATH_MAX];
    const ssize_t length = readlink(DescriptorPath(file.descriptor).Text(), path, sizeof path);
    const std::string_view text(path, length > 0 ? static_cast<std::size_t>(length) : 0);
    return AttributesOf(mode, text.substr(text.rfind('/') + 1));
}

std::uint64_t Ticks(const FILETIME& time) {
    return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

// Null, zero and all ones leave a time as it is.
bool IsGiven(const FILETIME* time) {
    return time && Ticks(*time) != 0 && ~Ticks(*time) != 0;
}

bool IsPossible(const FILETIME* time) {
    return !IsGiven(time) || Ticks(*time) >> 63 == 0;
}

timespec TimeToSet(const FILETIME* time) {
    return IsGiven(time) ? ToTimespec(*time) : timespec{0, UTIME_OMIT};
}

void Tell(FILETIME* target, const FILETIME& time) {
    if (target)
        *target = time;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI GetFileTime(HANDLE file, LPFILETIME created, LPFILETIME accessed, LPFILETIME written) {
    if (CallFails("GetFileTime"))
        return FALSE;
    const PinnedFile pinned(file, FILE_READ_ATTRIBUTES);
    struct statx facts;
    if (!pinned || !AskFor(*pinned, facts))
        return FALSE;
    Tell(created, CreationTime(facts));
    Tell(accessed, ToFileTime(facts.stx_atime));
    Tell(written, ToFileTime(facts.stx_mtime));
    return TRUE;
}

BOOL WINAPI SetFileTime(HANDLE file, const FILETIME* created, const FILETIME* accessed, const FILETIME* written) {
    if (CallFails("SetFileTime"))
        return FALSE;
    const PinnedFile pinned(file, FILE_WRITE_ATTRIBUTES);
    if (!pinned)
        return FALSE;
    if (!IsPossible(created) || !IsPossible(accessed) || !IsPossible(written))
        return Fail(ERROR_INVALID_PARAMETER);
    // By way of its path in the process's folder, since a descriptor for attributes alone is not enough for the host.
    const timespec times[] = {TimeToSet(accessed), TimeToSet(written)};
    return utimensat(AT_FDCWD, DescriptorPath(pinned->descriptor).Text(), times, /*flags*/ 0) == 0 || FailFromHost();
}

BOOL WINAPI GetFileInformationByHandle(HANDLE file, LPBY_HANDLE_FILE_INFORMATION information) {
    if (CallFails("GetFileInformationByHandle"))
        return FALSE;
    const PinnedFile pinned(file, /*rights*/ 0);
    struct statx facts;
    if (!pinned || !AskFor(*pinned, facts))
        return FALSE;
    const std::uint64_t size = pinned->kind == FileKind::Folder ? 0 : facts.stx_size;
    information->dwFileAttributes = CurrentAttributes(*pinned, facts.stx_mode);
    information->ftCreationTime = CreationTime(facts);
    information->ftLastAccessTime = ToFileTime(facts.stx_atime);
    information->ftLastWriteTime = ToFileTime(facts.stx_mtime);
    information->dwVolumeSerialNumber = static_cast<DWORD>(gnu_dev_makedev(facts.stx_dev_major, facts.stx_dev_minor));
    information->nFileSizeHigh = static_cast<DWORD>(size >> 32);
    information->nFileSizeLow = static_cast<DWORD>(size);
    information->nNumberOfLinks = facts.stx_nlink;
    information->nFileIndexHigh = static_cast<DWORD>(facts.stx_ino >> 32);
    information->nFileIndexLow = static_cast<DWORD>(facts.stx_ino);
    return TRUE;
}

LONG WINAPI CompareFileTime(const FILETIME* first, const FILETIME* second) {
    const std::uint64_t a = Ticks(*first);
    const std::uint64_t b = Ticks(*second);
    return a < b ? -1 : a > b;
}
