#include "platform/crt/FormatText.h"

#include <kelcore/platform/codepages.h>

#include <algorithm>
#include <climits>

namespace kel::platform {
namespace {

std::size_t Utf8Length(unsigned char lead) {
    if (lead < 0xC2 || lead > 0xF4)
        return 1;
    return lead < 0xE0 ? 2 : (lead < 0xF0 ? 3 : 4);
}

int Clipped(std::size_t length) {
    return static_cast<int>(std::min<std::size_t>(length, INT_MAX));
}

} // namespace

std::size_t CharacterLength(const char* text, std::size_t length) {
    const auto lead = static_cast<unsigned char>(*text);
    if (lead < 0x80)
        return 1;
    if (GetACP() != CP_UTF8)
        return IsDBCSLeadByte(lead) ? 2 : 1;
    const std::size_t whole = Utf8Length(lead);
    for (std::size_t i = 1; i < whole && i < length; ++i)
        if ((text[i] & 0xC0) != 0x80)
            return i;
    return whole;
}

std::size_t WholeCharacters(const char* text, std::size_t length) {
    std::size_t whole = 0;
    while (whole < length) {
        const std::size_t next = whole + CharacterLength(text + whole, length - whole);
        if (next > length)
            break;
        whole = next;
    }
    return whole;
}

std::basic_string<WCHAR> Widened(const char* text, std::size_t length) {
    std::basic_string<WCHAR> units;
    const int room = MultiByteToWideChar(CP_ACP, /*flags*/ 0, text, Clipped(length), nullptr, 0);
    units.resize(static_cast<std::size_t>(room));
    if (room > 0)
        MultiByteToWideChar(CP_ACP, /*flags*/ 0, text, Clipped(length), units.data(), room);
    return units;
}

std::string Narrowed(const WCHAR* text, std::size_t length) {
    std::string bytes;
    const int room = WideCharToMultiByte(CP_ACP, /*flags*/ 0, text, Clipped(length), nullptr, 0, nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(room));
    if (room > 0)
        WideCharToMultiByte(CP_ACP, /*flags*/ 0, text, Clipped(length), bytes.data(), room, nullptr, nullptr);
    return bytes;
}

} // namespace kel::platform
