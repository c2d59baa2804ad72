#include "platform/kernel/Attributes.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/FileFacts.h"
#include "platform/kernel/HostPath.h"
#include "platform/kernel/HostText.h"
#include "platform/kernel/LastError.h"
#include "platform/kernel/ShareModes.h"

#include <kelcore/platform/paths.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace kel::platform;

namespace {

DWORD Resolve(LPCSTR path, std::string& host, struct stat& existing) {
    return path == nullptr ? ERROR_PATH_NOT_FOUND : ResolveHostPath(Utf8FromAnsi(path), host, existing);
}

// The host path of something that has to be there, itself and not what it may lead to.
bool Find(LPCSTR path, std::string& host, struct stat& existing) {
    if (const DWORD error = Resolve(path, host, existing))
        return Fail(error);
    return existing.st_mode != 0 || Fail(ERROR_FILE_NOT_FOUND);
}

bool IsReadOnly(const struct stat& existing) {
    return !S_ISLNK(existing.st_mode) && (AttributesOf(existing.st_mode, "") & FILE_ATTRIBUTE_READONLY) != 0;
}

bool LeadsToFolder(const std::string& host) {
    struct stat target;
    return stat(host.c_str(), &target) == 0 && S_ISDIR(target.st_mode);
}

DWORD CheckDeleting(const std::string& host, const struct stat& existing) {
    const bool device = S_ISCHR(existing.st_mode) || S_ISBLK(existing.st_mode);
    if (S_ISDIR(existing.st_mode) || device || IsReadOnly(existing))
        return ERROR_ACCESS_DENIED;
    return CheckDeleteSharing(host.c_str());
}

} // namespace

BOOL WINAPI CreateDirectoryA(LPCSTR path, LPSECURITY_ATTRIBUTES) {
    std::string host;
    struct stat existing;
    if (CallFails("CreateDirectoryA"))
        return FALSE;
    if (const DWORD error = Resolve(path, host, existing))
        return Fail(error);
    if (existing.st_mode != 0)
        return Fail(ERROR_ALREADY_EXISTS);
    return mkdir(host.c_str(), 0777) == 0 || FailFromHost();
}

BOOL WINAPI RemoveDirectoryA(LPCSTR path) {
    std::string host;
    struct stat existing;
    if (CallFails("RemoveDirectoryA") || !Find(path, host, existing))
        return FALSE;
    if (S_ISLNK(existing.st_mode) && LeadsToFolder(host))
        return unlink(host.c_str()) == 0 || FailFromHost();
    if (!S_ISDIR(existing.st_mode))
        return Fail(ERROR_DIRECTORY);
    if (IsReadOnly(existing))
        return Fail(ERROR_ACCESS_DENIED);
    if (rmdir(host.c_str()) == 0)
        return TRUE;
    return errno == EINVAL ? Fail(ERROR_SHARING_VIOLATION) : FailFromHost();
}

BOOL WINAPI DeleteFileA(LPCSTR path) {
    std::string host;
    struct stat existing;
    if (CallFails("DeleteFileA") || !Find(path, host, existing))
        return FALSE;
    if (const DWORD error = CheckDeleting(host, existing))
        return Fail(error);
    return unlink(host.c_str()) == 0 || FailFromHost();
}

BOOL WINAPI SetCurrentDirectoryA(LPCSTR path) {
    std::string host;
    struct stat existing;
    if (CallFails("SetCurrentDirectoryA"))
        return FALSE;
    if (path == nullptr || path[0] == '\0')
        return Fail(ERROR_INVALID_NAME);
    if (!Find(path, host, existing))
        return FALSE;
    if (chdir(host.c_str()) == 0)
        return TRUE;
    return errno == ENOTDIR ? Fail(ERROR_DIRECTORY) : FailFromHost();
}
