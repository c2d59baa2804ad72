#include "Texts.h"

namespace {

/// What DrawTextA makes of a text in a rectangle at (10, 20): result, width and height of the rectangle, and the text.
std::string Calculated(HDC dc, const char* text, int width, UINT format, int count = -1) {
    char room[64] = "";
    std::strcpy(room, text);
    RECT rect{10, 20, 10 + width, 60};
    const int result = DrawTextA(dc, room, count, &rect, format | DT_CALCRECT);
    CHECK((rect.left == 10 && rect.top == 20));
    return std::to_string(result) + " " + std::to_string(rect.right - 10) + "x" + std::to_string(rect.bottom - 20) +
           (format & DT_MODIFYSTRING ? std::string(" ") + room : "");
}

constexpr UINT kEnd = DT_MODIFYSTRING | DT_END_ELLIPSIS;
constexpr UINT kEach = DT_MODIFYSTRING | DT_WORD_ELLIPSIS;
constexpr UINT kPath = DT_MODIFYSTRING | DT_PATH_ELLIPSIS;
constexpr UINT kLetters = DT_WORDBREAK | DT_EDITCONTROL;

} // namespace

TEST_CASE("DrawTextA breaks, marks and shortens lines") {
    const TextPage page;
    const std::tuple<const char*, int, UINT, const char*> rows[] = {
        // line ends
        {"", 50, DT_SINGLELINE, "16 0x16"},
        {"a\r\n\r\nb", 50, 0, "48 8x48"},
        {"a\n\rb", 50, 0, "32 8x32"},
        {"a\r\nb", 50, DT_SINGLELINE, "16 26x16"},
        // words
        {"aaa bbb", 52, DT_WORDBREAK, "16 52x16"},
        {"aaa bbb", 51, DT_WORDBREAK, "32 28x32"},
        {"aaa bbb", 5, DT_WORDBREAK, "32 24x32"},
        {"aaa   bbb", 27, DT_WORDBREAK, "48 24x48"},
        {"   aaa", 30, DT_WORDBREAK, "32 24x32"},
        {"bb aaaaaaaaaa bb", 30, DT_WORDBREAK, "48 80x48"},
        {"bb aaaaaaaaaa bb", 30, kLetters, "80 28x80"},
        // prefixes
        {"&abc", 50, DT_NOPREFIX, "16 32x16"},
        {"&abc", 50, DT_HIDEPREFIX, "16 23x16"},
        {"a&&b", 50, 0, "16 25x16"},
        {"a&\nb", 50, 0, "32 8x32"},
        // tabs
        {"\ta", 200, 0, "16 13x16"},
        {"aaaaaaaa\tb\t", 200, DT_EXPANDTABS, "16 192x16"},
        // shortened
        {"aaaaaaaaaa", 79, kEnd, "16 76x16 aaaaaaaa..."},
        {"aaaaaaaaaa", 3, kEnd, "16 12x16 ..."},
        {"aaa bbb\nccc ddd eee fff", 40, kEnd, "32 52x32 ccc ..."},
        {"a&bcd&&efghij", 40, kEnd, "16 35x16 abc..."},
        {"aaa bbb ccc", 12, kEach | DT_WORDBREAK, "48 12x48 ..."},
        {"aaaaaaa\\b", 40, kPath, "16 40x16 aa...\\b"},
        {"C:\\aaa\\bbbbbbbbb", 12, kPath, "16 88x16 ...\\bbbbbbbbb"},
    };
    for (const auto& [text, width, format, result] : rows) {
        CAPTURE(text);
        CAPTURE(width);
        CAPTURE(format);
        CHECK(Calculated(page, text, width, format) == result);
    }
    if (!kel::test::FaultsAvailable())
        return; // Wine ends the process
    // Tabs make these lines wider than their parts, so that dots are put twice.
    for (const std::string text : {"\\l\t", "\\.\t ", "i\\l\t"})
        for (int width = 0; width != 80; ++width) {
            INFO(text, " in ", width);
            std::string room = text + std::string(4, '\0') + "####";
            RECT rect{0, 0, width, 20};
            DrawTextA(page, room.data(), static_cast<int>(text.size()), &rect, kEnd | kPath | DT_EXPANDTABS);
            CHECK(room.substr(text.size() + 4) == "####");
        }
    CHECK(Calculated(page, "abc", 50, 0, 2) == "16 16x16");
    CHECK(Calculated(page, "abc", 50, 0, 0) == "0 50x40");
}

TEST_CASE("DrawTextA places lines, clips them and tells where they end") {
    TextPage page;
    const std::tuple<const char*, UINT, int, const char*> rows[] = {
        {"abc", DT_CENTER, 16, "23 20 46 36"},
        {"abc", DT_RIGHT | DT_SINGLELINE | DT_BOTTOM, 40, "37 44 60 60"},
        {"abc", DT_SINGLELINE | DT_VCENTER, 28, "10 32 33 48"},
        {"abc", DT_VCENTER, 16, "10 20 33 36"},
        {"aaaaaaaaaa", DT_NOCLIP, 16, "10 20 90 36"},
        {"b\nb\nb\nb", 0, 48, "10 20 18 60"},
        {"b\nb\nb\nb", DT_EDITCONTROL, 32, "10 20 18 52"},
        {"b\tb", DT_EXPANDTABS | DT_TABSTOP | 4 << 8, 16, "10 20 50 36"},
    };
    for (const auto& [text, format, result, cells] : rows) {
        CAPTURE(text);
        CAPTURE(format);
        RECT rect{10, 20, 60, 60};
        CHECK(DrawTextA(page, text, -1, &rect, format) == result);
        CHECK(page.Cells() == cells);
        CHECK(Text(rect) == "10 20 60 60");
    }
    SetBkMode(page, TRANSPARENT);
    RECT rect{10, 0, 100, 40};
    CHECK((DrawTextA(page, "& & ", -1, &rect, 0) == 16 && page.Cells() == "14 14 17 15"));
    if (kel::test::FaultsAvailable()) { // Wine does neither
        CHECK((DrawTextA(page, "& & ", -1, &rect, DT_HIDEPREFIX) == 16 && page.Cells() == "none"));
        CHECK((DrawTextA(page, "b &b", -1, &rect, DT_PREFIXONLY) == 16 && page.Cells() == "22 14 29 15"));
    }
    CHECK(DrawTextA(nullptr, "a", 1, &rect, 0) == 0);
    const WCHAR wide[] = {'a', 0x263A, 'b', 0};
    CHECK((DrawTextW(page, wide, -1, &rect, DT_CALCRECT) == 16 && rect.right > 26));
}

TEST_CASE("tabs lead to their stops") {
    TextPage page;
    const struct {
        const char* text;
        int count;
        INT stops[3];
        int origin;
        DWORD extent, drawn; // widths
    } rows[] = {{"a\tb", 0, {}, 25, 72, 87},
                {"aaaaa\tb", 1, {30}, 25, 68, 53},
                {"a\tb\tc\td", 2, {30, 50}, 10, 72, 72},
                {"a\tbb\tc", 2, {-60, 80}, 0, 87, 77},
                {"a\tbbbbbbbbbbbb\tc", 2, {-60, 80}, 0, 199, 189},
                {"a\t", 1, {20}, 25, 20, 35}};
    for (const auto& row : rows) {
        CAPTURE(row.text);
        CAPTURE(row.origin);
        const auto length = static_cast<int>(std::strlen(row.text));
        CHECK(GetTabbedTextExtentA(page, row.text, length, row.count, row.stops) == (16u << 16 | row.extent));
        CHECK(TabbedTextOutA(page, 10, 5, row.text, length, row.count, row.stops, row.origin) ==
              static_cast<LONG>(16u << 16 | row.drawn));
        CHECK(page.Cells() == "10 5 " + std::to_string(10 + row.drawn) + " 21");
    }
    CHECK(GetTabbedTextExtentA(page, "", 0, 0, nullptr) == 0);
}

TEST_CASE("texts are drawn in a state") {
    TextPage page;
    const std::tuple<const char*, WPARAM, int, int, UINT, const char*> rows[] = {
        {"abc", 2, 0, 0, DST_TEXT, "10 5 26 21"},
        {"a&bc", 0, 12, 5, DST_TEXT, "10 5 42 21"},
        {"a&bc", 0, 0, 0, DST_PREFIXTEXT, "10 5 33 21"},
        {"abc", 0, 60, 20, DST_TEXT | DSS_RIGHT, "47 5 70 21"},
        {"b\nb", 0, 0, 0, DST_TEXT, "10 5 18 37"}};
    const auto draw = [&](const char* text, WPARAM length, int width, int height, UINT flags) {
        return DrawStateA(page, nullptr, nullptr, reinterpret_cast<LPARAM>(text), length, 10, 5, width, height,
                          flags) != 0;
    };
    for (const auto& [text, length, width, height, flags, cells] : rows) {
        CAPTURE(text);
        CAPTURE(flags);
        CHECK(draw(text, length, width, height, flags));
        CHECK(page.Cells() == cells);
    }
    SetBkMode(page, TRANSPARENT);
    CHECK((draw("bb", 0, 0, 0, DST_TEXT | DSS_DISABLED) && GetTextColor(page) == RGB(255, 255, 255)));
    if (kel::test::FaultsAvailable())
        CHECK(page.Cells() == "10 8 27 19"); // once more, one pixel lower and to the right
    CHECK_FALSE(draw("abc", 0, 0, 0, 0));
}
