#include "platform/kernel/FileMoves.h"

#include "platform/kernel/Attributes.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/FileFacts.h"
#include "platform/kernel/HostPath.h"
#include "platform/kernel/HostText.h"
#include "platform/kernel/LastError.h"
#include "platform/kernel/ShareModes.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace kel::platform {
namespace {

constexpr DWORD kKnownFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH;

DWORD Resolve(LPCSTR path, Place& place) {
    return path == nullptr ? ERROR_PATH_NOT_FOUND : ResolveHostPath(Utf8FromAnsi(path), place.host, place.facts);
}

bool IsSame(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool IsDevice(const Place& place) {
    return S_ISCHR(place.facts.st_mode) || S_ISBLK(place.facts.st_mode);
}

std::string FolderOf(const std::string& host) {
    const std::size_t slash = host.rfind('/');
    return slash == std::string::npos ? "." : host.substr(0, std::max<std::size_t>(slash, 1));
}

// The name that the caller wrote, in the folder that was found: "NAME" for a file that is there as "name".
std::string AsWritten(LPCSTR path, const std::string& host) {
    std::string written;
    TranslateHostPath(Utf8FromAnsi(path), written);
    return host.substr(0, host.rfind('/') + 1) + std::string(DropTrailing(LastComponent(written), /*last*/ true));
}

DWORD RenameOnHost(const std::string& from, const std::string& to, bool replace) {
    const int result = replace ? rename(from.c_str(), to.c_str())
                               : renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
    if (result == 0)
        return 0;
    // Some file systems cannot refuse to replace; that nothing was there has been seen a moment ago.
    if (!replace && (errno == EINVAL || errno == ENOSYS))
        return rename(from.c_str(), to.c_str()) == 0 ? 0 : ErrorFromHost(errno);
    return ErrorFromHost(errno);
}

DWORD CheckReplacing(const Place& from, const Place& to) {
    const bool folder = S_ISDIR(from.facts.st_mode) || S_ISDIR(to.facts.st_mode);
    const bool readOnly = !S_ISLNK(to.facts.st_mode) && AttributesOf(to.facts.st_mode, "") & FILE_ATTRIBUTE_READONLY;
    if (folder || readOnly || IsDevice(to) || CheckDeleteSharing(to.host.c_str()) != 0)
        return ERROR_ACCESS_DENIED;
    return 0;
}

DWORD Sync(const std::string& host) {
    const int file = open(host.c_str(), O_RDONLY | O_CLOEXEC);
    if (file == -1)
        return ErrorFromHost(errno);
    const DWORD error = fsync(file) == 0 ? 0 : ErrorFromHost(errno);
    close(file);
    return error;
}

// A name beside the target that nobody has: a copy under way must not be taken for the finished file.
std::string NameBeside(const std::string& host) {
    static std::atomic<unsigned> count{0};
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return FolderOf(host) + "/.moving-" + std::to_string(getpid()) + '-' + std::to_string(now.tv_nsec) + '-' +
           std::to_string(count.fetch_add(1, std::memory_order_relaxed));
}

DWORD MoveToOtherFileSystem(const Place& from, const Place& to, DWORD flags) {
    if (!S_ISREG(from.facts.st_mode))
        return ERROR_ACCESS_DENIED;
    Place copy{NameBeside(to.host)};
    DWORD error = CopyHostFile(from, copy);
    if (error == 0 && (flags & MOVEFILE_WRITE_THROUGH))
        error = Sync(copy.host);
    if (error == 0)
        error = RenameOnHost(copy.host, to.host, (flags & MOVEFILE_REPLACE_EXISTING) != 0);
    if (error != 0)
        unlink(copy.host.c_str());
    else if (unlink(from.host.c_str()) != 0)
        error = ErrorFromHost(errno);
    return error;
}

// Two names of one file: the host's rename would leave both.
DWORD RemoveOther(const Place& from) {
    return unlink(from.host.c_str()) == 0 ? 0 : ErrorFromHost(errno);
}

DWORD MoveOnto(const Place& from, const Place& to, DWORD flags) {
    const bool replace = (flags & MOVEFILE_REPLACE_EXISTING) != 0;
    if (to.Exists()) {
        if (!replace)
            return ERROR_ALREADY_EXISTS;
        if (const DWORD error = CheckReplacing(from, to))
            return error;
        if (IsSame(from.facts, to.facts))
            return RemoveOther(from);
    }
    const DWORD error = RenameOnHost(from.host, to.host, replace);
    if (error == ERROR_NOT_SAME_DEVICE && (flags & MOVEFILE_COPY_ALLOWED))
        return MoveToOtherFileSystem(from, to, flags);
    return error;
}

DWORD Move(LPCSTR fromPath, LPCSTR toPath, DWORD flags) {
    Place from;
    Place to;
    if (flags & ~kKnownFlags)
        return ERROR_NOT_SUPPORTED;
    if (const DWORD error = Resolve(fromPath, from))
        return error;
    if (!from.Exists())
        return ERROR_FILE_NOT_FOUND;
    if (const DWORD error = Resolve(toPath, to))
        return error;
    if (const DWORD error = IsDevice(from) ? ERROR_ACCESS_DENIED : CheckDeleteSharing(from.host.c_str()))
        return error;
    if (to.host == from.host) {
        to.host = AsWritten(toPath, from.host);
        to.facts = {};
    }
    const DWORD error = to.host == from.host ? 0 : MoveOnto(from, to, flags);
    return error == 0 && (flags & MOVEFILE_WRITE_THROUGH) ? Sync(FolderOf(to.host)) : error;
}

DWORD Copy(LPCSTR fromPath, LPCSTR toPath, bool failIfExists) {
    Place from;
    Place to;
    if (const DWORD error = Resolve(fromPath, from))
        return error;
    if (const DWORD error = FollowLink(from))
        return error;
    if (const DWORD error = Resolve(toPath, to))
        return error;
    if (to.Exists() && failIfExists)
        return ERROR_FILE_EXISTS;
    return CopyHostFile(from, to);
}

BOOL Finish(DWORD error) {
    return error == 0 || Fail(error);
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI MoveFileA(LPCSTR from, LPCSTR to) {
    return !CallFails("MoveFileA") && Finish(Move(from, to, MOVEFILE_COPY_ALLOWED));
}

BOOL WINAPI MoveFileExA(LPCSTR from, LPCSTR to, DWORD flags) {
    return !CallFails("MoveFileExA") && Finish(Move(from, to, flags));
}

BOOL WINAPI CopyFileA(LPCSTR from, LPCSTR to, BOOL failIfExists) {
    return !CallFails("CopyFileA") && Finish(Copy(from, to, failIfExists != FALSE));
}
