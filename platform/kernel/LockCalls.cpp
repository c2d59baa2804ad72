#include "platform/kernel/ByteRangeLocks.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/LastError.h"

#include <new>

using namespace kel::platform;

namespace {

std::uint64_t Join(DWORD low, DWORD high) {
    return std::uint64_t{high} << 32 | low;
}

bool Lock(HANDLE handle, std::uint64_t begin, std::uint64_t length, bool exclusive, bool wait) {
    const PinnedFile file(handle, FILE_READ_DATA | FILE_WRITE_DATA);
    if (!file)
        return false;
    if (file->kind != FileKind::Disk)
        return Fail(ERROR_INVALID_FUNCTION);
    try {
        const DWORD code = LockRange(*file, begin, length, exclusive, wait);
        return code == 0 || Fail(code);
    } catch (const std::bad_alloc&) {
        return Fail(ERROR_NOT_ENOUGH_MEMORY);
    }
}

bool Unlock(HANDLE handle, std::uint64_t begin, std::uint64_t length) {
    const PinnedFile file(handle, FILE_READ_DATA | FILE_WRITE_DATA);
    if (!file)
        return false;
    const DWORD code = UnlockRange(*file, begin, length);
    return code == 0 || Fail(code);
}

} // namespace

BOOL WINAPI LockFile(HANDLE file, DWORD offsetLow, DWORD offsetHigh, DWORD lengthLow, DWORD lengthHigh) {
    return !CallFails("LockFile") && Lock(file, Join(offsetLow, offsetHigh), Join(lengthLow, lengthHigh),
                                          /*exclusive*/ true, /*wait*/ false);
}

BOOL WINAPI UnlockFile(HANDLE file, DWORD offsetLow, DWORD offsetHigh, DWORD lengthLow, DWORD lengthHigh) {
    return !CallFails("UnlockFile") && Unlock(file, Join(offsetLow, offsetHigh), Join(lengthLow, lengthHigh));
}

BOOL WINAPI LockFileEx(HANDLE file, DWORD flags, DWORD reserved, DWORD lengthLow, DWORD lengthHigh,
                       LPOVERLAPPED overlapped) {
    if (CallFails("LockFileEx"))
        return FALSE;
    if (reserved != 0 || !overlapped)
        return Fail(ERROR_INVALID_PARAMETER);
    return Lock(file, Join(overlapped->Offset, overlapped->OffsetHigh), Join(lengthLow, lengthHigh),
                flags & LOCKFILE_EXCLUSIVE_LOCK, !(flags & LOCKFILE_FAIL_IMMEDIATELY));
}

BOOL WINAPI UnlockFileEx(HANDLE file, DWORD reserved, DWORD lengthLow, DWORD lengthHigh, LPOVERLAPPED overlapped) {
    if (CallFails("UnlockFileEx"))
        return FALSE;
    if (reserved != 0 || !overlapped)
        return Fail(ERROR_INVALID_PARAMETER);
    return Unlock(file, Join(overlapped->Offset, overlapped->OffsetHigh), Join(lengthLow, lengthHigh));
}
