#include "platform/kernel/HostText.h"

#include <algorithm>
#include <kelcore/platform/codepages.h>
#include <locale.h>
#include <wctype.h>

namespace kel::platform {
namespace {

bool IsAsciiByte(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

std::u16string Widen(UINT page, std::string_view text) {
    // No page makes more units than it has bytes.
    std::u16string wide(text.size(), u'\0');
    const int size = static_cast<int>(text.size());
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(page, 0, text.data(), size, reinterpret_cast<WCHAR*>(wide.data()), size)));
    return wide;
}

std::string Narrow(UINT page, const std::u16string& wide) {
    // Three bytes are the most that one unit becomes, in UTF-8; two in a double-byte page.
    std::string text(wide.size() * 3, '\0');
    text.resize(static_cast<std::size_t>(WideCharToMultiByte(page, 0, reinterpret_cast<const WCHAR*>(wide.data()),
                                                             static_cast<int>(wide.size()), text.data(),
                                                             static_cast<int>(text.size()), nullptr, nullptr)));
    return text;
}

bool PassesAsIs(std::string_view text) {
    return GetACP() == CP_UTF8 || IsAscii(text);
}

// Names mean the same under every locale of the process, "C" included, which knows ASCII letters only.
locale_t UnicodeLocale() {
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return unicode;
}

char16_t FoldUnit(char16_t unit) {
    if (unit < 0x80)
        return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
    const locale_t unicode = UnicodeLocale();
    return unicode == nullptr ? unit : static_cast<char16_t>(towupper_l(unit, unicode));
}

} // namespace

std::string Utf8FromAnsi(std::string_view text) {
    return PassesAsIs(text) ? std::string(text) : Narrow(CP_UTF8, Widen(CP_ACP, text));
}

std::string AnsiFromUtf8(std::string_view text) {
    return PassesAsIs(text) ? std::string(text) : Narrow(CP_ACP, Widen(CP_UTF8, text));
}

std::string_view AnsiFromUtf8(std::string_view text, std::string& room) {
    if (PassesAsIs(text))
        return text;
    room = AnsiFromUtf8(text);
    return room;
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), IsAsciiByte);
}

std::size_t CharacterLength(std::string_view ansi) {
    std::size_t length = 1;
    if (GetACP() == CP_UTF8) {
        // Malformed text is cut between its bytes; three continuation bytes are the most there can be.
        if (static_cast<unsigned char>(ansi[0]) >= 0xC0)
            while (length < std::min<std::size_t>(ansi.size(), 4) && (ansi[length] & 0xC0) == 0x80)
                ++length;
    } else if (ansi.size() > 1 && IsDBCSLeadByte(static_cast<BYTE>(ansi[0]))) {
        length = 2;
    }
    return length;
}

std::string_view CutAtCharacter(std::string_view ansi, std::size_t size) {
    std::size_t end = 0;
    while (end < ansi.size() && end + CharacterLength(ansi.substr(end)) <= size)
        end += CharacterLength(ansi.substr(end));
    return ansi.substr(0, end);
}

DWORD GiveText(std::string_view ansi, LPSTR buffer, DWORD size) {
    const DWORD length = static_cast<DWORD>(ansi.size());
    if (buffer == nullptr || length >= size)
        return length + 1;
    ansi.copy(buffer, length);
    buffer[length] = '\0';
    return length;
}

std::u16string FoldName(std::string_view utf8) {
    std::u16string folded;
    if (IsAscii(utf8))
        folded.assign(utf8.begin(), utf8.end());
    else
        folded = Widen(CP_UTF8, utf8);
    std::transform(folded.begin(), folded.end(), folded.begin(), FoldUnit);
    return folded;
}

bool HasLetters(std::string_view utf8) {
    return std::any_of(utf8.begin(), utf8.end(),
                       [](char c) { return !IsAsciiByte(c) || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z'); });
}

} // namespace kel::platform
