// Measures and lays out seeded texts with Win32 calls alone and prints a line for each, so that two systems can be
// compared. usage: layout_cases COUNT FONTFILE (a path of the host to Liberation Sans)

#include "tests/compare/Cases.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using kel::compare::Random;

constexpr const char* kFace = "Liberation Sans";
constexpr int kWidth = 320;
constexpr int kHeight = 160;
constexpr int kHeights[] = {16, -11, -13, 24, -20};
// Letters whose glyphs stay inside of their cells at these heights: the cells alone are looked at.
constexpr char kLetters[] = "BCDEGHILMNOPQRSUZbcdeghilmnopqsuvxyz";

/// A context with a picture of 32 bits a pixel. Text and background have the same colour, so that the picture shows
/// where the cells of texts are, and nothing of how their letters are drawn.
class Page : public kel::compare::Sheet {
public:
    Page() : Sheet(kWidth, kHeight) {
        SetTextColor(Dc(), RGB(255, 255, 255));
        SetBkColor(Dc(), RGB(255, 255, 255));
    }

    void Clear() { std::memset(Pixels(), 0, sizeof(DWORD) * kWidth * kHeight); }

    /// A number for what is covered (FNV-1a).
    DWORD Covered() const {
        DWORD hash = 2166136261u;
        for (int i = 0; i < kWidth * kHeight; ++i)
            hash = (hash ^ (Pixels()[i] != 0 ? 1u : 0u)) * 16777619u;
        return hash;
    }
};

/// A font that is selected while it lives.
class Chosen {
public:
    Chosen(HDC dc, LOGFONTA font) : m_dc(dc) {
        std::strcpy(font.lfFaceName, kFace);
        m_before = SelectObject(dc, CreateFontIndirectA(&font));
    }
    Chosen(const Chosen&) = delete;
    Chosen& operator=(const Chosen&) = delete;
    ~Chosen() { DeleteObject(SelectObject(m_dc, m_before)); }

private:
    HDC m_dc;
    HGDIOBJ m_before;
};

std::string Word(Random& random) {
    std::string word;
    for (int i = random.Between(1, 8); i > 0; --i)
        word += kLetters[random.Below(sizeof kLetters - 1)];
    return word;
}

/// Words with what stands between them.
std::string Text(Random& random, std::initializer_list<const char*> between) {
    std::string text = Word(random);
    for (int i = random.Below(7); i > 0; --i)
        text += between.begin()[random.Below(static_cast<std::uint32_t>(between.size()))] + Word(random);
    return text;
}

std::string Shown(const std::string& text) {
    std::string shown;
    for (const char c : text)
        shown += c == '\n' ? "\\n" : c == '\r' ? "\\r" : c == '\t' ? "\\t" : std::string(1, c);
    return shown;
}

struct Layout {
    std::string text;
    UINT format;
};

/// Formats whose results are documented or agreed: docs/platform-differences.md says what is left out.
Layout RandomLayout(Random& random) {
    const UINT aligned = static_cast<UINT>(random.Below(3)); // left, centre, right
    const UINT prefix[] = {0, 0, DT_NOPREFIX, DT_HIDEPREFIX};
    const UINT format = aligned | prefix[random.Below(4)] | (random.Below(3) == 0 ? DT_NOCLIP : 0) |
                        (random.Below(4) == 0 ? DT_EXTERNALLEADING : 0);
    const UINT vertical[] = {DT_TOP, DT_VCENTER, DT_BOTTOM};
    switch (random.Below(6)) {
    case 0:
        return {Text(random, {" ", "  ", " &", "&&", "&"}), format | DT_SINGLELINE | vertical[random.Below(3)]};
    case 1:
        return {Text(random, {" ", "\n", "\r\n", "\n\n", "&"}), format};
    case 2:
        return {Text(random, {" ", "  ", "   "}), format | DT_WORDBREAK | (random.Below(3) == 0 ? DT_EDITCONTROL : 0)};
    case 3:
        return {Text(random, {"\t", " ", "\t\t", "\n"}), format | DT_EXPANDTABS};
    case 4:
        return {Text(random, {" ", "&", "  "}),
                format | DT_SINGLELINE | DT_MODIFYSTRING | (random.Below(2) == 0 ? DT_END_ELLIPSIS : DT_WORD_ELLIPSIS)};
    default:
        return {Text(random, {"\\", " "}) + "\\" + Word(random),
                format | DT_SINGLELINE | DT_PATH_ELLIPSIS | DT_MODIFYSTRING};
    }
}

int WidthOf(const Page& page, const std::string& text) {
    SIZE size{};
    GetTextExtentPoint32A(page.Dc(), text.c_str(), static_cast<int>(text.size()), &size);
    return static_cast<int>(size.cx);
}

/// Whether words break alike at @p width: each of them fits, and no words fit that do not with the spaces behind them,
/// which Wine asks for.
bool BreaksAlike(const Page& page, const std::string& text, int width) {
    for (std::size_t first = 0; first < text.size(); ++first) {
        if (first > 0 && text[first - 1] != ' ')
            continue;
        for (std::size_t end = text.find(' ', first); first < text.size(); end = text.find(' ', end)) {
            end = end == std::string::npos ? text.size() : end;
            const std::size_t next = std::min(text.find_first_not_of(' ', end), text.size());
            const int words = WidthOf(page, text.substr(first, end - first));
            const bool isWord = text.find(' ', first) >= end;
            const bool tight = words <= width && width < WidthOf(page, text.substr(first, next - first));
            if (tight || (isWord && words > width))
                return false;
            if (next == text.size())
                break;
            end = next;
        }
    }
    return true;
}

void DrawCase(Random& random, Page& page) {
    const Layout layout = RandomLayout(random);
    int width = random.Between(20, 300);
    while (layout.format & DT_WORDBREAK && !BreaksAlike(page, layout.text, width))
        ++width;
    const RECT area{10, 5, 10 + width, 5 + random.Between(30, 150)};
    char room[256];
    std::strcpy(room, layout.text.c_str());
    RECT calculated = area;
    const int size = DrawTextA(page.Dc(), room, -1, &calculated, layout.format | DT_CALCRECT);
    std::strcpy(room, layout.text.c_str());
    RECT drawn = area;
    page.Clear();
    const int result = DrawTextA(page.Dc(), room, -1, &drawn, layout.format);
    std::printf("DrawText %05X %ldx%ld '%s' -> %d %ldx%ld, %d %08X '%s'\n", static_cast<unsigned>(layout.format),
                static_cast<long>(area.right - area.left), static_cast<long>(area.bottom - area.top),
                Shown(layout.text).c_str(), size, static_cast<long>(calculated.right - calculated.left),
                static_cast<long>(calculated.bottom - calculated.top), result, static_cast<unsigned>(page.Covered()),
                Shown(room).c_str());
}

void TabCase(Random& random, Page& page) {
    const auto count = static_cast<int>(random.Below(4));
    // Tabs side by side agree where all stops are at one distance.
    const bool even = count < 2 && random.Below(2) == 0;
    const std::string text = even ? Text(random, {"\t", " ", "\t\t"}) : Text(random, {"\t", " "});
    INT stops[3];
    int stop = 0;
    for (INT& place : stops) {
        stop += random.Between(10, 70);
        place = !even && random.Below(3) == 0 ? -stop : stop;
    }
    const int origin = random.Between(0, 30);
    const auto length = static_cast<int>(text.size());
    const DWORD extent = GetTabbedTextExtentA(page.Dc(), text.c_str(), length, count, stops);
    page.Clear();
    const LONG drawn = TabbedTextOutA(page.Dc(), 10, 5, text.c_str(), length, count, stops, origin);
    std::printf("Tabs %d (%d %d %d) from %d '%s' -> %08X %08X %08X\n", count, stops[0], stops[1], stops[2], origin,
                Shown(text).c_str(), static_cast<unsigned>(extent), static_cast<unsigned>(drawn),
                static_cast<unsigned>(page.Covered()));
}

void MeasureCase(Random& random, Page& page) {
    const std::string text = Text(random, {" ", "."});
    SIZE size{};
    GetTextExtentPoint32A(page.Dc(), text.c_str(), static_cast<int>(text.size()), &size);
    ABC abc{};
    const auto c = static_cast<unsigned char>(text[0]);
    GetCharABCWidthsA(page.Dc(), c, c, &abc);
    TEXTMETRICA m{};
    GetTextMetricsA(page.Dc(), &m);
    const UINT aligns[] = {TA_LEFT, TA_RIGHT, TA_CENTER, TA_BASELINE, TA_BOTTOM | TA_RIGHT, TA_BASELINE | TA_CENTER};
    SetTextAlign(page.Dc(), aligns[random.Below(6)]);
    page.Clear();
    TextOutA(page.Dc(), 150, 60, text.c_str(), static_cast<int>(text.size()));
    SetTextAlign(page.Dc(), TA_LEFT);
    std::printf("Measure '%s' -> %ldx%ld, %c %d %u %d, %ld %ld %ld %ld %ld, %08X\n", text.c_str(),
                static_cast<long>(size.cx), static_cast<long>(size.cy), text[0], abc.abcA, abc.abcB, abc.abcC,
                static_cast<long>(m.tmAscent), static_cast<long>(m.tmDescent), static_cast<long>(m.tmExternalLeading),
                static_cast<long>(m.tmAveCharWidth), static_cast<long>(m.tmMaxCharWidth),
                static_cast<unsigned>(page.Covered()));
}

void RunCase(int number, Page& page) {
    Random random(static_cast<unsigned>(number));
    LOGFONTA font{};
    font.lfHeight = kHeights[random.Below(5)];
    const Chosen chosen(page.Dc(), font);
    std::printf("%d at %d ", number, static_cast<int>(font.lfHeight));
    switch (random.Below(4)) {
    case 0:
        return TabCase(random, page);
    case 1:
        return MeasureCase(random, page);
    default:
        return DrawCase(random, page);
    }
}

// The host's root is drive C: here and Z: on Wine.
bool AddFont(const std::string& file) {
    return AddFontResourceExA(("C:" + file).c_str(), FR_PRIVATE, nullptr) != 0 ||
           AddFontResourceExA(("Z:" + file).c_str(), FR_PRIVATE, nullptr) != 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3 || !AddFont(argv[2])) {
        std::fputs("usage: layout_cases COUNT FONTFILE\n", stderr);
        return 2;
    }
    Page page;
    for (int number = 0; number < std::atoi(argv[1]); ++number)
        RunCase(number, page);
}
