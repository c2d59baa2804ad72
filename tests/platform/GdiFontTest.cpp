#include "Texts.h"

#include <numeric>

namespace {

std::string Metrics(HDC dc) {
    TEXTMETRICA m{};
    if (!GetTextMetricsA(dc, &m))
        return "none";
    return Text(RECT{m.tmHeight, m.tmAscent, m.tmDescent, m.tmExternalLeading}) + " " +
           Text(SIZE{m.tmAveCharWidth, m.tmMaxCharWidth}) + " " + std::to_string(m.tmPitchAndFamily);
}

std::string Widths(HDC dc, WCHAR character) {
    ABC abc{};
    INT width = -1;
    INT narrow = -1;
    CHECK(GetCharABCWidthsW(dc, character, character, &abc));
    CHECK((GetCharWidth32W(dc, character, character, &width) && GetCharWidthA(dc, character, character, &narrow)));
    CHECK((width == abc.abcA + static_cast<int>(abc.abcB) + abc.abcC && narrow == width));
    return std::to_string(abc.abcA) + " " + std::to_string(abc.abcB) + " " + std::to_string(abc.abcC);
}

} // namespace

TEST_CASE("a font gives its description back") {
    LOGFONTA font = TestFontOf(-17);
    font.lfWidth = 3;
    font.lfItalic = 200;
    const Owned made(CreateFontIndirectA(&font));
    LOGFONTA back{};
    CHECK((GetObjectA(made, sizeof back + 9, &back) == sizeof back && std::memcmp(&back, &font, sizeof font) == 0));
    back = {};
    CHECK((GetObjectA(made, 28, &back) == 28 && back.lfItalic == 200 && back.lfFaceName[0] == 0));
    const Owned parts(CreateFontA(9, 0, 0, 0, FW_BOLD, 1, 0, 1, SYMBOL_CHARSET, 0, 0, PROOF_QUALITY, 0, "a face"));
    back = Told<LOGFONTA>(parts);
    CHECK((back.lfWeight == FW_BOLD && back.lfStrikeOut == 1 && back.lfCharSet == SYMBOL_CHARSET));
}

TEST_CASE("a height is that of a cell, or of the em square") {
    const std::pair<LONG, const char*> rows[] = {
        {1, "1 1 0 0 1 1 39"},      {13, "14 11 3 0 7 15 39"}, {14, "14 11 3 0 7 15 39"}, {0, "16 13 3 0 8 18 39"},
        {33, "32 26 6 1 17 36 39"}, {-1, "1 1 0 0 1 1 39"},    {-11, "12 10 2 0 6 14 39"}};
    // Height, ascent, descent, external leading, average and largest width, family
    for (const auto& [height, metrics] : rows) {
        CAPTURE(height);
        CHECK(Metrics(TextPage(height)) == metrics);
    }
}

TEST_CASE("widths are whole pixels in three parts") {
    const TextPage page;
    CHECK((Widths(page, ' ') == "0 1 3" && Widths(page, 'A') == "0 10 -1" && Widths(page, 'j') == "-1 4 0"));
    INT widths[26];
    CHECK(GetCharWidth32W(page, 'a', 'z', widths));
    SIZE size{};
    CHECK(GetTextExtentPoint32A(page, "abcdefghijklmnopqrstuvwxyz", 26, &size));
    CHECK((size.cx == std::accumulate(widths, widths + 26, 0) && size.cy == 16));
}

TEST_CASE("the face's name is told, and cut to its room") {
    const TextPage page;
    char name[32] = "#";
    CHECK((GetTextFaceA(page, 0, nullptr) == 16 && GetTextFaceA(page, 0, name) == 0));
    CHECK((GetTextFaceA(page, sizeof name, name) == 15 && std::string(name) == "Liberation Sans"));
    CHECK((GetTextFaceA(page, 5, name) == 4 && std::string(name) == "Libe"));
    // A file that is missing neither comes nor goes.
    const std::string missing = TestFont().File() + ".missing";
    CHECK(AddFontResourceExA(missing.c_str(), FR_PRIVATE, nullptr) == 0);
    CHECK_FALSE(RemoveFontResourceExA(missing.c_str(), FR_PRIVATE, nullptr));
}

TEST_CASE("a context has a font and keeps it with its state") {
    const TextPage page(24);
    const HGDIOBJ stock = GetStockObject(DEFAULT_GUI_FONT);
    CHECK(GetCurrentObject(MemoryContext(), OBJ_FONT) == GetStockObject(SYSTEM_FONT));
    CHECK(SaveDC(page) == 1);
    CHECK(SelectObject(page, stock) != nullptr);
    CHECK((SetTextAlign(page, TA_RIGHT) == TA_LEFT && SetTextCharacterExtra(page, 7) == 0));
    CHECK(Metrics(page) != "23 19 4 1 12 26 39");
    CHECK(RestoreDC(page, 1));
    CHECK((GetTextAlign(page) == TA_LEFT && GetTextCharacterExtra(page) == 0));
    CHECK(Metrics(page) == "23 19 4 1 12 26 39");
    CHECK((DeleteObject(stock) && GetStockObject(DEFAULT_GUI_FONT) == stock));
}

TEST_CASE("names of Windows stand for faces as wide") {
    if (!kel::test::FaultsAvailable()) {
        MESSAGE("other systems have these faces themselves, or have not");
        return;
    }
    for (const char* name : {"Arial", "helvetica", "MS Sans Serif", "Tahoma", "no such face"}) {
        CAPTURE(name);
        LOGFONTA font = TestFontOf(-13);
        std::strcpy(font.lfFaceName, name);
        CHECK(Metrics(TextPage(font)) == Metrics(TextPage(-13)));
    }
    LOGFONTA fixed = TestFontOf(-13);
    std::strcpy(fixed.lfFaceName, "Courier New");
    const TextPage page(fixed);
    INT widths[95];
    CHECK(GetCharWidth32W(page, 32, 126, widths));
    for (const INT width : widths)
        CHECK(width == 8);
    fixed.lfWidth = 20; // stretched
    TEXTMETRICA metrics{};
    CHECK((GetTextMetricsA(TextPage(fixed), &metrics) && metrics.tmAveCharWidth == 20 && metrics.tmHeight == 15));
    fixed.lfHeight = -2048;
    fixed.lfWidth = 1 << 21; // as wide as there are letters
    CHECK((GetTextMetricsA(TextPage(fixed), &metrics) && metrics.tmAveCharWidth > 1000));
}
