#include "platform/kernel/Descriptor.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/FileObject.h"
#include "platform/kernel/HostPath.h"
#include "platform/kernel/LastError.h"
#include "platform/kernel/ShareModes.h"
#include "platform/kernel/Views.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <new>

namespace kel::platform {
namespace {

constexpr DWORD kReadingRights = FILE_READ_DATA | FILE_EXECUTE;
constexpr DWORD kWritingRights = FILE_WRITE_DATA | FILE_APPEND_DATA;

/// What CreateFileA was asked for, with its generic rights resolved.
struct Request {
    std::string path;
    DWORD rights;
    DWORD share;
    DWORD disposition;
    DWORD flags;
    bool inherit;

    bool Replaces() const { return disposition == CREATE_ALWAYS || disposition == TRUNCATE_EXISTING; }
    bool Creates() const { return disposition != OPEN_EXISTING && disposition != TRUNCATE_EXISTING; }
    bool Writes() const { return (rights & kWritingRights) != 0 || Replaces(); }
};

/// An opened file before it has passed the checks that need its facts.
struct Opened {
    Descriptor descriptor;
    bool existed = true;
};

DWORD CheckArguments(DWORD access, DWORD share, DWORD disposition, HANDLE pattern) {
    constexpr DWORD kShareBits = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    if (disposition < CREATE_NEW || disposition > TRUNCATE_EXISTING || (share & ~kShareBits) != 0)
        return ERROR_INVALID_PARAMETER;
    if (disposition == TRUNCATE_EXISTING && !(access & GENERIC_WRITE))
        return ERROR_INVALID_PARAMETER;
    if (access & ACCESS_SYSTEM_SECURITY)
        return ERROR_PRIVILEGE_NOT_HELD;
    return pattern ? ERROR_NOT_SUPPORTED : 0;
}

bool NobodyMayWrite(const struct stat& facts) {
    return (facts.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

bool MayWrite(const std::string& path) {
    struct stat facts;
    return stat(path.c_str(), &facts) == 0 && !NobodyMayWrite(facts) &&
           faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

// MAXIMUM_ALLOWED asks for whatever the file allows.
DWORD RightsFor(const std::string& path, DWORD access, DWORD flags) {
    DWORD rights = SpecificFileRights(access & ~MAXIMUM_ALLOWED);
    if (access & MAXIMUM_ALLOWED)
        rights |= MayWrite(path) ? FILE_ALL_ACCESS : FILE_GENERIC_READ | FILE_GENERIC_EXECUTE;
    return flags & FILE_FLAG_DELETE_ON_CLOSE ? rights | DELETE : rights;
}

int CommonFlags(const Request& request) {
    int flags = O_NOCTTY | (request.inherit ? 0 : O_CLOEXEC);
    if (request.flags & FILE_FLAG_WRITE_THROUGH)
        flags |= O_DSYNC;
    if ((request.rights & kWritingRights) == FILE_APPEND_DATA)
        flags |= O_APPEND;
    return flags;
}

Descriptor OpenHost(const Request& request, int flags) {
    constexpr mode_t kEverybody = 0666;
    constexpr mode_t kReadOnly = 0444; // the creating descriptor may write all the same
    const mode_t mode = request.flags & FILE_ATTRIBUTE_READONLY ? kReadOnly : kEverybody;
    return Descriptor(Uninterrupted([&] { return open(request.path.c_str(), flags | CommonFlags(request), mode); }));
}

// A write handle reads too where the file allows it: the locks behind the share modes need that.
Descriptor OpenToWrite(const Request& request) {
    Descriptor opened = OpenHost(request, O_RDWR);
    if (!opened && errno == EACCES && !(request.rights & kReadingRights))
        opened = OpenHost(request, O_WRONLY);
    if (!opened && errno == EISDIR)
        opened = OpenHost(request, O_RDONLY | O_DIRECTORY);
    return opened;
}

// Attribute rights need no right to the contents, and no device is disturbed for them.
Descriptor OpenExisting(const Request& request) {
    if (request.Writes())
        return OpenToWrite(request);
    if (!TakesPartInSharing(request.rights))
        return OpenHost(request, O_PATH);
    Descriptor opened = OpenHost(request, O_RDONLY);
    if (!opened && errno == EACCES && !(request.rights & kReadingRights))
        opened = OpenHost(request, O_PATH);
    return opened;
}

// Whether the file was there before decides the last error, so creating is exclusive and tries again when another was
// faster. A link that leads nowhere is neither there nor can it be created exclusively: it is created through.
Opened OpenOrCreate(const Request& request) {
    constexpr int kTries = 8;
    const int access = request.Writes() ? O_RDWR : O_RDONLY;
    for (int attempt = 0; attempt < kTries; ++attempt) {
        if (request.disposition != CREATE_NEW)
            if (Descriptor existing = OpenExisting(request); existing || errno != ENOENT || !request.Creates())
                return {std::move(existing)};
        if (Descriptor created = OpenHost(request, access | O_CREAT | O_EXCL); created || errno != EEXIST)
            return {std::move(created), false};
        if (request.disposition == CREATE_NEW)
            return {};
    }
    return {OpenHost(request, access | O_CREAT), false};
}

// The host says that it is a folder when a name to be created ends in a separator.
DWORD OpeningError(const Request& request) {
    if (errno == EEXIST && request.disposition == CREATE_NEW)
        return ERROR_FILE_EXISTS;
    return errno == EISDIR ? ERROR_INVALID_NAME : ErrorFromHost(errno);
}

DWORD CheckFolder(const Request& request) {
    if (!(request.flags & FILE_FLAG_BACKUP_SEMANTICS))
        return ERROR_ACCESS_DENIED;
    return request.Replaces() ? ERROR_FILE_EXISTS : 0;
}

// What Windows refuses of a file that was there and the host would allow.
DWORD CheckExisting(const Request& request, const struct stat& facts) {
    if (S_ISDIR(facts.st_mode))
        return CheckFolder(request);
    const bool changes = request.Writes() || (request.flags & FILE_FLAG_DELETE_ON_CLOSE);
    return changes && S_ISREG(facts.st_mode) && NobodyMayWrite(facts) ? ERROR_ACCESS_DENIED : 0;
}

DWORD CheckLink(const Request& request) {
    struct stat facts;
    const bool isLink = request.flags & FILE_FLAG_OPEN_REPARSE_POINT && lstat(request.path.c_str(), &facts) == 0 &&
                        S_ISLNK(facts.st_mode);
    return isLink ? ERROR_NOT_SUPPORTED : 0;
}

DWORD EmptyExisting(const Request& request, int descriptor, const struct stat& facts) {
    if (!S_ISREG(facts.st_mode))
        return 0;
    if (MappedSize(FileIdOf(facts)) != 0)
        return ERROR_USER_MAPPED_FILE;
    if (Uninterrupted([&] { return ftruncate(descriptor, 0); }) == -1)
        return ErrorFromHost(errno);
    if (request.disposition == CREATE_ALWAYS && request.flags & FILE_ATTRIBUTE_READONLY)
        fchmod(descriptor, facts.st_mode & 07777 & ~(S_IWUSR | S_IWGRP | S_IWOTH));
    return 0;
}

void GiveAdvice(const Request& request, int descriptor) {
    if (request.flags & FILE_FLAG_SEQUENTIAL_SCAN)
        posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    if (request.flags & FILE_FLAG_RANDOM_ACCESS)
        posix_fadvise(descriptor, 0, 0, POSIX_FADV_RANDOM);
}

std::string AbsolutePath(const std::string& path) {
    if (path.starts_with('/'))
        return path;
    char* folder = getcwd(nullptr, 0);
    std::string absolute = std::string(folder ? folder : "") + '/' + path;
    std::free(folder);
    return absolute;
}

DWORD Prepare(const Request& request, const Opened& opened, struct stat& facts) {
    const int descriptor = opened.descriptor.Get();
    if (fstat(descriptor, &facts) == -1)
        return ErrorFromHost(errno);
    DWORD code = opened.existed ? CheckExisting(request, facts) : 0;
    if (code == 0 && S_ISREG(facts.st_mode) && TakesPartInSharing(request.rights))
        code = ClaimSharing(descriptor, request.rights, request.share);
    if (code == 0 && opened.existed && request.Replaces())
        code = EmptyExisting(request, descriptor, facts);
    return code;
}

HANDLE MakeHandle(const Request& request, Opened& opened, const struct stat& facts) {
    auto file = std::make_shared<FileObject>(opened.descriptor.Get(), facts);
    opened.descriptor.Release();
    file->share = request.share;
    file->asynchronous = request.flags & FILE_FLAG_OVERLAPPED;
    if (request.flags & FILE_FLAG_DELETE_ON_CLOSE)
        file->deleteOnClose = AbsolutePath(request.path);
    GiveAdvice(request, file->descriptor);
    return OpenHandle(std::move(file), request.rights, request.inherit);
}

DWORD Open(const Request& request, HANDLE& handle) {
    if (const DWORD code = CheckLink(request))
        return code;
    Opened opened = OpenOrCreate(request);
    if (!opened.descriptor)
        return OpeningError(request);
    struct stat facts;
    if (const DWORD code = Prepare(request, opened, facts))
        return code;
    handle = MakeHandle(request, opened, facts);
    if (!handle)
        return ERROR_NOT_ENOUGH_MEMORY;
    const bool tellsWhetherNew =
        (request.disposition == CREATE_ALWAYS || request.disposition == OPEN_ALWAYS) && !S_ISCHR(facts.st_mode);
    SetLastError(tellsWhetherNew && opened.existed ? ERROR_ALREADY_EXISTS : 0);
    return 0;
}

DWORD Open(const char* path, DWORD access, Request& request, HANDLE& handle) {
    if (const DWORD code = ResolveHostPath(path, request.path))
        return code;
    request.rights = RightsFor(request.path, access, request.flags);
    return Open(request, handle);
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

HANDLE WINAPI CreateFileA(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD disposition,
                          DWORD flags, HANDLE pattern) {
    if (CallFails("CreateFileA"))
        return INVALID_HANDLE_VALUE;
    HANDLE handle = INVALID_HANDLE_VALUE;
    DWORD code = CheckArguments(access, share, disposition, pattern);
    if (code == 0 && (!path || *path == '\0'))
        code = ERROR_PATH_NOT_FOUND;
    try {
        Request request = {{}, 0, share, disposition, flags, security && security->bInheritHandle};
        code = code != 0 ? code : Open(path, access, request, handle);
    } catch (const std::bad_alloc&) {
        code = ERROR_NOT_ENOUGH_MEMORY;
    }
    if (code == 0)
        return handle;
    SetLastError(code);
    return INVALID_HANDLE_VALUE;
}
