#include <kelcore/platform/com.h>

#include "platform/kernel/Faults.h"

#include <cstdlib>
#include <cstring>

namespace {

// In bytes, right before the text. The room before it keeps the text aligned like any other memory.
using Length = std::uint32_t;
constexpr std::size_t kHead = 16;
constexpr UINT kLongest = (UINT{0x7FFFFFFF} - kHead) / sizeof(OLECHAR) - 1;

char* Memory(BSTR string) {
    return reinterpret_cast<char*>(string) - kHead;
}

UINT Units(const OLECHAR* text) {
    UINT count = 0;
    while (text[count] != 0)
        ++count;
    return count;
}

} // namespace

BSTR SysAllocString(const OLECHAR* text) {
    return text == nullptr ? nullptr : SysAllocStringLen(text, Units(text));
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT count) {
    if (kel::platform::CallFails("SysAllocStringLen") || count > kLongest)
        return nullptr;
    const Length bytes = count * static_cast<Length>(sizeof(OLECHAR));
    char* const memory = static_cast<char*>(std::malloc(kHead + bytes + sizeof(OLECHAR)));
    if (memory == nullptr)
        return nullptr;
    std::memcpy(memory + kHead - sizeof bytes, &bytes, sizeof bytes);
    const BSTR string = reinterpret_cast<BSTR>(memory + kHead);
    if (text != nullptr)
        std::memcpy(string, text, bytes);
    string[count] = 0;
    return string;
}

void SysFreeString(BSTR string) {
    if (string != nullptr)
        std::free(Memory(string));
}

UINT SysStringLen(BSTR string) {
    if (string == nullptr)
        return 0;
    Length bytes;
    std::memcpy(&bytes, Memory(string) + kHead - sizeof bytes, sizeof bytes);
    return bytes / static_cast<UINT>(sizeof(OLECHAR));
}
