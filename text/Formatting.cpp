#include <kelcore/text.h>

#include "text/Arguments.h"
#include "text/Overwrite.h"

#include <kelcore/platform.h>

#include <memory>
#include <stdexcept>

namespace {

using kel::ListEnd;
using kel::Pass;
using kel::Received;

constexpr std::size_t kFirstCapacity = 1024;
constexpr std::size_t kGrowth = 4;
constexpr std::size_t kLastCapacity = std::size_t{1} << 30;

// One try at a format; the caller's list stays fresh for the next one.
int Print(unsigned short* units, std::size_t count, const unsigned short* format, va_list& list) {
    va_list arguments;
    va_copy(arguments, list);
    const ListEnd end{arguments};
    return _vsnwprintf(reinterpret_cast<WCHAR*>(units), count, reinterpret_cast<const WCHAR*>(format), arguments);
}

struct FreeLocal {
    void operator()(char* memory) const { LocalFree(memory); }
};

// A text that the system has formatted into memory of its own.
struct SystemText {
    std::unique_ptr<char, FreeLocal> text;
    DWORD length;
};

SystemText FormatBySystem(DWORD source, const char* format, DWORD code, char** arguments) {
    char* text = nullptr;
    const DWORD length = ::FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | source, format, code, /*language*/ 0,
                                          reinterpret_cast<char*>(&text), /*least size*/ 0, Received(arguments));
    return {std::unique_ptr<char, FreeLocal>(text), length};
}

} // namespace

void String::Format(const unsigned short* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const ListEnd end{arguments};
    FormatString(format, Pass(arguments));
}

void String::FormatMessageA(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const ListEnd end{arguments};
    FormatMessageString(format, Pass(arguments));
}

String String::CreateErrorMessage(unsigned long code) {
    const SystemText message = FormatBySystem(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, static_cast<DWORD>(code), nullptr);
    return message.length == 0 ? String() : String(NarrowString(message.text.get()));
}

String String::CreateLastErrorMessage() {
    return CreateErrorMessage(GetLastError());
}

void String::FormatString(const unsigned short* format, char** arguments) {
    va_list& list = *Received(arguments);
    // Most texts fit into the first capacity, and clearing that much of this text costs as much as formatting it.
    unsigned short first[kFirstCapacity];
    int length = Print(first, kFirstCapacity, format, list);
    if (length >= 0) {
        assign(first, static_cast<std::size_t>(length));
        return;
    }
    for (std::size_t capacity = kFirstCapacity * kGrowth; capacity <= kLastCapacity; capacity *= kGrowth) {
        kel::Overwrite(*this, capacity, [&](unsigned short* units, std::size_t room) {
            length = Print(units, room, format, list);
            return static_cast<std::size_t>(length < 0 ? 0 : length);
        });
        if (length >= 0)
            return;
    }
    throw std::length_error("String::Format: the result is longer than 2^30 units");
}

unsigned int String::FormatMessageString(const char* format, char** arguments) {
    const SystemText message = FormatBySystem(FORMAT_MESSAGE_FROM_STRING, format, /*code*/ 0, arguments);
    if (message.length != 0)
        assign(StdA2W(message.text.get()));
    return message.length;
}

unsigned long String::FormatMessageA(unsigned long flags, const void* source, unsigned long messageId,
                                     unsigned long languageId, char* buffer, unsigned long size, char** arguments) {
    return ::FormatMessageA(static_cast<DWORD>(flags), source, static_cast<DWORD>(messageId),
                            static_cast<DWORD>(languageId), buffer, static_cast<DWORD>(size), Received(arguments));
}
