#include "platform/gdi/text/TextRun.h"

#include "platform/kernel/HostText.h"

#include <kelcore/platform/codepages.h>

namespace kel::platform {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(WCHAR unit) {
    return (unit & 0xFC00) == 0xD800;
}
bool IsLowSurrogate(WCHAR unit) {
    return (unit & 0xFC00) == 0xDC00;
}

char32_t Joined(WCHAR high, WCHAR low) {
    return 0x10000 + (static_cast<char32_t>(high & 0x3FF) << 10 | (low & 0x3FF));
}

char32_t Decoded(LPCSTR bytes, std::size_t count) {
    WCHAR units[4];
    const int length = MultiByteToWideChar(CP_ACP, /*flags*/ 0, bytes, static_cast<int>(count), units, 4);
    if (length == 1)
        return units[0];
    return length == 2 && IsHighSurrogate(units[0]) && IsLowSurrogate(units[1]) ? Joined(units[0], units[1])
                                                                                : kReplacement;
}

} // namespace

// Every ANSI code page is ASCII below 128, lead bytes lie above.
TextRun RunOfAnsi(LPCSTR text, std::size_t count) {
    TextRun run;
    run.reserve(count);
    for (std::size_t i = 0; i < count;) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const std::size_t length = byte < 0x80 ? 1 : CharacterLength({text + i, count - i});
        run.push_back({byte < 0x80 ? byte : Decoded(text + i, length), static_cast<std::uint32_t>(length)});
        i += length;
    }
    return run;
}

TextRun RunOfWide(LPCWSTR text, std::size_t count) {
    TextRun run;
    run.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        if (IsHighSurrogate(text[i]) && i + 1 < count && IsLowSurrogate(text[i + 1])) {
            run.push_back({Joined(text[i], text[i + 1]), 2});
            ++i;
        } else {
            run.push_back({text[i], 1});
        }
    return run;
}

char32_t CharacterOfAnsiNumber(UINT number) {
    if (number < 0x80)
        return number;
    const char bytes[2] = {static_cast<char>(number >> 8), static_cast<char>(number)};
    const bool two = number > 0xFF && IsDBCSLeadByte(static_cast<BYTE>(number >> 8));
    return Decoded(bytes + (two ? 0 : 1), two ? 2 : 1);
}

} // namespace kel::platform
