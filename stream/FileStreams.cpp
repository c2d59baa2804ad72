#include <kelcore/stream/endpoints.h>

#include "runtime/SharedHandles.h"
#include "stream/Failures.h"

#include <kelcore/text.h>

namespace {

// The text that the system allocates for a message.
class SystemText {
public:
    explicit SystemText(DWORD error) {
        FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr, error, /*language*/ 0,
                       reinterpret_cast<LPSTR>(&m_text), /*size*/ 0, nullptr);
    }
    SystemText(const SystemText&) = delete;
    SystemText& operator=(const SystemText&) = delete;
    ~SystemText() { LocalFree(m_text); }

    WideString Get() const { return m_text == nullptr ? WideString() : StdA2W(m_text); }

private:
    char* m_text = nullptr;
};

[[noreturn]] void ThrowSystemError() {
    const SystemText text(GetLastError());
    throw StreamBase::Exception(kel::kSystemFailure, text.Get());
}

HANDLE Open(const WideString& path, DWORD access, DWORD disposition) {
    const HANDLE handle = CreateFileA(StdW2A(path).c_str(), access, /*share*/ 0, /*security*/ nullptr, disposition,
                                      /*attributes*/ 0, /*template*/ nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        ThrowSystemError();
    return handle;
}

void Close(HANDLE handle) noexcept {
    if (handle == INVALID_HANDLE_VALUE)
        return;
    const DWORD error = GetLastError();
    if (kel::SharedHandles::DropIsLast(handle))
        CloseHandle(handle);
    SetLastError(error);
}

HANDLE Share(HANDLE handle) {
    kel::SharedHandles::Share(handle);
    return handle;
}

void Replace(HANDLE& handle, HANDLE other) {
    const HANDLE old = handle;
    handle = Share(other);
    Close(old);
}

} // namespace

FileOutputStream::FileOutputStream(const WideString& path) : m_handle(Open(path, GENERIC_WRITE, CREATE_ALWAYS)) {}

FileOutputStream::FileOutputStream(const FileOutputStream& other)
    : OutputStream(other), m_handle(Share(other.m_handle)) {}

FileOutputStream& FileOutputStream::operator=(const FileOutputStream& other) {
    Replace(m_handle, other.m_handle);
    return *this;
}

FileOutputStream::~FileOutputStream() {
    Close(m_handle);
}

void FileOutputStream::Write(const char* data, int count) {
    if (count <= 0 || m_handle == INVALID_HANDLE_VALUE)
        return;
    DWORD written = 0;
    if (!WriteFile(m_handle, data, static_cast<DWORD>(count), &written, /*overlapped*/ nullptr))
        ThrowSystemError();
}

void FileOutputStream::Flush() {
    if (m_handle != INVALID_HANDLE_VALUE && !FlushFileBuffers(m_handle))
        ThrowSystemError();
}

FileInputStream::FileInputStream(const WideString& path) : m_handle(Open(path, GENERIC_READ, OPEN_EXISTING)) {}

FileInputStream::FileInputStream(const FileInputStream& other) : InputStream(other), m_handle(Share(other.m_handle)) {}

FileInputStream& FileInputStream::operator=(const FileInputStream& other) {
    Replace(m_handle, other.m_handle);
    return *this;
}

FileInputStream::~FileInputStream() {
    Close(m_handle);
}

void FileInputStream::Read(char* data, int count) {
    if (count <= 0 || m_handle == INVALID_HANDLE_VALUE)
        return;
    DWORD got = 0;
    if (!ReadFile(m_handle, data, static_cast<DWORD>(count), &got, /*overlapped*/ nullptr))
        ThrowSystemError();
    if (got != static_cast<DWORD>(count))
        kel::ThrowFailure(kel::kEndOfData, "Read beyond end of file");
}
