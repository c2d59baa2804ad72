#include "platform/kernel/Faults.h"
#include "platform/kernel/FileObject.h"
#include "platform/kernel/LastError.h"
#include "platform/kernel/Views.h"

#include <unistd.h>

#include <limits>

namespace kel::platform {
namespace {

constexpr std::int64_t kFarthest = std::numeric_limits<std::int64_t>::max();

// Folders and devices are of size 0, whatever the host says of its own records.
bool SizeOf(const FileObject& file, std::int64_t& size) {
    size = 0;
    if (file.kind == FileKind::Pipe)
        return Fail(ERROR_INVALID_FUNCTION);
    if (file.kind != FileKind::Disk)
        return true;
    struct stat facts;
    if (fstat(file.descriptor, &facts) == -1)
        return FailFromHost();
    size = facts.st_size;
    return true;
}

bool StartOfMove(const FileObject& file, DWORD method, std::int64_t& start) {
    if (method == FILE_END)
        return SizeOf(file, start);
    start = method == FILE_CURRENT ? lseek(file.descriptor, 0, SEEK_CUR) : 0;
    return start != -1 || FailFromHost();
}

// The target is worked out before the position is touched, so that a refused move leaves it alone.
bool Move(HANDLE handle, std::int64_t distance, DWORD method, std::int64_t limit, std::int64_t& position) {
    const PinnedFile file(handle, FILE_READ_DATA | FILE_EXECUTE | FILE_WRITE_DATA | FILE_APPEND_DATA);
    std::int64_t start;
    if (!file)
        return false;
    if (method > FILE_END)
        return Fail(ERROR_INVALID_PARAMETER);
    if (!StartOfMove(*file, method, start))
        return false;
    if (distance < 0 && start + distance < 0)
        return Fail(ERROR_NEGATIVE_SEEK);
    if (distance > limit - start)
        return Fail(ERROR_INVALID_PARAMETER);
    position = lseek(file->descriptor, start + distance, SEEK_SET);
    return position != -1 || FailFromHost();
}

bool FileSize(HANDLE handle, std::int64_t& size) {
    const PinnedFile file(handle, /*rights*/ 0);
    return file && SizeOf(*file, size);
}

DWORD LowHalf(std::int64_t value) {
    return static_cast<DWORD>(value);
}

DWORD HighHalf(std::int64_t value) {
    return static_cast<DWORD>(value >> 32);
}

// A low half with all bits set looks like a failure: the last error tells the caller that it is none.
DWORD SuccessfulLowHalf(std::int64_t value) {
    if (LowHalf(value) == INVALID_FILE_SIZE)
        SetLastError(NO_ERROR);
    return LowHalf(value);
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

DWORD WINAPI SetFilePointer(HANDLE file, LONG low, PLONG high, DWORD method) {
    if (CallFails("SetFilePointer"))
        return INVALID_SET_FILE_POINTER;
    const std::uint64_t upper = high ? static_cast<std::uint32_t>(*high) : low < 0 ? 0xFFFFFFFFu : 0;
    const auto distance = static_cast<std::int64_t>(upper << 32 | static_cast<std::uint32_t>(low));
    const std::int64_t limit = high ? kFarthest : std::numeric_limits<std::uint32_t>::max();
    std::int64_t position;
    if (!Move(file, distance, method, limit, position))
        return INVALID_SET_FILE_POINTER;
    if (high)
        *high = static_cast<LONG>(HighHalf(position));
    return SuccessfulLowHalf(position);
}

BOOL WINAPI SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER position, DWORD method) {
    std::int64_t reached;
    if (CallFails("SetFilePointerEx") || !Move(file, distance.QuadPart, method, kFarthest, reached))
        return FALSE;
    if (position)
        position->QuadPart = reached;
    return TRUE;
}

BOOL WINAPI SetEndOfFile(HANDLE file) {
    if (CallFails("SetEndOfFile"))
        return FALSE;
    const PinnedFile pinned(file, FILE_WRITE_DATA);
    if (!pinned)
        return FALSE;
    const off_t position = lseek(pinned->descriptor, 0, SEEK_CUR);
    if (position == -1)
        return FailFromHost();
    if (position < MappedSize(pinned->id))
        return Fail(ERROR_USER_MAPPED_FILE);
    return Uninterrupted([&] { return ftruncate(pinned->descriptor, position); }) == 0 || FailFromHost();
}

DWORD WINAPI GetFileSize(HANDLE file, LPDWORD high) {
    std::int64_t size;
    if (CallFails("GetFileSize") || !FileSize(file, size))
        return INVALID_FILE_SIZE;
    if (high)
        *high = HighHalf(size);
    return SuccessfulLowHalf(size);
}

BOOL WINAPI GetFileSizeEx(HANDLE file, PLARGE_INTEGER size) {
    std::int64_t found;
    if (CallFails("GetFileSizeEx") || !FileSize(file, found))
        return FALSE;
    size->QuadPart = found;
    return TRUE;
}
