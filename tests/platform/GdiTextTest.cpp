#include "Texts.h"

#include <vector>

namespace {

/// The narrow text of some characters in the ANSI code page, and the wide text that it means.
struct TwoTexts {
    std::string narrow;
    std::basic_string<WCHAR> wide;

    explicit TwoTexts(const std::basic_string<WCHAR>& text) : narrow(64, 0), wide(64, 0) {
        narrow.resize(static_cast<std::size_t>(WideCharToMultiByte(
            CP_ACP, 0, text.data(), static_cast<int>(text.size()), narrow.data(), 64, nullptr, nullptr)));
        wide.resize(static_cast<std::size_t>(
            MultiByteToWideChar(CP_ACP, 0, narrow.data(), static_cast<int>(narrow.size()), wide.data(), 64)));
    }
};

constexpr WCHAR kBlock = 0x2588; // a glyph that covers its cell

} // namespace

TEST_CASE("text lies at its reference point as the alignment says") {
    TextPage page;
    const std::tuple<UINT, const char*, LONG> rows[] = {{TA_LEFT, "50 60 73 76", 73},
                                                        {TA_CENTER, "39 60 62 76", 50},
                                                        {TA_BOTTOM, "50 44 73 60", 73},
                                                        {TA_BASELINE | TA_RIGHT, "27 47 50 63", 27}};
    // With TA_UPDATECP the current position moves from 50.
    for (const auto& [align, cells, moved] : rows) {
        CAPTURE(align);
        SetTextAlign(page, align);
        CHECK(TextOutA(page, 50, 60, "abc", 3));
        CHECK(page.Cells() == cells);
        SetTextAlign(page, align | TA_UPDATECP);
        MoveToEx(page, 50, 60, nullptr);
        CHECK(TextOutA(page, 5, 5, "abc", 3));
        CHECK(page.Cells() == cells);
        POINT position{};
        CHECK((GetCurrentPositionEx(page, &position) && position.x == moved && position.y == 60));
    }
}

TEST_CASE("rectangles are filled, and clip") {
    TextPage page;
    const RECT rect{40, 20, 60, 30};
    const std::tuple<UINT, int, const char*, const char*> rows[] = {
        {0, TRANSPARENT, "   ", "none"},
        {ETO_CLIPPED | ETO_OPAQUE, TRANSPARENT, "   ", "40 20 60 30"},
        {ETO_OPAQUE, OPAQUE, "", "40 20 60 30"},
        {ETO_OPAQUE, OPAQUE, "abc", "40 15 73 31"},
        {ETO_CLIPPED, OPAQUE, "abc", "50 20 60 30"}};
    for (const auto& [options, mode, text, cells] : rows) {
        CAPTURE(options);
        CAPTURE(text);
        SetBkMode(page, mode);
        CHECK(ExtTextOutA(page, 50, 15, options, &rect, text, static_cast<UINT>(std::strlen(text)), nullptr));
        CHECK(page.Cells() == cells);
    }
    IntersectClipRect(page, 55, 0, 57, 200);
    CHECK((TextOutA(page, 50, 15, "a", 1) && page.Cells() == "55 15 57 31"));
}

TEST_CASE("narrow text is drawn by whole characters") {
    TextPage page;
    const TwoTexts texts({'a', 0xE4, 0x3042, 'b'});
    const auto bytes = static_cast<int>(texts.narrow.size());
    SIZE narrow{}, wide{};
    CHECK(GetTextExtentPoint32A(page, texts.narrow.data(), bytes, &narrow));
    CHECK(GetTextExtentPoint32W(page, texts.wide.data(), 4, &wide));
    CHECK(Text(narrow) == Text(wide));
    std::vector<INT> advances(texts.narrow.size(), 10);
    CHECK(ExtTextOutA(page, 10, 0, 0, nullptr, texts.narrow.data(), static_cast<UINT>(bytes), advances.data()));
    CHECK(page.Cells() == "10 0 " + std::to_string(10 + 10 * bytes) + " 16");
    CHECK((GetTextExtentPoint32A(page, "", 0, &narrow) && narrow.cx == 0));
}

TEST_CASE("covered pixels have the text's colour in every format") {
    const TestFont file;
    for (const int bits : {1, 4, 8, 16, 24, 32}) {
        CAPTURE(bits);
        DibInfo info(20, 20, bits);
        info.table[1] = {255, 255, 255, 0};
        info.table[2] = {0, 0, 255, 0};
        const Section section(info);
        const LOGFONTA description = TestFontOf(16);
        const Owned font(CreateFontIndirectA(&description));
        const MemoryContext context(section.handle);
        SelectObject(context, font);
        const COLORREF ink = bits == 1 ? RGB(255, 255, 255) : RGB(255, 0, 0);
        SetTextColor(context, ink);
        SetBkMode(context, TRANSPARENT);
        CHECK(TextOutW(context, 2, 2, &kBlock, 1));
        CHECK(GetPixel(context, 6, 10) == ink);
        CHECK(GetPixel(context, 18, 10) == RGB(0, 0, 0));
    }
}

TEST_CASE("text is measured in logical units and drawn upright") {
    TextPage page;
    Scale(page, {100, 100}, {300, -200});
    SetViewportOrgEx(page, 0, 100, nullptr);
    SIZE size{};
    CHECK((GetTextExtentPoint32A(page, "abcdefghij", 10, &size) && size.cx == 44 && size.cy == 16));
    SetTextCharacterExtra(page, 2);
    CHECK((GetTextExtentPoint32A(page, "abc", 3, &size) && size.cx == 22));
    SetTextCharacterExtra(page, 0);
    CHECK(TextOutA(page, 10, 40, "a", 1));
    CHECK(page.Cells() == "30 20 47 52");
}

TEST_CASE("lines through and turned text") {
    LOGFONTA font = TestFontOf(16);
    font.lfStrikeOut = 1;
    TextPage page(font);
    SetBkMode(page, TRANSPARENT);
    CHECK((TextOutA(page, 10, 0, "      ", 6) && page.Cells() == "10 9 34 10"));
    font.lfStrikeOut = 0;
    const std::pair<LONG, const char*> turned[] = {
        {900, "100 77 116 100"}, {1800, "77 84 100 100"}, {2700, "84 100 100 123"}};
    for (const auto& [escapement, cells] : turned) {
        CAPTURE(escapement);
        font.lfEscapement = font.lfOrientation = escapement;
        TextPage other(font);
        // The ends of turned cells are not the same on all systems, to a pixel.
        CHECK(TextOutA(other, 100, 100, "abc", 3));
        if (kel::test::FaultsAvailable())
            CHECK(other.Cells() == cells);
    }
}

TEST_CASE("a failing call draws nothing and measures nothing") {
    TextPage page;
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
        SIZE size{-1, -1};
        const bool measured = GetTextExtentPoint32A(page, "abc", 3, &size);
        CHECK(measured == (size.cx == 23));
        const bool drawn = TextOutA(page, 0, 0, "abc", 3);
        CHECK(drawn == (page.Cells() == "0 0 23 16"));
    });
}
