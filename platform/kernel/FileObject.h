#pragma once

#include "platform/kernel/Handles.h"

#include <kelcore/platform/files.h>

#include <sys/stat.h>
#include <sys/types.h>

#include <string>

namespace kel::platform {

/// Tells files of this host apart, whatever their names are.
struct FileId {
    dev_t device = 0;
    ino_t node = 0;
    auto operator<=>(const FileId&) const = default;
};

inline FileId FileIdOf(const struct stat& facts) {
    return {facts.st_dev, facts.st_ino};
}

/// What stands behind a file handle.
enum class FileKind : unsigned char { Disk, Folder, Device, Pipe };
FileKind FileKindOf(const struct stat& facts);

/// One opening of a file: the host's descriptor and what Windows ties to it beyond the host's own state.
class FileObject final : public Object {
public:
    static constexpr ObjectKind kKind = ObjectKind::File;

    /// @param descriptor owned from now on, unless it is one of the process's standard ones.
    FileObject(int descriptor, const struct stat& facts, bool standard = false);
    ~FileObject() override;

    void HandlesClosed() override;
    void SetInheritable(bool inheritable) override;
    DWORD SpecificRights(DWORD access) const override;

    const int descriptor;
    const FileKind kind;
    const FileId id;

    /// Set while the file is opened, constant afterwards.
    /// @{
    DWORD share = 0;           ///< the FILE_SHARE_ bits it was opened with
    bool asynchronous = false; ///< FILE_FLAG_OVERLAPPED
    std::string deleteOnClose; ///< the absolute host path to remove with the last handle, empty for none
    /// @}

    /// Byte-range locks, see ByteRangeLocks.h.
    /// @{
    std::atomic<int> lockDescriptor{-1}; ///< where the host's locks are, once there is one
    std::atomic<int> ownLocks{0};        ///< ranges locked through this opening
    /// @}

    std::atomic<int> mappings{0}; ///< live mappings of this opening

private:
    void DeleteNow() const;

    const bool m_standard;
};

/// A file handle for a call that needs one of @p rights; any will do, 0 asks for none.
/// Empty with the last error ERROR_INVALID_HANDLE or ERROR_ACCESS_DENIED otherwise.
class PinnedFile : public Pinned<FileObject> {
public:
    PinnedFile(HANDLE handle, DWORD rights);
};

} // namespace kel::platform
