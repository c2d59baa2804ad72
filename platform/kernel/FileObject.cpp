#include "platform/kernel/FileObject.h"

#include "platform/kernel/ByteRangeLocks.h"
#include "platform/kernel/LastError.h"
#include "platform/kernel/ShareModes.h"

#include <fcntl.h>
#include <unistd.h>

namespace kel::platform {

FileKind FileKindOf(const struct stat& facts) {
    switch (facts.st_mode & S_IFMT) {
    case S_IFDIR:
        return FileKind::Folder;
    case S_IFCHR:
        return FileKind::Device;
    case S_IFIFO:
    case S_IFSOCK:
        return FileKind::Pipe;
    default:
        return FileKind::Disk;
    }
}

FileObject::FileObject(int descriptor, const struct stat& facts, bool standard)
    : Object(kKind), descriptor(descriptor), kind(FileKindOf(facts)), id(FileIdOf(facts)), m_standard(standard) {}

FileObject::~FileObject() {
    const int locks = lockDescriptor.load(std::memory_order_relaxed);
    if (locks != -1 && locks != descriptor)
        close(locks);
    if (!m_standard)
        close(descriptor);
}

void FileObject::HandlesClosed() {
    if (!deleteOnClose.empty())
        DeleteNow();
    ForgetLocks(*this);
    // A mapping keeps the descriptor, but not what the handle denied to others.
    if (mappings.load(std::memory_order_relaxed) != 0)
        ReleaseSharing(descriptor);
}

// Another file may have taken the name meanwhile: it stays.
void FileObject::DeleteNow() const {
    struct stat facts;
    if (lstat(deleteOnClose.c_str(), &facts) == 0 && FileIdOf(facts) == id)
        (kind == FileKind::Folder ? rmdir : unlink)(deleteOnClose.c_str());
}

void FileObject::SetInheritable(bool inheritable) {
    fcntl(descriptor, F_SETFD, inheritable ? 0 : FD_CLOEXEC);
}

DWORD FileObject::SpecificRights(DWORD access) const {
    return SpecificFileRights(access);
}

PinnedFile::PinnedFile(HANDLE handle, DWORD rights) : Pinned(handle) {
    if (m_slot && rights != 0 && !(Access() & rights)) {
        Reject();
        Fail(ERROR_ACCESS_DENIED);
    }
}

} // namespace kel::platform
