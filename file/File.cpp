#include <kelcore/file.h>

#include "runtime/SharedHandles.h"

#include <kelcore/runtime/system.h>
#include <kelcore/text.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>

namespace {

constexpr unsigned __int64 kLargestTransfer = 0xFFFFFFFF;

DWORD LowHalf(__int64 value) {
    return static_cast<DWORD>(value);
}

DWORD HighHalf(__int64 value) {
    return static_cast<DWORD>(static_cast<unsigned __int64>(value) >> 32);
}

[[noreturn]] void ThrowLastError() {
    const unsigned long error = GetLastError();
    throw File::Exception{error, String::CreateErrorMessage(error)};
}

void ThrowUnless(BOOL succeeded) {
    if (!succeeded)
        ThrowLastError();
}

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

// The high half of a region's offset. The 95 family addresses 32 bits and takes the rest as a sign.
DWORD RegionOffsetHigh(__int64 offset) {
    constexpr int k95Family = SysInfo::Win95 | SysInfo::Win98 | SysInfo::WinME;
    if ((SysInfo::GetSystem() & k95Family) == 0)
        return HighHalf(offset);
    return offset < 0 ? 0xFFFFFFFF : 0;
}

__int64 MovePosition(HANDLE handle, __int64 distance, int method) {
    LONG high = static_cast<LONG>(HighHalf(distance));
    const DWORD low = SetFilePointer(handle, static_cast<LONG>(LowHalf(distance)), &high, static_cast<DWORD>(method));
    if (low == INVALID_SET_FILE_POINTER)
        ThrowLastError();
    return static_cast<__int64>((static_cast<unsigned __int64>(static_cast<DWORD>(high)) << 32) | low);
}

} // namespace

File::File() : m_hFile(INVALID_HANDLE_VALUE) {}

File::File(const WideString& path, unsigned int access, unsigned int share, bool inheritable, unsigned int disposition,
           unsigned int flags)
    : File() {
    Create(path, access, share, inheritable, disposition, flags);
}

File::File(const File& other) : m_strPath(other.m_strPath), m_hFile(other.m_hFile) {
    kel::SharedHandles::Share(m_hFile);
}

File& File::operator=(const File& other) {
    WideString path = other.m_strPath;
    kel::SharedHandles::Share(other.m_hFile);
    Hold(other.m_hFile, std::move(path));
    return *this;
}

File::~File() {
    Close();
}

// The former handle is let go; it stays open, as it does for an assignment.
void File::Hold(void* handle, WideString path) {
    kel::SharedHandles::DropIsLast(m_hFile);
    m_hFile = handle;
    m_strPath = std::move(path);
}

void File::Create(const WideString& path, unsigned int access, unsigned int share, bool inheritable,
                  unsigned int disposition, unsigned int flags) {
    SECURITY_ATTRIBUTES security = {sizeof security, nullptr, inheritable};
    const HANDLE opened =
        CreateFileA(StdW2A(path).c_str(), access, share, &security, disposition, flags, /*template*/ nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        ThrowException();
    // Keeps the handle from leaking when there is no memory for the path.
    std::unique_ptr<void, HandleCloser> guard(opened);
    WideString full = GetFullPath(path);
    Hold(guard.release(), std::move(full));
}

void File::Open(const WideString& path, unsigned int access, unsigned int share, bool inheritable,
                unsigned int disposition, unsigned int flags) {
    Create(path, access, share, inheritable, disposition, flags);
}

void File::OpenForReading(const WideString& path, unsigned int share, bool inheritable, unsigned int flags) {
    Create(path, GENERIC_READ, share, inheritable, OPEN_EXISTING, flags);
}

void File::OpenForReadWrite(const WideString& path, unsigned int share, bool inheritable, unsigned int flags) {
    Create(path, GENERIC_READ | GENERIC_WRITE, share, inheritable, OPEN_EXISTING, flags);
}

void File::Close() {
    if (!IsValid())
        return;
    const DWORD error = GetLastError();
    if (kel::SharedHandles::DropIsLast(m_hFile))
        CloseHandle(m_hFile);
    SetLastError(error);
    m_hFile = INVALID_HANDLE_VALUE;
    m_strPath.clear();
}

bool File::IsValid() const {
    return m_hFile != INVALID_HANDLE_VALUE;
}

unsigned long File::Read(NarrowString& buffer, unsigned long count) {
    unsigned __int64 wanted = count;
    if (wanted == 0) {
        const __int64 size = GetFileSize();
        if (size < 0)
            throw std::length_error("File::Read: no path to take a size from");
        wanted = static_cast<unsigned __int64>(size);
    }
    const auto room = static_cast<DWORD>(std::min(wanted, kLargestTransfer));
    buffer.resize(room);
    DWORD got = 0;
    ThrowUnless(ReadFile(m_hFile, buffer.data(), room, &got, /*overlapped*/ nullptr));
    buffer.resize(got);
    return got;
}

unsigned long File::Read(NarrowString& buffer) {
    return Read(buffer, 0);
}

unsigned long File::Write(const NarrowString& data) {
    const auto count = static_cast<DWORD>(std::min<unsigned __int64>(data.size(), kLargestTransfer));
    DWORD written = 0;
    ThrowUnless(WriteFile(m_hFile, data.data(), count, &written, /*overlapped*/ nullptr));
    return written;
}

void File::Flush() {
    ThrowUnless(FlushFileBuffers(m_hFile));
}

__int64 File::SetFilePos(__int64 distance, int method) {
    return MovePosition(m_hFile, distance, method);
}

__int64 File::GetFilePos() const {
    return MovePosition(m_hFile, 0, FILE_CURRENT);
}

void File::GetFileTimes(FILETIME* created, FILETIME* accessed, FILETIME* written) const {
    ThrowUnless(GetFileTime(m_hFile, created, accessed, written));
}

void File::SetFileTimes(const FILETIME* created, const FILETIME* accessed, const FILETIME* written) {
    ThrowUnless(SetFileTime(m_hFile, created, accessed, written));
}

__int64 File::GetFileSize() const {
    return GetSizeRecursive(m_strPath);
}

void File::LockRegion(__int64 offset, __int64 length) {
    ThrowUnless(LockFile(m_hFile, LowHalf(offset), RegionOffsetHigh(offset), LowHalf(length), HighHalf(length)));
}

void File::UnlockRegion(__int64 offset, __int64 length) {
    ThrowUnless(UnlockFile(m_hFile, LowHalf(offset), RegionOffsetHigh(offset), LowHalf(length), HighHalf(length)));
}

void File::Lock() {
    LockRegion(0, GetFileSize());
}

void File::Unlock() {
    UnlockRegion(0, GetFileSize());
}

void* File::GetHandle() const {
    return m_hFile;
}

void File::ThrowException() {
    ThrowLastError();
}
