#include <kelcore/platform/com.h>
#include <kelcore/platform/messages.h>

#include <cstdio>
#include <cstring>

namespace {

constexpr std::size_t kOwnMessageSize = sizeof "Unknown error 0x80000000";

// The results between these are an interface's own; texts count them from the first.
constexpr HRESULT kFirstInterfaceResult = static_cast<HRESULT>(0x80040200u);
constexpr HRESULT kLastInterfaceResult = static_cast<HRESULT>(0x8004FFFFu);

char* SystemMessage(HRESULT result) {
    char* text = nullptr;
    if (FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                       /*source*/ nullptr, static_cast<DWORD>(result), /*language*/ 0, reinterpret_cast<LPSTR>(&text),
                       /*size*/ 0, /*arguments*/ nullptr) == 0)
        return nullptr;
    text[std::strcspn(text, "\r\n")] = '\0';
    return text;
}

// The text for a result that the system has no message for.
char* OwnMessage(HRESULT result) {
    char* const text = static_cast<char*>(LocalAlloc(LMEM_FIXED, kOwnMessageSize));
    if (text == nullptr)
        return nullptr;
    if (result > kFirstInterfaceResult && result <= kLastInterfaceResult)
        std::snprintf(text, kOwnMessageSize, "IDispatch error #%d", static_cast<int>(result - kFirstInterfaceResult));
    else
        std::snprintf(text, kOwnMessageSize, "Unknown error 0x%X", static_cast<unsigned>(result));
    return text;
}

} // namespace

_com_error::_com_error(HRESULT result, IErrorInfo* /*information*/, bool /*addReference*/) noexcept
    : m_result(result), m_message(nullptr) {}

// The message is made again where it is asked for.
_com_error::_com_error(const _com_error& other) noexcept : m_result(other.m_result), m_message(nullptr) {}

_com_error& _com_error::operator=(const _com_error& other) noexcept {
    if (this != &other) {
        LocalFree(m_message);
        m_message = nullptr;
        m_result = other.m_result;
    }
    return *this;
}

_com_error::~_com_error() noexcept {
    LocalFree(m_message);
}

HRESULT _com_error::Error() const noexcept {
    return m_result;
}

const char* _com_error::ErrorMessage() const noexcept {
    if (m_message == nullptr)
        m_message = SystemMessage(m_result);
    if (m_message == nullptr)
        m_message = OwnMessage(m_result);
    return m_message;
}
