// The message language with numbered inserts: format, flags and texts from the input. What a buffer of the call's own
// gets, a buffer of the caller's gets too, or the call says that it is too small.

#include <kelcore/platform.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

// %99 with a width and a precision from the arguments reads this far.
constexpr std::size_t kArguments = 128;

void Require(bool holds) {
    if (!holds)
        __builtin_trap();
}

class Message {
public:
    Message(DWORD flags, const std::string& format, const std::vector<DWORD_PTR>& arguments)
        : m_length(FormatMessageA(flags | FORMAT_MESSAGE_ALLOCATE_BUFFER, format.c_str(), 0, 0,
                                  reinterpret_cast<char*>(&m_text), 0, List(arguments))) {}
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;
    ~Message() {
        if (m_length != 0)
            LocalFree(m_text);
    }

    static va_list* List(const std::vector<DWORD_PTR>& arguments) {
        return reinterpret_cast<va_list*>(const_cast<DWORD_PTR*>(arguments.data()));
    }

    char* m_text = nullptr;
    DWORD m_length;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3 || size > 2000)
        return 0;
    const DWORD width = data[0];
    const DWORD flags = FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY | width |
                        (data[1] % 8 == 0 ? FORMAT_MESSAGE_IGNORE_INSERTS : 0);
    const std::string format(reinterpret_cast<const char*>(data + 2), size - 2);
    // Read as narrow text it is "text"; as wide text, two other units.
    alignas(2) static const char text[] = "text\0";
    const std::vector<DWORD_PTR> arguments(kArguments, reinterpret_cast<DWORD_PTR>(text));

    const Message message(flags, format, arguments);
    if (message.m_length == 0)
        return 0;
    Require(std::strlen(message.m_text) <= message.m_length);
    std::string own(message.m_length + 1, '~');
    Require(FormatMessageA(flags, format.c_str(), 0, 0, own.data(), message.m_length + 1, Message::List(arguments)) ==
            message.m_length);
    Require(std::memcmp(own.data(), message.m_text, message.m_length + 1) == 0);
    Require(FormatMessageA(flags, format.c_str(), 0, 0, own.data(), message.m_length, Message::List(arguments)) == 0);
    return 0;
}
