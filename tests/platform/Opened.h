#pragma once

#include "Workplace.h"

constexpr DWORD kReadWrite = GENERIC_READ | GENERIC_WRITE;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// A file that is open for a scope.
class Opened {
public:
    explicit Opened(const char* name, DWORD access = kReadWrite, DWORD share = 0, DWORD disposition = OPEN_EXISTING,
                    DWORD flags = 0)
        : m_handle(CreateFileA(name, access, share, nullptr, disposition, flags, nullptr)) {}
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    ~Opened() { Close(); }

    operator HANDLE() const { return m_handle; }
    bool Good() const { return m_handle != INVALID_HANDLE_VALUE; }
    void Close() {
        if (Good())
            CloseHandle(m_handle);
        m_handle = INVALID_HANDLE_VALUE;
    }

private:
    HANDLE m_handle;
};

/// What is left of an opening: 0 if it succeeded, its error if not.
inline DWORD ErrorOfOpening(const char* name, DWORD access, DWORD share = 0, DWORD disposition = OPEN_EXISTING,
                            DWORD flags = 0) {
    const Opened file(name, access, share, disposition, flags);
    return file.Good() ? 0 : GetLastError();
}

/// Another handle of the same object with the same rights unless told otherwise; null for none.
inline HANDLE Duplicate(HANDLE source, DWORD access = 0, DWORD options = DUPLICATE_SAME_ACCESS) {
    HANDLE copy = nullptr;
    const BOOL good = DuplicateHandle(GetCurrentProcess(), source, GetCurrentProcess(), &copy, access, FALSE, options);
    return good ? copy : nullptr;
}

/// Reads from the position on. The number of bytes that came, -1 for a failure.
inline int Read(HANDLE file, char* buffer, DWORD count, OVERLAPPED* overlapped = nullptr) {
    DWORD read = 0;
    return ReadFile(file, buffer, count, &read, overlapped) ? static_cast<int>(read) : -1;
}

inline int Write(HANDLE file, const char* bytes, DWORD count, OVERLAPPED* overlapped = nullptr) {
    DWORD written = 0;
    return WriteFile(file, bytes, count, &written, overlapped) ? static_cast<int>(written) : -1;
}

inline OVERLAPPED At(std::uint64_t offset) {
    OVERLAPPED overlapped = {};
    overlapped.Offset = static_cast<DWORD>(offset);
    overlapped.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return overlapped;
}
