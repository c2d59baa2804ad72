#include <kelcore/file.h>

#include "runtime/SharedHandles.h"

#include <kelcore/text.h>

MemoryMappedFile::MemoryMappedFile(const WideString& path, bool writable)
    : m_hFile(INVALID_HANDLE_VALUE), m_hMapping(nullptr), m_pView(nullptr), m_dwSize(0) {
    const DWORD access = writable ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ;
    m_hFile = CreateFileA(StdW2A(path).c_str(), access, /*share*/ 0, /*security*/ nullptr, OPEN_EXISTING,
                          FILE_FLAG_SEQUENTIAL_SCAN, /*template*/ nullptr);
    if (m_hFile == INVALID_HANDLE_VALUE || !map(writable))
        unmap();
}

MemoryMappedFile::MemoryMappedFile(const MemoryMappedFile& other)
    : m_hFile(other.m_hFile), m_hMapping(other.m_hMapping), m_pView(other.m_pView), m_dwSize(other.m_dwSize) {
    kel::SharedHandles::Share(m_hFile);
}

MemoryMappedFile& MemoryMappedFile::operator=(const MemoryMappedFile& other) {
    if (m_hFile == other.m_hFile)
        return *this;
    kel::SharedHandles::Share(other.m_hFile);
    unmap();
    m_hFile = other.m_hFile;
    m_hMapping = other.m_hMapping;
    m_pView = other.m_pView;
    m_dwSize = other.m_dwSize;
    return *this;
}

MemoryMappedFile::~MemoryMappedFile() {
    unmap();
}

MemoryMappedFile::operator char*() {
    return m_pView;
}

MemoryMappedFile::operator const char*() const {
    return m_pView;
}

unsigned __int32 MemoryMappedFile::getSize() {
    return m_dwSize;
}

bool MemoryMappedFile::map(bool writable) {
    DWORD high = 0;
    m_dwSize = GetFileSize(m_hFile, &high);
    if ((m_dwSize == INVALID_FILE_SIZE && GetLastError() != NO_ERROR) || high != 0)
        return false;
    m_hMapping = CreateFileMappingA(m_hFile, /*security*/ nullptr, writable ? PAGE_READWRITE : PAGE_READONLY,
                                    /*sizeHigh*/ 0, /*sizeLow*/ 0, /*name*/ nullptr);
    if (m_hMapping == nullptr)
        return false;
    m_pView = static_cast<char*>(
        MapViewOfFile(m_hMapping, writable ? FILE_MAP_WRITE : FILE_MAP_READ, /*offset*/ 0, 0, /*whole*/ 0));
    return m_pView != nullptr;
}

// The file's handle stands for all three; nothing is shared before the mapping is complete.
void MemoryMappedFile::unmap() {
    const DWORD error = GetLastError();
    if (m_hFile != INVALID_HANDLE_VALUE && kel::SharedHandles::DropIsLast(m_hFile)) {
        if (m_pView != nullptr)
            UnmapViewOfFile(m_pView);
        if (m_hMapping != nullptr)
            CloseHandle(m_hMapping);
        CloseHandle(m_hFile);
    }
    m_pView = nullptr;
    m_hMapping = nullptr;
    m_hFile = INVALID_HANDLE_VALUE;
    m_dwSize = 0;
    SetLastError(error);
}
