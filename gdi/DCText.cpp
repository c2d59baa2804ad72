#include <kelcore/gdi/devicecontexts.h>
#include <kelcore/runtime/system.h>
#include <kelcore/text.h>

#include <cstring>

namespace {

// What the system may append to a text that it shortens.
constexpr std::size_t kEllipsis = 4;

bool IsFamily95() {
    return (SysInfo::GetSystem() & (SysInfo::Win95 | SysInfo::Win98 | SysInfo::WinME)) != 0;
}

// The character in the ANSI code page, a double-byte one as lead byte * 256 + trail byte. @return false if it has none.
bool AnsiCode(unsigned short ch, UINT& code) {
    const auto unit = static_cast<WCHAR>(ch);
    char bytes[3] = {};
    BOOL defaulted = FALSE;
    if (WideCharToMultiByte(CP_ACP, /*flags*/ 0, &unit, 1, bytes, sizeof bytes, nullptr, &defaulted) == 0 || defaulted)
        return false;
    const auto first = static_cast<BYTE>(bytes[0]);
    code = IsDBCSLeadByte(first) ? first * 256u + static_cast<BYTE>(bytes[1]) : first;
    return true;
}

ABC WholeWidth(HDC dc, unsigned short ch) {
    int width = 0;
    GetCharWidthW(dc, ch, ch, &width);
    return {0, static_cast<UINT>(width), 0};
}

ABC AnsiWidth(HDC dc, unsigned short ch) {
    UINT code = 0;
    ABC abc = {};
    if (AnsiCode(ch, code) && GetCharABCWidthsA(dc, code, code, &abc))
        return abc;
    return WholeWidth(dc, ch);
}

// Whatever the locale, no printing character of ASCII is.
bool IsWhite(unsigned short ch) {
    return (ch <= ' ' || ch >= 0x7F) && iswspace(ch) != 0;
}

int Advance(const ABC& abc) {
    return abc.abcA + static_cast<int>(abc.abcB) + abc.abcC;
}

} // namespace

int DC::DrawTextA(const WideString& text, RECT& rect, unsigned int format) {
    NarrowString narrow = StdW2A(text);
    const auto length = static_cast<int>(std::strlen(narrow.c_str()));
    narrow.append(kEllipsis, '\0');
    return ::DrawTextA(m_hDC, narrow.data(), length, &rect, format);
}

bool DC::ExtTextOutA(int x, int y, unsigned int options, const RECT& rect, const WideString& text, const int* dx) {
    const NarrowString narrow = StdW2A(text);
    return ::ExtTextOutA(m_hDC, x, y, options, &rect, narrow.c_str(), static_cast<UINT>(narrow.size()), dx) != 0;
}

long DC::TabbedTextOutA(int x, int y, const WideString& text, int tabCount, int* tabStops, int tabOrigin) {
    const NarrowString narrow = StdW2A(text);
    return ::TabbedTextOutA(m_hDC, x, y, narrow.c_str(), static_cast<int>(narrow.size()), tabCount, tabStops,
                            tabOrigin);
}

SIZE DC::GetTabbedTextExtentA(const WideString& text, int tabCount, int* tabStops) const {
    const NarrowString narrow = StdW2A(text);
    const DWORD extent =
        ::GetTabbedTextExtentA(m_hDC, narrow.c_str(), static_cast<int>(narrow.size()), tabCount, tabStops);
    return {static_cast<LONG>(extent & 0xFFFF), static_cast<LONG>(extent >> 16)};
}

SIZE DC::GetTextExtent(const WideString& text) const {
    SIZE size = {};
    GetTextExtentPoint32W(m_hDC, reinterpret_cast<const WCHAR*>(text.c_str()), static_cast<int>(text.size()), &size);
    return size;
}

int DC::GetTextFaceA(WideString& face) const {
    const int size = ::GetTextFaceA(m_hDC, /*count*/ 0, nullptr);
    if (size == 0)
        return 0;
    NarrowString narrow(static_cast<std::size_t>(size), '\0');
    const int stored = ::GetTextFaceA(m_hDC, size, narrow.data());
    face = StdA2W(narrow);
    return stored;
}

bool DC::DrawStateA(const POINT& position, const SIZE& size, const WideString& text, unsigned int flags,
                    bool prefixText, HBRUSH brush) {
    const NarrowString narrow = StdW2A(text);
    return ::DrawStateA(m_hDC, brush, /*callback*/ nullptr, reinterpret_cast<LPARAM>(narrow.c_str()), /*length*/ 0,
                        position.x, position.y, size.cx, size.cy,
                        (prefixText ? DST_PREFIXTEXT : DST_TEXT) | flags) != 0;
}

bool DC::GetCharABCWidth(unsigned short ch, ABC& abc) const {
    if (IsFamily95() || !GetCharABCWidthsW(m_hDC, ch, ch, &abc))
        abc = AnsiWidth(m_hDC, ch);
    if (IsWhite(ch))
        abc = {0, static_cast<UINT>(Advance(abc)), 0};
    return true;
}

int DC::GetExactTextWidth(const WideString& text) const {
    if (text.empty())
        return 0;
    int width = 0;
    ABC abc = {};
    GetCharABCWidth(text.front(), abc);
    const int leading = abc.abcA;
    width = Advance(abc);
    for (std::size_t i = 1; i != text.size(); ++i) {
        GetCharABCWidth(text[i], abc);
        width += Advance(abc);
    }
    return width - leading - abc.abcC;
}
