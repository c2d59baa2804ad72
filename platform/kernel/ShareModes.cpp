#include "platform/kernel/ShareModes.h"

#include "platform/kernel/LastError.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <mutex>
#include <random>
#include <thread>

namespace kel::platform {
namespace {

constexpr unsigned kClaimBytes = 6;

// One byte each for "uses" and "denies" of a right, locked for reading by every opening that does so. The order makes
// the commonest claims contiguous: reading alone (0 to 3), writing alone (1 to 4), both (0 to 4), reading and letting
// others read (0 to 2) are one lock each.
enum Claim : unsigned {
    kUsesRead = 1u << 0,
    kDeniesWrite = 1u << 1,
    kDeniesDelete = 1u << 2,
    kDeniesRead = 1u << 3,
    kUsesWrite = 1u << 4,
    kUsesDelete = 1u << 5,
};

struct Right {
    DWORD rights;
    DWORD share;
    unsigned uses;
    unsigned denies;
};

constexpr Right kRights[] = {
    {FILE_READ_DATA | FILE_EXECUTE, FILE_SHARE_READ, kUsesRead, kDeniesRead},
    {FILE_WRITE_DATA | FILE_APPEND_DATA, FILE_SHARE_WRITE, kUsesWrite, kDeniesWrite},
    {DELETE, FILE_SHARE_DELETE, kUsesDelete, kDeniesDelete},
};

unsigned ClaimsOf(DWORD rights, DWORD share) {
    unsigned claims = 0;
    for (const Right& right : kRights) {
        claims |= rights & right.rights ? right.uses : 0;
        claims |= share & right.share ? 0 : right.denies;
    }
    return claims;
}

// The claims of others that cannot stand beside @p claims.
unsigned ConflictsOf(unsigned claims) {
    unsigned conflicts = 0;
    for (const Right& right : kRights) {
        conflicts |= claims & right.uses ? right.denies : 0;
        conflicts |= claims & right.denies ? right.uses : 0;
    }
    return conflicts;
}

struct flock BytesOf(short type, unsigned first, unsigned count) {
    struct flock bytes = {};
    bytes.l_type = type;
    bytes.l_whence = SEEK_SET;
    bytes.l_start = kSharingBytes + first;
    bytes.l_len = count;
    return bytes;
}

// Calls @p act(first, count) for each run of set bits until it returns false.
template <class Act>
bool ForEachRun(unsigned claims, Act act) {
    for (unsigned first = 0; claims >> first != 0; ++first) {
        unsigned count = 0;
        while (claims >> (first + count) & 1)
            ++count;
        if (count != 0 && !act(first, count))
            return false;
        first += count;
    }
    return true;
}

bool HeldByOthers(int descriptor, unsigned first, unsigned count) {
    struct flock probe = BytesOf(F_WRLCK, first, count);
    return fcntl(descriptor, F_OFD_GETLK, &probe) == 0 && probe.l_type != F_UNLCK;
}

// Most files are opened by one program at a time: one probe of all bytes settles that.
bool Conflicts(int descriptor, unsigned claims) {
    const auto isFree = [=](unsigned first, unsigned count) { return !HeldByOthers(descriptor, first, count); };
    return HeldByOthers(descriptor, 0, kClaimBytes) && !ForEachRun(ConflictsOf(claims), isFree);
}

// What cannot be locked is open for writing alone, or lies on a file system without locks: then nothing of ours is
// seen by others. A lock for writing there, which nobody of us takes, is a stranger's and refuses us.
bool SetClaims(int descriptor, unsigned claims) {
    return ForEachRun(claims, [=](unsigned first, unsigned count) {
        struct flock lock = BytesOf(F_RDLCK, first, count);
        return fcntl(descriptor, F_OFD_SETLK, &lock) == 0 || (errno != EAGAIN && errno != EACCES);
    });
}

// Claims are set first and compared then, so that of two openings at least one sees the other. Openings of one process
// take turns, and never refuse each other for nothing.
bool TryToClaim(int descriptor, unsigned claims) {
    static std::mutex turn;
    std::lock_guard guard(turn);
    if (SetClaims(descriptor, claims) && !Conflicts(descriptor, claims))
        return true;
    ReleaseSharing(descriptor);
    return false;
}

// Two processes that open at the same moment may refuse each other: after a random pause one of them gets through.
void PauseBeforeTry(int attempt) {
    thread_local std::minstd_rand random{std::random_device{}()};
    const int limit = 50 << attempt;
    std::this_thread::sleep_for(std::chrono::microseconds(random() % limit));
}

constexpr int kAttempts = 5;

} // namespace

DWORD SpecificFileRights(DWORD access) {
    constexpr DWORD kGeneric = GENERIC_READ | GENERIC_WRITE | GENERIC_EXECUTE | GENERIC_ALL;
    DWORD rights = (access & ~kGeneric) | FILE_READ_ATTRIBUTES | SYNCHRONIZE;
    rights |= access & GENERIC_READ ? FILE_GENERIC_READ : 0;
    rights |= access & GENERIC_WRITE ? FILE_GENERIC_WRITE : 0;
    rights |= access & GENERIC_EXECUTE ? FILE_GENERIC_EXECUTE : 0;
    rights |= access & GENERIC_ALL ? FILE_ALL_ACCESS : 0;
    return rights;
}

bool TakesPartInSharing(DWORD rights) {
    return ClaimsOf(rights, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE) != 0;
}

DWORD ClaimSharing(int descriptor, DWORD rights, DWORD share) {
    const unsigned claims = ClaimsOf(rights, share);
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (attempt != 0)
            PauseBeforeTry(attempt);
        if (TryToClaim(descriptor, claims))
            return 0;
    }
    return ERROR_SHARING_VIOLATION;
}

void ReleaseSharing(int descriptor) {
    struct flock lock = BytesOf(F_UNLCK, 0, kClaimBytes);
    fcntl(descriptor, F_OFD_SETLK, &lock);
}

DWORD CheckDeleteSharing(const char* hostPath) {
    const int descriptor = open(hostPath, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor == -1)
        return 0;
    const bool denied = Conflicts(descriptor, kUsesDelete);
    close(descriptor);
    return denied ? ERROR_SHARING_VIOLATION : 0;
}

} // namespace kel::platform
