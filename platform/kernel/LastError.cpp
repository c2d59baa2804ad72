#include "platform/kernel/LastError.h"

namespace kel::platform {
namespace {

thread_local DWORD t_lastError = 0;

struct HostCode {
    int host;
    DWORD code;
};

constexpr HostCode kHostCodes[] = {
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    {EACCES, ERROR_ACCESS_DENIED},
    {EPERM, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {EEXIST, ERROR_ALREADY_EXISTS},
    {ENOTEMPTY, ERROR_DIR_NOT_EMPTY},
    {EXDEV, ERROR_NOT_SAME_DEVICE},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    {ELOOP, ERROR_CANT_RESOLVE_FILENAME},
    {EROFS, ERROR_WRITE_PROTECT},
    {EBUSY, ERROR_BUSY},
    {ETXTBSY, ERROR_SHARING_VIOLATION}, // a program that runs is open without FILE_SHARE_WRITE on Windows
    {EAGAIN, ERROR_LOCK_VIOLATION},
    {EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {EFAULT, ERROR_NOACCESS},
    {EBADF, ERROR_INVALID_HANDLE},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {EOVERFLOW, ERROR_INVALID_PARAMETER},
    {ESPIPE, ERROR_INVALID_FUNCTION},
    {ENOTTY, ERROR_INVALID_FUNCTION},
    {EOPNOTSUPP, ERROR_NOT_SUPPORTED},
    {ENOSYS, ERROR_NOT_SUPPORTED},
    {ENOSPC, ERROR_DISK_FULL},
    {EDQUOT, ERROR_DISK_QUOTA_EXCEEDED},
    {EFBIG, ERROR_FILE_TOO_LARGE},
    {EIO, ERROR_IO_DEVICE},
    {EPIPE, ERROR_NO_DATA},
    {EMLINK, ERROR_TOO_MANY_LINKS},
    {ENODEV, ERROR_NOT_READY},
    {ENXIO, ERROR_NOT_READY},
    {ENOLCK, ERROR_NOT_ENOUGH_QUOTA},
    {ETIMEDOUT, ERROR_TIMEOUT},
};

} // namespace

DWORD ErrorFromHost(int hostError) {
    for (const HostCode& entry : kHostCodes)
        if (entry.host == hostError)
            return entry.code;
    return ERROR_GEN_FAILURE;
}

} // namespace kel::platform

using namespace kel::platform;

DWORD WINAPI GetLastError(void) {
    return t_lastError;
}

void WINAPI SetLastError(DWORD code) {
    t_lastError = code;
}
