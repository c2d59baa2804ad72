#include "platform/kernel/Faults.h"
#include "platform/kernel/FileObject.h"
#include "platform/kernel/LastError.h"

#include <fcntl.h>
#include <unistd.h>

#include <new>

namespace kel::platform {
namespace {

HANDLE OpenStandard(int descriptor) {
    struct stat facts;
    if (fstat(descriptor, &facts) == -1)
        return nullptr;
    const int mode = fcntl(descriptor, F_GETFL) & O_ACCMODE;
    const DWORD rights = (mode != O_WRONLY ? FILE_GENERIC_READ : 0) | (mode != O_RDONLY ? FILE_GENERIC_WRITE : 0);
    try {
        return OpenUncountedHandle(std::make_shared<FileObject>(descriptor, facts, /*standard*/ true), rights);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

DWORD TypeOf(const FileObject& file) {
    switch (file.kind) {
    case FileKind::Device:
        return FILE_TYPE_CHAR;
    case FileKind::Pipe:
        return FILE_TYPE_PIPE;
    default:
        return FILE_TYPE_DISK;
    }
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

HANDLE WINAPI GetStdHandle(DWORD which) {
    static const HANDLE handles[] = {OpenStandard(STDIN_FILENO), OpenStandard(STDOUT_FILENO),
                                     OpenStandard(STDERR_FILENO)};
    const DWORD index = STD_INPUT_HANDLE - which;
    if (index <= 2)
        return handles[index];
    SetLastError(ERROR_INVALID_HANDLE);
    return INVALID_HANDLE_VALUE;
}

DWORD WINAPI GetFileType(HANDLE file) {
    if (CallFails("GetFileType"))
        return FILE_TYPE_UNKNOWN;
    const PinnedFile pinned(file, /*rights*/ 0);
    return pinned ? TypeOf(*pinned) : FILE_TYPE_UNKNOWN;
}
