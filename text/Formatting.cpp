#include <kelcore/text.h>

#include <kelcore/platform.h>

#include <cstdarg>

namespace {

constexpr std::size_t kFirstCapacity = 1024;
constexpr std::size_t kLastCapacity = std::size_t{1} << 30;

// Releases a text that FormatMessageA has allocated.
class SystemText {
public:
    SystemText() = default;
    SystemText(const SystemText&) = delete;
    SystemText& operator=(const SystemText&) = delete;
    ~SystemText() { LocalFree(m_text); }

    // With FORMAT_MESSAGE_ALLOCATE_BUFFER the call takes the address of a pointer for its buffer.
    char* Buffer() { return reinterpret_cast<char*>(&m_text); }
    operator const char*() const { return m_text; }

private:
    char* m_text = nullptr;
};

// One try; a negative result tells that the output did not fit.
int FormatInto(unsigned short* text, std::size_t capacity, const unsigned short* format, char** arguments) {
    va_list list;
    va_copy(list, *reinterpret_cast<va_list*>(arguments));
    const int length =
        _vsnwprintf(reinterpret_cast<WCHAR*>(text), capacity, reinterpret_cast<const WCHAR*>(format), list);
    va_end(list);
    return length;
}

} // namespace

void String::Format(const unsigned short* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    FormatString(format, reinterpret_cast<char**>(&arguments));
    va_end(arguments);
}

void String::FormatMessageA(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    FormatMessageString(format, reinterpret_cast<char**>(&arguments));
    va_end(arguments);
}

// The first capacity is on the stack: most texts fit, and the string need not hold room for 1,024 units.
void String::FormatString(const unsigned short* format, char** arguments) {
    unsigned short first[kFirstCapacity];
    int length = FormatInto(first, kFirstCapacity, format, arguments);
    if (length >= 0) {
        assign(first, static_cast<std::size_t>(length));
        return;
    }
    for (std::size_t capacity = kFirstCapacity * 4; length < 0 && capacity <= kLastCapacity; capacity *= 4) {
        resize(capacity);
        length = FormatInto(data(), capacity, format, arguments);
    }
    resize(length < 0 ? 0 : static_cast<std::size_t>(length));
}

unsigned int String::FormatMessageString(const char* format, char** arguments) {
    SystemText text;
    const unsigned long length =
        FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_STRING, format,
                       /*messageId*/ 0, /*languageId*/ 0, text.Buffer(), /*size*/ 0, arguments);
    if (length != 0)
        *this = NarrowString(text);
    return static_cast<unsigned int>(length);
}

unsigned long String::FormatMessageA(unsigned long flags, const void* source, unsigned long messageId,
                                     unsigned long languageId, char* buffer, unsigned long size, char** arguments) {
    return ::FormatMessageA(static_cast<DWORD>(flags), source, static_cast<DWORD>(messageId),
                            static_cast<DWORD>(languageId), buffer, static_cast<DWORD>(size),
                            reinterpret_cast<va_list*>(arguments));
}

String String::CreateErrorMessage(unsigned long code) {
    String message;
    SystemText text;
    if (::FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr, static_cast<DWORD>(code),
                         /*languageId*/ 0, text.Buffer(), /*size*/ 0, nullptr) != 0)
        message = NarrowString(text);
    return message;
}

String String::CreateLastErrorMessage() {
    return CreateErrorMessage(GetLastError());
}
