#include "platform/kernel/ByteRangeLocks.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/FileObject.h"
#include "platform/kernel/LastError.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <limits>

namespace kel::platform {
namespace {

constexpr off_t kCurrent = -1; // the file position, in place of an offset

std::uint64_t OffsetOf(const OVERLAPPED& overlapped) {
    return std::uint64_t{overlapped.OffsetHigh} << 32 | overlapped.Offset;
}

struct Reading {
    static constexpr bool kWrites = false;
    char* data;
    ssize_t operator()(int descriptor, DWORD done, std::size_t count, off_t at) const {
        return at == kCurrent ? read(descriptor, data + done, count) : pread(descriptor, data + done, count, at);
    }
};

struct Writing {
    static constexpr bool kWrites = true;
    const char* data;
    ssize_t operator()(int descriptor, DWORD done, std::size_t count, off_t at) const {
        return at == kCurrent ? write(descriptor, data + done, count) : pwrite(descriptor, data + done, count, at);
    }
};

// Moves all of the bytes in as many host calls as it takes: the host may stop early after a signal and past 2 GiB. The
// end of a file ends it, and what has come when the source is no file.
template <class Move>
bool MoveAll(const FileObject& file, Move move, DWORD count, off_t at, DWORD& done) {
    while (done < count) {
        const off_t position = at == kCurrent ? kCurrent : at + done;
        const ssize_t moved =
            Uninterrupted([&] { return move(file.descriptor, done, std::size_t{count} - done, position); });
        if (moved == -1)
            return false;
        done += static_cast<DWORD>(moved);
        if (moved == 0 || (!Move::kWrites && file.kind != FileKind::Disk))
            break;
    }
    return true;
}

// Writing to a pipe that nobody reads must fail, not end the process: the signal is held off and taken back.
class PipeSignalHeld {
public:
    explicit PipeSignalHeld(bool hold) : m_held(hold) {
        if (!m_held)
            return;
        sigset_t pending;
        sigemptyset(&m_signal);
        sigaddset(&m_signal, SIGPIPE);
        sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &m_signal, &m_before);
    }
    PipeSignalHeld(const PipeSignalHeld&) = delete;
    PipeSignalHeld& operator=(const PipeSignalHeld&) = delete;
    ~PipeSignalHeld() {
        if (!m_held)
            return;
        const int error = errno;
        const timespec now = {};
        if (!m_wasPending)
            Uninterrupted([&] { return sigtimedwait(&m_signal, nullptr, &now); });
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
        errno = error;
    }

private:
    const bool m_held;
    bool m_wasPending = false;
    sigset_t m_signal;
    sigset_t m_before;
};

DWORD TransferError(const FileObject& file) {
    return errno == EISDIR || file.kind == FileKind::Folder ? ERROR_INVALID_FUNCTION : ErrorFromHost(errno);
}

bool IsLocked(const FileObject& file, off_t at, DWORD count, bool writes) {
    if (!AnyTransferIsLocked(file, writes))
        return false;
    const off_t position = at == kCurrent ? lseek(file.descriptor, 0, SEEK_CUR) : at;
    return TransferIsLocked(file, static_cast<std::uint64_t>(position), count, writes);
}

// @p done tells how many bytes were moved, in failure too.
template <class Move>
bool Transfer(const FileObject& file, Move move, DWORD count, off_t at, DWORD& done) {
    if (IsLocked(file, at, count, Move::kWrites))
        return Fail(ERROR_LOCK_VIOLATION);
    PipeSignalHeld held(Move::kWrites && file.kind == FileKind::Pipe);
    return MoveAll(file, move, count, at, done) || Fail(TransferError(file));
}

// Where a transfer with an OVERLAPPED starts. Pipes and devices have no positions; both halves all ones mean the end.
bool StartOf(const FileObject& file, const OVERLAPPED& overlapped, bool writes, off_t& at) {
    const std::uint64_t offset = OffsetOf(overlapped);
    at = kCurrent;
    if (overlapped.hEvent)
        return Fail(ERROR_NOT_SUPPORTED);
    if (file.kind != FileKind::Disk)
        return true;
    if (writes && offset == std::numeric_limits<std::uint64_t>::max())
        return (at = lseek(file.descriptor, 0, SEEK_END)) != -1 || FailFromHost();
    if (offset > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()))
        return Fail(ERROR_INVALID_PARAMETER);
    at = static_cast<off_t>(offset);
    return true;
}

// A handle that is not asynchronous keeps a position, which such a transfer moves too.
template <class Move>
bool TransferAt(const FileObject& file, Move move, DWORD count, OVERLAPPED& overlapped, DWORD& done) {
    off_t at;
    if (!StartOf(file, overlapped, Move::kWrites, at) || !Transfer(file, move, count, at, done))
        return false;
    overlapped.Internal = 0;
    overlapped.InternalHigh = done;
    if (at != kCurrent && !file.asynchronous)
        lseek(file.descriptor, at + done, SEEK_SET);
    const bool atEnd = !Move::kWrites && file.kind == FileKind::Disk && done == 0 && count != 0;
    return !atEnd || Fail(ERROR_HANDLE_EOF);
}

template <class Move>
bool Serve(HANDLE handle, DWORD rights, Move move, DWORD count, DWORD* result, OVERLAPPED* overlapped) {
    const PinnedFile file(handle, rights);
    if (!file)
        return false;
    if (file->asynchronous && !overlapped)
        return Fail(ERROR_INVALID_PARAMETER);
    const DWORD limit = TransferLimit(count);
    DWORD done = 0;
    const bool good =
        overlapped ? TransferAt(*file, move, limit, *overlapped, done) : Transfer(*file, move, limit, kCurrent, done);
    if (result)
        *result = done;
    return good;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD count, LPDWORD read, LPOVERLAPPED overlapped) {
    if (read)
        *read = 0;
    return !CallFails("ReadFile") &&
           Serve(file, FILE_READ_DATA, Reading{static_cast<char*>(buffer)}, count, read, overlapped);
}

BOOL WINAPI WriteFile(HANDLE file, LPCVOID buffer, DWORD count, LPDWORD written, LPOVERLAPPED overlapped) {
    if (written)
        *written = 0;
    return !CallFails("WriteFile") && Serve(file, FILE_WRITE_DATA | FILE_APPEND_DATA,
                                            Writing{static_cast<const char*>(buffer)}, count, written, overlapped);
}

BOOL WINAPI FlushFileBuffers(HANDLE file) {
    if (CallFails("FlushFileBuffers"))
        return FALSE;
    const PinnedFile pinned(file, FILE_WRITE_DATA | FILE_APPEND_DATA);
    if (!pinned)
        return FALSE;
    const bool flushed = Uninterrupted([&] { return fsync(pinned->descriptor); }) == 0;
    // Pipes and terminals hold nothing back, and the host says so by refusing.
    return flushed || pinned->kind != FileKind::Disk || FailFromHost();
}
