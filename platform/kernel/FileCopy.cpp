#include "platform/kernel/FileMoves.h"

#include "platform/kernel/LastError.h"
#include "platform/kernel/ShareModes.h"

#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace kel::platform {
namespace {

constexpr std::size_t kPieceSize = 128 * 1024;
constexpr std::size_t kLargestRange = std::size_t{1} << 30;
constexpr mode_t kWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

class OpenFile {
public:
    OpenFile(const std::string& host, int flags) : m_descriptor(open(host.c_str(), flags | O_CLOEXEC, 0600)) {}
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() {
        if (m_descriptor != -1)
            close(m_descriptor);
    }
    int Get() const { return m_descriptor; }

private:
    const int m_descriptor;
};

DWORD CheckTarget(const Place& from, const Place& to) {
    if (S_ISDIR(to.facts.st_mode))
        return ERROR_ACCESS_DENIED;
    if (!S_ISREG(to.facts.st_mode))
        return ERROR_NOT_SUPPORTED;
    if (to.facts.st_dev == from.facts.st_dev && to.facts.st_ino == from.facts.st_ino)
        return ERROR_SHARING_VIOLATION;
    return (to.facts.st_mode & kWriteBits) == 0 ? ERROR_ACCESS_DENIED : 0;
}

bool WriteAll(int target, const char* bytes, std::size_t count) {
    while (count != 0) {
        const ssize_t written = Uninterrupted([&] { return write(target, bytes, count); });
        if (written < 0)
            return false;
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

bool CopyByPieces(int source, int target) {
    const auto piece = std::make_unique_for_overwrite<char[]>(kPieceSize);
    for (;;) {
        const ssize_t count = Uninterrupted([&] { return read(source, piece.get(), kPieceSize); });
        if (count <= 0)
            return count == 0;
        if (!WriteAll(target, piece.get(), static_cast<std::size_t>(count)))
            return false;
    }
}

// The host copies inside the file system where it can. Where it cannot, or gives nothing, as for files whose contents
// are made while they are read, the rest goes through a buffer.
bool CopyContents(int source, int target) {
    ssize_t count = 0;
    do {
        count = Uninterrupted([&] { return copy_file_range(source, nullptr, target, nullptr, kLargestRange, 0); });
    } while (count > 0);
    if (count < 0 && errno != EXDEV && errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
        return false;
    return CopyByPieces(source, target);
}

// A new file takes the permissions over; an existing one keeps its own, but for being read-only or not.
mode_t TargetMode(const Place& from, const Place& to) {
    if (!to.Exists())
        return from.facts.st_mode & 0777;
    const bool readOnly = (from.facts.st_mode & kWriteBits) == 0;
    return to.facts.st_mode & 07777 & ~(readOnly ? kWriteBits : mode_t{0});
}

bool CopyInto(const Place& from, int source, const Place& to, int target) {
    const timespec times[] = {from.facts.st_atim, from.facts.st_mtim};
    return ftruncate(target, 0) == 0 && CopyContents(source, target) && futimens(target, times) == 0 &&
           fchmod(target, TargetMode(from, to)) == 0;
}

DWORD CopyOpened(const Place& from, int source, const Place& to) {
    const OpenFile target(to.host, O_WRONLY | (to.Exists() ? 0 : O_CREAT | O_EXCL));
    if (target.Get() == -1)
        return ErrorFromHost(errno);
    if (const DWORD error = ClaimSharing(target.Get(), FILE_WRITE_DATA, /*share*/ 0))
        return error;
    if (CopyInto(from, source, to, target.Get()))
        return 0;
    const DWORD error = ErrorFromHost(errno);
    unlink(to.host.c_str());
    return error;
}

} // namespace

DWORD FollowLink(Place& place) {
    if (!place.Exists())
        return ERROR_FILE_NOT_FOUND;
    const bool found = !S_ISLNK(place.facts.st_mode) || stat(place.host.c_str(), &place.facts) == 0;
    return found ? 0 : ErrorFromHost(errno);
}

DWORD CopyHostFile(const Place& from, Place& to) {
    if (S_ISDIR(from.facts.st_mode))
        return ERROR_ACCESS_DENIED;
    if (!S_ISREG(from.facts.st_mode))
        return ERROR_NOT_SUPPORTED;
    if (const DWORD error = to.Exists() ? FollowLink(to) : 0)
        return error;
    if (const DWORD error = to.Exists() ? CheckTarget(from, to) : 0)
        return error;
    const OpenFile source(from.host, O_RDONLY);
    if (source.Get() == -1)
        return ErrorFromHost(errno);
    if (const DWORD error = ClaimSharing(source.Get(), FILE_READ_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE))
        return error;
    return CopyOpened(from, source.Get(), to);
}

} // namespace kel::platform
