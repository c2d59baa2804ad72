#include "platform/kernel/ByteRangeLocks.h"

#include "platform/kernel/Descriptor.h"
#include "platform/kernel/LastError.h"
#include "platform/kernel/ShareModes.h"

#include <fcntl.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <vector>

namespace kel::platform {
namespace {

// The host's locks of one open file description merge and overwrite each other, and end far below 2^64. So the exact
// ranges are kept here, for all files of the process, and the host's locks are what others see of them.
struct Range {
    const FileObject* owner;
    std::uint64_t begin;
    std::uint64_t end; // past the last byte; 2^64 wraps to 0
    bool exclusive;
};

struct LockTable {
    std::mutex mutex;
    std::condition_variable changed;
    std::map<FileId, std::vector<Range>> ranges;
};

LockTable& Table() {
    static LockTable& table = *new LockTable; // outlives all static objects that close files
    return table;
}

bool EndsAfter(const Range& range, std::uint64_t offset) {
    return range.end > offset || range.end < range.begin;
}

// A range of no bytes overlaps those that begin before it and end after it, as on Windows.
bool Overlap(const Range& a, const Range& b) {
    return EndsAfter(a, b.begin) && EndsAfter(b, a.begin);
}

// A shared lock may lie over the same opening's exclusive lock, never the other way round.
bool Conflict(const Range& held, const Range& wanted) {
    if (!Overlap(held, wanted))
        return false;
    return wanted.exclusive || (held.exclusive && held.owner != wanted.owner);
}

struct flock HostLock(short type, std::uint64_t begin, std::uint64_t end) {
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = static_cast<off_t>(begin);
    lock.l_len = static_cast<off_t>(end - begin);
    return lock;
}

// The host locks exclusively only through a descriptor that may write: a read-only handle gets a second one, if the
// file's mode allows it.
int LockDescriptor(FileObject& file) {
    int descriptor = file.lockDescriptor.load(std::memory_order_relaxed);
    if (descriptor != -1)
        return descriptor;
    descriptor = file.descriptor;
    if ((fcntl(descriptor, F_GETFL) & O_ACCMODE) == O_RDONLY) {
        const int writable = open(DescriptorPath(descriptor).Text(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
        descriptor = writable != -1 ? writable : descriptor;
    }
    file.lockDescriptor.store(descriptor, std::memory_order_release);
    return descriptor;
}

// What the descriptor cannot express is replaced: sharing by a write-only one, exclusion by a read-only one.
short HostType(int descriptor, bool exclusive) {
    switch (fcntl(descriptor, F_GETFL) & O_ACCMODE) {
    case O_RDONLY:
        return F_RDLCK;
    case O_WRONLY:
        return F_WRLCK;
    default:
        return exclusive ? F_WRLCK : F_RDLCK;
    }
}

// A file system without locks leaves the ranges to this process alone.
bool SetHostLock(int descriptor, short type, std::uint64_t begin, std::uint64_t end) {
    struct flock lock = HostLock(type, begin, end);
    return fcntl(descriptor, F_OFD_SETLK, &lock) == 0 || (errno != EAGAIN && errno != EACCES);
}

// The host's lock that the opening's ranges make of the bytes from @p begin, which are all covered alike.
short HostTypeAt(const std::vector<Range>& ranges, const FileObject& file, int descriptor, std::uint64_t begin) {
    short type = F_UNLCK;
    for (const Range& range : ranges)
        if (range.owner == &file && Overlap(range, {&file, begin, begin + 1, false}) && type != F_WRLCK)
            type = HostType(descriptor, range.exclusive);
    return type;
}

// Brings the host's locks on the bytes of @p changed in line with the opening's ranges, piece by piece between the ends
// of ranges, so that bytes that stay locked are never let go.
bool ApplyToHost(const std::vector<Range>& ranges, FileObject& file, const Range& changed) {
    constexpr std::uint64_t kLimit = kSharingBytes;
    const std::uint64_t end = changed.end < changed.begin ? kLimit : std::min(changed.end, kLimit);
    const int descriptor = LockDescriptor(file);
    for (std::uint64_t begin = changed.begin; begin < end;) {
        std::uint64_t next = end;
        for (const Range& range : ranges)
            for (const std::uint64_t edge : {range.begin, range.end})
                if (range.owner == &file && edge > begin && edge < next)
                    next = edge;
        if (!SetHostLock(descriptor, HostTypeAt(ranges, file, descriptor, begin), begin, next))
            return false;
        begin = next;
    }
    return true;
}

// With the table locked.
bool TryToLock(std::vector<Range>& ranges, FileObject& file, const Range& wanted) {
    for (const Range& held : ranges)
        if (Conflict(held, wanted))
            return false;
    ranges.push_back(wanted);
    if (!ApplyToHost(ranges, file, wanted)) {
        ranges.pop_back();
        ApplyToHost(ranges, file, wanted);
        return false;
    }
    file.ownLocks.fetch_add(1, std::memory_order_release);
    return true;
}

// The opening's range with these ends; an exclusive one comes before shared ones, since it cannot be laid over them.
std::vector<Range>::iterator FindRange(std::vector<Range>& ranges, const FileObject& file, std::uint64_t begin,
                                       std::uint64_t end) {
    return std::find_if(ranges.begin(), ranges.end(), [&](const Range& range) {
        return range.owner == &file && range.begin == begin && range.end == end;
    });
}

void ForgetIfEmpty(LockTable& table, const FileId& file) {
    const auto ranges = table.ranges.find(file);
    if (ranges != table.ranges.end() && ranges->second.empty())
        table.ranges.erase(ranges);
}

// Nobody tells when another process lets go, so a waiting lock looks again this often.
constexpr std::chrono::milliseconds kLookAgain{5};

bool OwnSharedLockAt(const FileObject& file, const Range& transfer) {
    LockTable& table = Table();
    std::lock_guard guard(table.mutex);
    if (file.ownLocks.load(std::memory_order_relaxed) == 0)
        return false;
    for (const Range& held : table.ranges.find(file.id)->second)
        if (held.owner == &file && !held.exclusive && Overlap(held, transfer))
            return true;
    return false;
}

bool OthersLocked(const FileObject& file, bool writes, std::uint64_t begin, std::uint64_t end) {
    const int lockDescriptor = file.lockDescriptor.load(std::memory_order_acquire);
    const int descriptor = lockDescriptor != -1 ? lockDescriptor : file.descriptor;
    struct flock probe = HostLock(writes ? F_WRLCK : F_RDLCK, begin, end);
    return fcntl(descriptor, F_OFD_GETLK, &probe) == 0 && probe.l_type != F_UNLCK;
}

} // namespace

DWORD LockRange(FileObject& file, std::uint64_t begin, std::uint64_t length, bool exclusive, bool wait) {
    if (length > 0 && begin + (length - 1) < begin)
        return ERROR_INVALID_PARAMETER;
    const Range wanted = {&file, begin, begin + length, exclusive};
    LockTable& table = Table();
    std::unique_lock guard(table.mutex);
    bool locked = TryToLock(table.ranges[file.id], file, wanted);
    while (!locked && wait) {
        table.changed.wait_for(guard, kLookAgain);
        locked = TryToLock(table.ranges[file.id], file, wanted);
    }
    ForgetIfEmpty(table, file.id);
    return locked ? 0 : ERROR_LOCK_VIOLATION;
}

DWORD UnlockRange(FileObject& file, std::uint64_t begin, std::uint64_t length) {
    LockTable& table = Table();
    std::lock_guard guard(table.mutex);
    if (file.ownLocks.load(std::memory_order_relaxed) == 0)
        return ERROR_NOT_LOCKED;
    std::vector<Range>& ranges = table.ranges.find(file.id)->second;
    const auto found = FindRange(ranges, file, begin, begin + length);
    if (found == ranges.end())
        return ERROR_NOT_LOCKED;
    const Range gone = *found;
    ranges.erase(found);
    ApplyToHost(ranges, file, gone);
    file.ownLocks.fetch_sub(1, std::memory_order_relaxed);
    ForgetIfEmpty(table, file.id);
    table.changed.notify_all();
    return 0;
}

void ForgetLocks(FileObject& file) {
    if (file.ownLocks.load(std::memory_order_acquire) == 0)
        return;
    LockTable& table = Table();
    std::lock_guard guard(table.mutex);
    std::erase_if(table.ranges.find(file.id)->second, [&](const Range& range) { return range.owner == &file; });
    ForgetIfEmpty(table, file.id);
    SetHostLock(LockDescriptor(file), F_UNLCK, 0, kSharingBytes);
    file.ownLocks.store(0, std::memory_order_relaxed);
    table.changed.notify_all();
}

bool AnyTransferIsLocked(const FileObject& file, bool writes) {
    if (writes && file.ownLocks.load(std::memory_order_acquire) != 0)
        return true;
    const bool othersMayTransfer = file.share & (FILE_SHARE_READ | FILE_SHARE_WRITE);
    return othersMayTransfer && file.kind == FileKind::Disk && OthersLocked(file, writes, 0, kSharingBytes);
}

bool TransferIsLocked(const FileObject& file, std::uint64_t position, DWORD count, bool writes) {
    const std::uint64_t end = std::min<std::uint64_t>(position + count, kSharingBytes);
    if (count == 0 || position >= end)
        return false;
    return (writes && OwnSharedLockAt(file, {&file, position, end, true})) || OthersLocked(file, writes, position, end);
}

} // namespace kel::platform
